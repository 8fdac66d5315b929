#!/bin/sh
# Makes build/ce-armv4/symbols.o: the functions of PAVONIX.dll for gdb, which does not read images of Windows CE.
# Links the image again with its names kept; every function is where it is in the real one.
set -e
cd "$(dirname "$0")/../build/ce-armv4"
ninja PAVONIX.dll
ninja -t commands PAVONIX.dll | tail -n 1 |
  sed 's/ -Wl,--strip-all//; s/-o PAVONIX.dll/-o named.dll/; s/PAVONIX.map/named.map/' | sh
../toolchain-ce/bin/arm-mingw32ce-nm -n named.dll |
  awk '$2 == "T" { printf ".org 0x%s - 0x10000000\n.globl %s\n.type %s, %%function\n%s:\n", $1, $3, $3, $3 }' |
  arm-linux-gnueabi-as -o symbols.o -
