#: check                     build every flavour; format, lint, rules of the house, pages' links, share of tests
check() { # counts what failed in $failed, and goes on
  echo "checking $1"
  shift
  "$@" || failed=$((failed + 1))
}

formatted() {
  find . \( -name build -o -name .git \) -prune -o \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) -print0 |
    xargs -0 clang-format --dry-run -Werror
}

failed=0
build_every_flavour "${check_packages[@]}"
check format formatted
check lint tools/check/tidy.py build/linux build/sanitize build/windows-x64 build/ce-armv4 build/device-arm
check "rules of the house" python3 -B tests/house_test.py
check "links of the pages" tools/check/links.py
check "share of tests" tools/check/share_of_tests.py
[ "$failed" -eq 0 ] || { echo "$failed of the checks above failed" >&2; exit 1; }
