#: test                      install what is missing, build every flavour, and run every test
build_every_flavour
# One run over all builds, so that there is one summary at the end.
printf 'subdirs("linux" "sanitize" "windows-x64" "windows-x86" "ce-armv4")\n' >build/CTestTestfile.cmake
result=0
ctest --test-dir build --output-on-failure --no-tests=error --parallel $((2 * $(nproc) + 1)) --output-junit tests.xml || result=$?
tools/dev/summary.py build/tests.xml
[ "$result" -eq 0 ] || exit "$result"
