#: run-test REGEX            build for Linux and run the tests whose names match, as ctest -R does
regex=${1:?"which tests? A regular expression of their names"}
build_linux
exec ctest --test-dir build/linux --output-on-failure --no-tests=error -R "$regex"
