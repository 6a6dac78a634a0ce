# Cross-compiling for Windows with Debian's mingw-w64 tool chain, for the
# target that the including tool-chain file names by its triplet
# (mingw_triplet) and processor (CMAKE_SYSTEM_PROCESSOR).
set(CMAKE_SYSTEM_NAME Windows)
# The POSIX thread model gives the standard library its threads and mutexes.
set(CMAKE_C_COMPILER ${mingw_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw_triplet}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${mingw_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
