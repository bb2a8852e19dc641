# Cross-compiles for 32-bit Windows; programs are static and run here under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32 ${CMAKE_CURRENT_LIST_DIR}/../build/libxml2-windows)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# libxml2's own package file knows what its static library needs (a definition, ws2_32).
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)
# Requests and responses of hundreds of megabytes: all 4 GB of addresses where the system has them.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--large-address-aware")
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT "-s")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/wine)
