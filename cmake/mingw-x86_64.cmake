# Builds 64-bit Windows files with MinGW-w64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(KVO_MINGW x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
