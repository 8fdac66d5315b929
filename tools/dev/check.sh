#: check                     build every flavour; format, lint, rules for dependencies, pages' links, share of tests
check() { # counts what failed in $failed, and goes on
  echo "checking $1"
  shift
  "$@" || failed=$((failed + 1))
}

formatted() {
  find . \( -name build -o -name .git \) -prune -o \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) -print0 |
    xargs -0 clang-format-19 --dry-run -Werror
}

# A script imports what is beside it, so each folder is checked by itself.
python_checked() {
  local folder cache=$PWD/build/check/mypy
  git ls-files -z '*.py' | xargs -0 pyflakes3 || return
  git ls-files '*.py' | xargs -n1 dirname | sort -u | while read -r folder; do
    (cd "$folder" && mypy --cache-dir="$cache" --ignore-missing-imports --no-error-summary ./*.py) || exit
  done
}

# The commands of ./dev are parts of one script, which has the variables that they use
# (SC2034, SC2154); quoted text for another shell is meant (SC2016).
shell_checked() {
  shellcheck --shell=bash --exclude=SC2016,SC2034,SC2154 tools/dev/*.sh &&
    git grep -lE '^#!.*(bash|/sh)$' | xargs shellcheck --external-sources --exclude=SC2016,SC2034
}

failed=0
build_every_flavour "${check_packages[@]}"
check format formatted
check Python python_checked
check shell shell_checked
check lint tools/check/tidy.py build/linux build/sanitize build/windows-x64 build/ce-armv4 build/device-arm
check "dependencies and sizes" python3 -B tests/dependencies_test.py
check "links of the pages" tools/check/links.py
check "share of tests" tools/check/share_of_tests.py
[ "$failed" -eq 0 ] || { echo "$failed of the checks above failed" >&2; exit 1; }
