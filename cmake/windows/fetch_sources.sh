#!/bin/sh
# fetch_sources.sh FOLDER PACKAGE...: fetches Debian's source packages, for targets
# without Debian libraries.
#
# On success the sources are in FOLDER/PACKAGE-VERSION. The packages come from the
# machine's own package sources, read as source entries from a private list, so
# the machine's configuration is not changed. A finished fetch is kept.
# Needs: apt dpkg-dev.
set -eu

directory=$1
shift
mkdir -p "$(dirname "$directory")"
exec 9>"$directory.lock" # of builds that run at the same time, one fetches
flock 9
if [ -e "$directory/stamp" ]; then
    exit 0
fi
rm -rf "$directory"
mkdir -p "$directory/apt/sources" "$directory/apt/lists/partial" "$directory/apt/cache/archives/partial"

for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    if [ -e "$list" ]; then
        sed -n 's/^deb /deb-src /p' "$list" >>"$directory/apt/sources/lines.list"
    fi
done
for list in /etc/apt/sources.list.d/*.sources; do
    if [ -e "$list" ]; then
        sed 's/^Types:.*/Types: deb-src/' "$list" >"$directory/apt/sources/$(basename "$list")"
    fi
done

fetch() {
    apt-get -q -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$directory/apt/sources" \
        -o Dir::State::lists="$directory/apt/lists" -o Dir::Cache="$directory/apt/cache" "$@"
}
cd "$directory"
{
    # a mirror without source packages may fail here; the next line decides
    fetch update || true
    fetch source "$@"
    for package; do ls -d "$package"-*/ || exit 1; done
} >log 2>&1 || { tail -n 20 log; exit 1; }
rm -rf apt
touch stamp
