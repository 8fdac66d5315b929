#!/bin/sh
# repeat_build.sh SOURCE BUILD CMAKE-OPTION...: builds the DLL a second time, in
# another folder and without a network, and compares it with BUILD's byte for byte.
set -eu
source=$1
build=$2
shift 2
offline=
for own in "unshare --net" "unshare --map-root-user --net"; do
    [ -n "$offline" ] || ! $own true || offline=$own
done
[ -n "$offline" ] || echo "this system allows no network namespace: built with the network on"
$offline cmake --fresh -G Ninja -S "$source" -B "$build/repeat" "$@"
$offline cmake --build "$build/repeat" --parallel 2
for file in PAVONIX.dll trace/PAVONIX.dll PAVONIX.lib libPAVONIX.dll.a PavonixTest.exe; do
    cmp "$build/$file" "$build/repeat/$file"
done
