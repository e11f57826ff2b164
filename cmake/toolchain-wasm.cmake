# WebAssembly for a browser: clang, its C++ library for wasm32 and wasi-libc. WASM_EXCEPTIONS is the folder that
# cmake/wasm-exceptions filled.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WASM_EXCEPTIONS)
set(CMAKE_SYSTEM_NAME Generic)  # CMake 3.25 knows no such platform
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_AR ar)
set(CMAKE_RANLIB ranlib)
set(CMAKE_C_COMPILER_TARGET wasm32-wasi)  # the name that Debian's folders have
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_C_FLAGS_INIT "-fwasm-exceptions -Wno-deprecated")
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -Wno-deprecated")
set(CMAKE_CXX_STANDARD_LIBRARIES "${WASM_EXCEPTIONS}/libc++abi-except.a ${WASM_EXCEPTIONS}/libunwind-except.a")
set(CMAKE_EXECUTABLE_SUFFIX .wasm)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
