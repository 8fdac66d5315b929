#!/bin/sh
# build_toolchain.sh [FOLDER]: builds the GNU binutils for Windows CE on ARM
# (arm-mingw32ce) from Debian's package binutils-source, which still has that target,
# as FOLDER/bin/arm-mingw32ce-{as,ld,ar,dlltool,objdump,windres,...}; FOLDER is
# build/toolchain-ce by default. A finished tool chain of the same version is kept.
# Needs: binutils-source gcc make flex bison m4 xz-utils.
set -eu

root=$(cd "$(dirname "$0")/../.." && pwd)
directory=$(realpath -m "${1:-$root/build/toolchain-ce}")
tarball=$(ls /usr/src/binutils/binutils-*.tar.xz)
version=$(basename "$tarball" .tar.xz)
stamp=$directory/$version.stamp

if [ -e "$stamp" ]; then
    exit 0
fi
work=$directory/work
rm -rf "$work"
mkdir -p "$work/build"
echo "building $version for arm-mingw32ce, about two minutes; log: $work/log"
{
    tar -xf "$tarball" -C "$work" &&
        cd "$work/build" &&
        "../$version/configure" --target=arm-mingw32ce --prefix="$directory" --disable-nls --disable-werror \
            --disable-gdb --disable-gprofng --disable-gprof --disable-shared --disable-plugins \
            --enable-deterministic-archives &&
        make -j"$(nproc)" MAKEINFO=true &&
        make MAKEINFO=true install-strip-binutils install-strip-gas install-strip-ld
} >"$work/log" 2>&1 || { tail -n 20 "$work/log"; exit 1; }
cd "$directory"
cp "$work/log" log
rm -rf "$work" share
touch "$stamp"
