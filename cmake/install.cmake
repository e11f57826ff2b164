# What `cmake --install` lays down: the command line, the static libraries with their headers, and the CMake
# package "tremvik" with the targets tremvik::component (the component alone) and tremvik::embedded (the host
# that the command line uses, for programs that bring none of their own).
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

if(TREMVIK_CLI)
  add_library(tremvik_embedded INTERFACE)
  add_library(tremvik::embedded ALIAS tremvik_embedded)
  target_link_libraries(tremvik_embedded INTERFACE tremvik_component tremvik_sqlite)
  set_target_properties(tremvik_embedded PROPERTIES EXPORT_NAME embedded)
  set_property(GLOBAL APPEND PROPERTY TREMVIK_LIBRARIES tremvik_embedded)
endif()

get_property(libraries GLOBAL PROPERTY TREMVIK_LIBRARIES)
install(TARGETS tremvik_options ${libraries} EXPORT tremvik)
install(EXPORT tremvik NAMESPACE tremvik:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tremvik
        FILE tremvik-targets.cmake)

set(TREMVIK_WITH_EMBEDDED ${TREMVIK_CLI})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/tremvik-config.cmake.in tremvik-config.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tremvik)
write_basic_package_version_file(tremvik-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tremvik-config.cmake ${PROJECT_BINARY_DIR}/tremvik-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tremvik)

# For builds without CMake: `pkg-config --cflags --libs tremvik` gives the host that the command line uses.
if(TREMVIK_CLI)
  set(pc_libraries)
  foreach(library IN LISTS libraries)
    get_target_property(type ${library} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
      string(APPEND pc_libraries " -l${library}")
    endif()
  endforeach()
  file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/tremvik.pc.in tremvik.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/tremvik.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

# The headers that a host needs. They keep their folders, so that a program includes them by the names that they
# use for each other.
set(headers component/tremvik.h examination/examination.h examination/findings.h)
if(TREMVIK_CLI)
  list(APPEND headers adapters/local/component_folder.h adapters/sqlite/declaration_store.h
       adapters/sqlite/embedded_host.h adapters/trace/trace_sink.h adapters/trace/tracing_host.h)
endif()
install(DIRECTORY host layout DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tremvik FILES_MATCHING PATTERN "*.h")
foreach(header IN LISTS headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tremvik/${folder})
endforeach()
if(TREMVIK_CLI)
  if(TARGET tremvik)
    install(TARGETS tremvik COMPONENT programa)
  endif()
endif()
