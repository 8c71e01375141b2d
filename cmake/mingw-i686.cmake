# Builds 32-bit Windows files with MinGW-w64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(KVO_MINGW i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
