# Desktop Windows, 64 bits, by Debian's mingw-w64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(PAVONIX_FLAVOUR x64)
# the variant whose C++ library has threads, for pavonix.exe
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Runs the tests. Debian keeps it out of the path; its own Windows installation
# lives in the build.
find_program(WINE64 wine64 HINTS /usr/lib/wine REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_COMMAND} -E env WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all
    LC_ALL=C.UTF-8 ${WINE64})
