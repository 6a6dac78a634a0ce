# Cross-compiling for 32-bit Windows with Debian's mingw-w64 tool chain: the
# handheld runs 32-bit code, so this build shows what only 32 bits would
# (pointers kept in 32-bit fields, truncated message parameters).
set(CMAKE_SYSTEM_PROCESSOR x86)
set(mingw_triplet i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
