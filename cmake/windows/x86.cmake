# Desktop Windows, 32 bits, by Debian's mingw-w64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(PAVONIX_FLAVOUR x86)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# Runs the tests; made by fetch_wine32.sh.
set(PAVONIX_WINE32 ${CMAKE_CURRENT_LIST_DIR}/../../build/wine32 CACHE PATH "Where 32-bit Wine is")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_COMMAND} -E env WINEPREFIX=${CMAKE_BINARY_DIR}/wine ${PAVONIX_WINE32}/wine32)
