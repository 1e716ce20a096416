# WebAssembly by Debian's clang 19 with the C and C++ libraries that are packaged for it. There are
# no threads, no files and nothing that unwinds.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
# A throw ends the run (web/codec/module/run_time.cpp), so that a landing pad is never reached.
set(CMAKE_CXX_FLAGS_INIT "-msimd128 -mbulk-memory -mnontrapping-fptoint -msign-ext -fexceptions")
# What the environment asks of the native linker is not for this one.
unset(ENV{LDFLAGS})
