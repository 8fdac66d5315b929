#!/bin/sh
# repeat_build.sh SOURCE BUILD CMAKE-OPTION...: builds the DLL a second time, in
# another folder, and compares it with BUILD's byte for byte.
set -eu
source=$1
build=$2
shift 2
cmake -G Ninja -S "$source" -B "$build/repeat" "$@"
cmake --build "$build/repeat" --parallel 2
for file in PAVONIX.dll PAVONIX.lib libPAVONIX.dll.a; do
    cmp "$build/$file" "$build/repeat/$file"
done
