# Windows CE 6.0 on ARM. The compiler is a driver that converts the output of Debian's
# bare-metal ARM gcc to COFF; build_toolchain.sh builds the rest.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR armv4t)
set(PAVONIX_FLAVOUR ce)

set(PAVONIX_CE_TOOLCHAIN ${CMAKE_CURRENT_LIST_DIR}/../../build/toolchain-ce CACHE PATH
    "The folder that build_toolchain.sh made")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PAVONIX_CE_TOOLCHAIN)
set(tools ${PAVONIX_CE_TOOLCHAIN}/bin)
cmake_path(NORMAL_PATH tools)
set(CMAKE_C_COMPILER ${CMAKE_CURRENT_LIST_DIR}/arm-mingw32ce-gcc --ce-tools=${tools})
set(CMAKE_CXX_COMPILER ${CMAKE_C_COMPILER})
set(CMAKE_AR ${tools}/arm-mingw32ce-ar)
set(CMAKE_RANLIB ${tools}/arm-mingw32ce-ranlib)
set(CMAKE_DLLTOOL ${tools}/arm-mingw32ce-dlltool)
set(CMAKE_RC_COMPILER ${tools}/arm-mingw32ce-windres)
set(CMAKE_OBJDUMP ${tools}/arm-mingw32ce-objdump)

# There is no start-up code to link a program with.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_C_STANDARD_LIBRARIES "" CACHE STRING "")
set(CMAKE_CXX_STANDARD_LIBRARIES "" CACHE STRING "")
