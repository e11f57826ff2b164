# Installs the build into a folder of its own, then compiles each header that it finds there by itself, builds the
# example against the package and lets it import an accepted file, again (its declaration is held now), a refused one
# and one with a folder that cannot be used. Variables: BUILD, SOURCE, WORK, GENERATOR, CXX_FLAGS.
function(run)
  cmake_parse_arguments(ARG "" "STATUS" "COMMAND" ${ARGN})
  execute_process(COMMAND ${ARG_COMMAND} WORKING_DIRECTORY ${WORK} RESULT_VARIABLE status)
  if(NOT status EQUAL ARG_STATUS)
    message(FATAL_ERROR "exit status ${status}, not ${ARG_STATUS}: ${ARG_COMMAND}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
run(STATUS 0 COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
run(STATUS 0 COMMAND ${CMAKE_COMMAND} -S ${SOURCE}/examples/cpp_host -B ${WORK}/build -G ${GENERATOR}
                     -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_FLAGS=${CXX_FLAGS})
run(STATUS 0 COMMAND ${CMAKE_COMMAND} --build ${WORK}/build)
run(STATUS 0 COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/headers -B ${WORK}/headers -G ${GENERATOR}
                     -DCMAKE_PREFIX_PATH=${WORK}/prefix -DINCLUDE=${WORK}/prefix/include/tremvik)
run(STATUS 0 COMMAND ${CMAKE_COMMAND} --build ${WORK}/headers)
foreach(status 0 1)
  run(STATUS ${status} COMMAND ${WORK}/build/cpp_host ${SOURCE}/samples/aceito.txt)
endforeach()
run(STATUS 1 COMMAND ${WORK}/build/cpp_host ${SOURCE}/samples/recusado-letra-em-valor.txt)
file(WRITE ${WORK}/blocked/tremvik-data "")
run(STATUS 2 COMMAND ${CMAKE_COMMAND} -E chdir ${WORK}/blocked ${WORK}/build/cpp_host ${SOURCE}/samples/aceito.txt)
run(STATUS 0 COMMAND ${WORK}/prefix/bin/tremvik --versao)

# The same example without CMake.
find_program(PKG_CONFIG pkg-config REQUIRED)
file(GLOB_RECURSE pc ${WORK}/prefix/tremvik.pc)
cmake_path(GET pc PARENT_PATH pc_folder)
set(ENV{PKG_CONFIG_PATH} ${pc_folder})
run(STATUS 0 COMMAND sh -c "c++ -std=c++20 ${CXX_FLAGS} ${SOURCE}/examples/cpp_host/main.cpp \
  $(${PKG_CONFIG} --cflags --libs tremvik) -o by_pkg_config")
run(STATUS 1 COMMAND ${WORK}/by_pkg_config ${SOURCE}/samples/recusado-letra-em-valor.txt)
