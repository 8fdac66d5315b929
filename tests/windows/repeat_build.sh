#!/bin/sh
# repeat_build.sh SOURCE BUILD TOOLCHAIN BUILD-TYPE: builds the DLL a second time,
# in another folder, and compares it with BUILD's byte for byte.
set -eu
cmake -G Ninja -S "$1" -B "$2/repeat" --toolchain "$3" -DCMAKE_BUILD_TYPE="$4"
cmake --build "$2/repeat" --parallel 2
for file in PAVONIX.dll PAVONIX.lib libPAVONIX.dll.a; do
    cmp "$2/$file" "$2/repeat/$file"
done
