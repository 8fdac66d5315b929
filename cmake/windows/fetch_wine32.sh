#!/bin/sh
# fetch_wine32.sh FOLDER: unpacks 32-bit Wine from Debian's packages for i386, for the
# tests of the 32-bit DLL. FOLDER/wine32 then runs 32-bit Windows programs.
#
# The packages are only unpacked, with an apt state of their own, so that the system
# stays unchanged and needs no second architecture. A finished fetch is kept.
# Needs: apt dpkg patchelf.
set -eu

if [ -e "$1/wine32" ]; then
    exit 0
fi
rm -rf "$1"
mkdir -p "$1/apt/lists/partial" "$1/apt/cache/archives/partial" "$1/root"
folder=$(cd "$1" && pwd)
root=$folder/root
. /etc/os-release
archive=$(cat /etc/apt/sources.list.d/debian.sources /etc/apt/sources.list 2>/dev/null |
    awk '/^URIs:/ { print $2; exit } /^deb / { for (i = 2; i <= NF; i++) if ($i ~ /:\/\//) { print $i; exit } }')
: >"$folder/apt/status"
echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $archive $VERSION_CODENAME main" \
    >"$folder/apt/sources.list"
cat >"$folder/apt/configuration" <<TEXT
APT::Architecture "i386";
APT::Architectures { "i386"; };
APT::Sandbox::User "root";
Dir::State "$folder/apt";
Dir::State::status "$folder/apt/status";
Dir::Cache "$folder/apt/cache";
Dir::Etc::sourcelist "$folder/apt/sources.list";
Dir::Etc::sourceparts "-";
TEXT
{
    export APT_CONFIG="$folder/apt/configuration"
    apt-get -q update &&
        apt-get -q install --download-only --yes --no-install-recommends wine32 libwine &&
        for package in "$folder"/apt/cache/archives/*.deb; do
            dpkg-deb -x "$package" "$root" || exit 1
        done
} >"$folder/log" 2>&1 || { tail -n 20 "$folder/log"; exit 1; }
rm -rf "$folder/apt"

# As the packages' installation would: mark zlib1.dll as Wine's own, or user32 does
# not load, and find the loader of 32-bit programs.
zlib=i686-w64-mingw32/lib/zlib1.dll
{
    head -c 64 "$root/usr/$zlib"
    printf 'Wine builtin DLL\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0'
    tail -c +97 "$root/usr/$zlib"
} >"$root/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll"
loader=$(find "$root" -name ld-linux.so.2 -path '*/i386-linux-gnu/*')
for program in wine wineserver32; do
    patchelf --set-interpreter "$loader" "$root/usr/lib/wine/$program"
done

# The server is named because the one beside it is a script that looks elsewhere.
cat >"$folder/starter" <<TEXT
#!/bin/sh
export LD_LIBRARY_PATH=$root/lib/i386-linux-gnu:$root/usr/lib/i386-linux-gnu
export WINEPREFIX=\${WINEPREFIX:-$folder/prefix} WINEARCH=win32 WINEDEBUG=\${WINEDEBUG:--all} LC_ALL=C.UTF-8
export WINESERVER=$root/usr/lib/wine/wineserver32 WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
exec $root/usr/lib/wine/wine "\$@"
TEXT
chmod +x "$folder/starter"
mv "$folder/starter" "$folder/wine32"
