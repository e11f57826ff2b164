# Header-only libraries of the build machine for a cross build. Their own CMake files name /usr/include as a whole and
# with it the machine's C library; here each is found by a link to its own folder and nothing else.
function(tremvik_header_only target folder)
  if(NOT IS_DIRECTORY /usr/include/${folder})
    message(FATAL_ERROR "the headers ${folder} are not installed")
  endif()
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/header-only)
  file(CREATE_LINK /usr/include/${folder} ${PROJECT_BINARY_DIR}/header-only/${folder} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/header-only)
endfunction()

# tremvik_find_headers(): the targets fmt, nlohmann-json and utf8cpp, from their packages or, in a cross build, by
# their headers alone.
macro(tremvik_find_headers)
  if(CMAKE_CROSSCOMPILING)
    if(NOT TARGET utf8cpp)
      tremvik_header_only(fmt::fmt-header-only fmt)
      target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY=1)
      tremvik_header_only(nlohmann_json::nlohmann_json nlohmann)
      tremvik_header_only(utf8cpp utf8cpp)
      target_include_directories(utf8cpp SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/header-only/utf8cpp)
    endif()
  else()
    find_package(fmt REQUIRED)
    find_package(nlohmann_json REQUIRED)
    find_package(utf8cpp REQUIRED)
  endif()
endmacro()
