# tremvik_widl(TARGET FILE.idl): compiles an interface description. TARGET is a library that holds the
# identifiers and shows who links it <FILE_idl.h>; TARGET_DIR is the folder with FILE.tlb.
find_program(TREMVIK_WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
# The descriptions of the system's own interfaces come with Wine's development files.
find_path(TREMVIK_WINE_IDL oaidl.idl REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
          PATHS /usr/include/wine/wine/windows)
find_path(TREMVIK_WINE_TLB stdole2.tlb REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
          PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/wine/x86_64-windows)

function(tremvik_widl target idl)
  cmake_path(GET idl STEM name)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target})
  file(MAKE_DIRECTORY ${folder})
  set(bits $<IF:$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>,--win64,--win32>)
  set(widl ${TREMVIK_WIDL} ${bits} -I ${TREMVIK_WINE_IDL} -L ${TREMVIK_WINE_TLB})
  add_custom_command(
    OUTPUT ${folder}/${name}.tlb ${folder}/${name}_idl.h ${folder}/${name}_i.c
    # Type libraries hold their texts in the system's 8-bit characters.
    COMMAND iconv -f UTF-8 -t WINDOWS-1252 ${idl} -o ${folder}/${name}.idl
    COMMAND ${widl} -t -o ${folder}/${name}.tlb ${folder}/${name}.idl
    COMMAND ${widl} -h -o ${folder}/${name}_idl.h ${idl}
    COMMAND ${widl} -u -o ${folder}/${name}_i.c ${idl}
    DEPENDS ${idl}
    VERBATIM)
  add_library(${target} STATIC ${folder}/${name}_i.c ${folder}/${name}.tlb ${folder}/${name}_idl.h)
  target_include_directories(${target} SYSTEM PUBLIC ${folder})
  set(${target}_DIR ${folder} CACHE INTERNAL "")
endfunction()
