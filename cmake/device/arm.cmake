# Linux on ARM by Debian's cross compiler, for the program that runs the device's
# image: it needs the device's instruction set around it, not its system.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(PAVONIX_FLAVOUR runner)
set(CMAKE_C_COMPILER arm-linux-gnueabi-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabi-g++)
