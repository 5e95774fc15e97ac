# Cross build for 64-bit Windows with Debian's mingw-w64 (posix threads).
#
# The posix variant is required: the win32 variant of Debian 12's g++ has no
# std::mutex, std::thread or std::condition_variable.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Search libraries, headers and packages in the Windows tree only, so that no
# configure step picks up a Linux library or header by accident.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Put the compiler's run-time libraries into each binary, so that a .dll or
# .exe needs nothing but the system's own libraries. -static also covers
# winpthread, which -static-libstdc++ alone leaves as libwinpthread-1.dll.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Run Windows executables (tests, gtest discovery) under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/wine_run.sh")
