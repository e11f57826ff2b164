# Installs the build into a folder of its own, then builds the example against the package that it finds there
# and lets it judge an accepted and a refused sample. Variables: BUILD, SOURCE, WORK, GENERATOR, CXX_FLAGS.
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
run(STATUS 0 COMMAND ${WORK}/build/cpp_host ${SOURCE}/samples/aceito.txt)
run(STATUS 1 COMMAND ${WORK}/build/cpp_host ${SOURCE}/samples/recusado-letra-em-valor.txt)
run(STATUS 0 COMMAND ${WORK}/prefix/bin/tremvik --versao)
