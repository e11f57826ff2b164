# A file whose text becomes part of the program, as the function of that name: its source is ${function}.cpp in the
# folder's build folder, its declaration stands in the folder's embedded_texts.h.
function(tremvik_embed function file)
  get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
  add_custom_command(
    OUTPUT ${function}.cpp
    COMMAND ${CMAKE_COMMAND} -D ARQUIVO=${PROJECT_SOURCE_DIR}/${file} -D PASTA=${folder} -D FUNCAO=${function}
            -D SAIDA=${function}.cpp -P ${PROJECT_SOURCE_DIR}/cmake/embed_text.cmake
    DEPENDS ${PROJECT_SOURCE_DIR}/${file} ${PROJECT_SOURCE_DIR}/cmake/embed_text.cmake
    COMMENT "Putting ${file} into a source file")
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${function}.cpp PROPERTIES COMPILE_OPTIONS
                              -Wno-overlength-strings)
endfunction()
