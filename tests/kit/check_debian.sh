#!/usr/bin/env bash
# check_debian.sh KIT (as root): tests the Debian packages of a kit. lintian checks them; then they are installed in an
# overlay of this system, used as other projects use them, and removed.
set -euo pipefail

check_hardening() { # FILE...: the effects of Debian's hardening flags
  local file facts
  for file in "$@"; do
    facts=$(readelf -dlW "$file"; nm -D --undefined-only "$file")
    grep -qE 'BIND_NOW|FLAGS_1.*NOW' <<<"$facts" || { echo "$file: symbols are bound late"; exit 1; }
    grep -q GNU_RELRO <<<"$facts" || { echo "$file: relocations stay writable"; exit 1; }
    grep -q __stack_chk_fail <<<"$facts" || { echo "$file: no stack protector"; exit 1; }
    grep -qE '_chk(@|$)' <<<"$facts" || echo "$file: no fortified call"
  done
}

use_them() { # inside the layer
  local version
  version=$(dpkg-deb --field /kit/libpavonix1_*.deb Version)
  dpkg -i /kit/*.deb
  [ "$(pkg-config --modversion pavonix)" = "$version" ]
  [ "$(pavonix --version)" = "pavonix $version" ]
  man -w pavonix pavonix-shop 3 pavonix GetGoodListXml GetOneGoodXml GetBuyGood
  [ -z "$(pkg-config --cflags pavonix)" ] # the system's own folders are not named
  ls /usr/share/doc/libpavonix-dev/{start.md,CHANGELOG.md,examples/c/shop.c}
  grep -q 'CLI11: BSD-3-Clause' /usr/share/doc/pavonix-tools/copyright

  cd /kit
  printf '%s\n' '#include <pavonix/pavonix.h>' '#include <stdio.h>' 'int main(void)' '{' \
    '    OneGoodRequest good = {0, 0, 1, 7};' \
    '    printf("%s %d\n", PAVONIX_VERSION, GetOneGoodXml(L"none", &good, L"none", 1, L"https://h/x", 1));' \
    '    return 0;' '}' >consumer.c
  # shellcheck disable=SC2046
  gcc -std=c89 -fshort-wchar consumer.c -o by-pkg-config $(pkg-config --cflags --libs pavonix)
  printf '%s\n' 'cmake_minimum_required(VERSION 3.16)' 'project(consumer C)' "find_package(Pavonix $version REQUIRED)" \
    'add_executable(by-cmake consumer.c)' 'target_compile_options(by-cmake PRIVATE -fshort-wchar)' \
    'target_link_libraries(by-cmake Pavonix::pavonix)' >CMakeLists.txt
  cmake -S . -B build
  cmake --build build
  [ "$(./by-pkg-config)" = "$version 0" ]
  [ "$(build/by-cmake)" = "$version 0" ]

  pavonix profile new --out my.profile --serial PX-1 --user-id 42
  pavonix good --type 1 --id 7 --trace --profile my.profile --out good.xml --url http://127.0.0.1/shop/good --port 9 &&
    exit 1
  [ -s my.profile.trace.txt ]
  check_hardening /usr/bin/pavonix /usr/bin/pavonix-shop /usr/lib/*/libpavonix.so.1 \
    /usr/lib/*/pavonix/libpavonix-trace.so
  systemd-analyze verify --man=no pavonix-shop.service
  systemd-analyze security --offline=true --threshold=20 pavonix-shop.service pavonix-front.service
  getent passwd pavonix-shop
  readelf -SW /usr/lib/debug/.build-id/*/*.debug | grep debug_info >/dev/null # of the packages of debug symbols
  mapfile -t installed < <(dpkg-query -W -f '${Package}\n' '*pavonix*')
  dpkg -P "${installed[@]}"
}

if [ "$1" = inside ]; then
  use_them
  exit
fi
lintian --fail-on error "$1"/*.deb "$1"/*.dsc
layer=$(mktemp -d)
trap 'rmdir "$layer"' EXIT
export layer
unshare --mount bash -euc '
  mount -t tmpfs layer "$layer"
  mkdir "$layer"/upper "$layer"/work "$layer"/root
  mount -t overlay layer -o "lowerdir=/,upperdir=$layer/upper,workdir=$layer/work" "$layer/root"
  mount --rbind /proc "$layer/root/proc"
  mount --rbind /dev "$layer/root/dev"
  mkdir "$layer/root/kit"
  cp "$1"/*.deb "$0" "$layer/root/kit"
  chroot "$layer/root" bash "/kit/${0##*/}" inside
  rm -r "$layer/root/kit"
  left=$(find "$layer/upper" -iname "*pavonix*" -not -type c)
  [ -z "$left" ] || { echo "left behind: $left"; exit 1; }
' "$0" "$1"
echo "the Debian packages install, work and leave nothing behind"
