#: test                      install what is missing, build every flavour, run check and every test
build_every_flavour
source tools/dev/check.sh
# One run over all builds, so that there is one summary at the end.
printf 'subdirs("linux" "sanitize" "windows-x64" "windows-x86" "ce-armv4")\n' >build/CTestTestfile.cmake
check tests ctest --test-dir build --output-on-failure --no-tests=error --parallel 2
if [ "$failed" -gt 0 ]; then
  echo "$failed of the checks above failed" >&2
  exit 1
fi
