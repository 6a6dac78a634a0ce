# Cross-compiling for 64-bit Windows with Debian's mingw-w64 tool chain.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(mingw_triplet x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
