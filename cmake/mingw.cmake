# Settings that both Windows toolchains share; KVO_MINGW is the prefix of their tools.
set(CMAKE_CXX_COMPILER ${KVO_MINGW}-g++-posix)
set(CMAKE_C_COMPILER ${KVO_MINGW}-gcc-posix)
set(CMAKE_RC_COMPILER ${KVO_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${KVO_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Links statically, so that none of the compiler's DLLs is needed beside the result.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")
