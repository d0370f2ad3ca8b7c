# Cross-compiling the Windows build on Debian: mingw-w64's g++ with the posix
# thread model (std::thread and std::mutex need it), 64-bit, everything
# linked statically so that raveloutils.exe needs no DLL beyond Windows' own.
# The tests run under wine through CTest's cross-compiling emulator.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(RAVELO_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${RAVELO_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${RAVELO_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${RAVELO_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${RAVELO_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
