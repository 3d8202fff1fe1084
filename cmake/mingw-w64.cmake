# Cross-compiling for 64-bit Windows with mingw-w64 (Debian's
# g++-mingw-w64-x86-64-posix: the POSIX thread model, so std::thread works).
#   cmake -S . -B build-win -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
# The test programs run through Wine (scripts/wine-run.sh).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(SHEAFWORK_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${SHEAFWORK_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${SHEAFWORK_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${SHEAFWORK_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${SHEAFWORK_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# One file that runs alone: the C and C++ runtimes and winpthreads linked in.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# ctest runs the test programs under Wine, in the build folder's own prefix
# (the top CMakeLists.txt sets the emulator: scripts/wine-run.sh PREFIX).
