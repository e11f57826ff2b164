# tremvik_find_sqlite(): the target SQLite::SQLite3, the system's library or, in a cross build, one made from the two files
# that cmake/sqlite-source put into the folder TREMVIK_SQLITE.
macro(tremvik_find_sqlite)
  if(NOT CMAKE_CROSSCOMPILING)
    find_package(SQLite3 REQUIRED)
  elseif(NOT TARGET tremvik_sqlite3)
    set(TREMVIK_SQLITE "" CACHE PATH "Folder of sqlite3.c and sqlite3.h, see cmake/sqlite-source")
    if(NOT EXISTS ${TREMVIK_SQLITE}/sqlite3.c)
      message(FATAL_ERROR "TREMVIK_SQLITE names no folder with sqlite3.c; cmake/sqlite-source fills one")
    endif()
    add_library(tremvik_sqlite3 STATIC EXCLUDE_FROM_ALL ${TREMVIK_SQLITE}/sqlite3.c)
    target_include_directories(tremvik_sqlite3 SYSTEM INTERFACE ${TREMVIK_SQLITE})
    target_compile_definitions(tremvik_sqlite3 PRIVATE SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_DEPRECATED
                                                       SQLITE_OMIT_SHARED_CACHE)
    add_library(SQLite::SQLite3 ALIAS tremvik_sqlite3)
  endif()
endmacro()
