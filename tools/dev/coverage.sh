#: coverage                  the tests' coverage of lines and branches on Linux, by folder; details in build/coverage/html/
install_for_linux
install_missing "${coverage_packages[@]}"
configure coverage
build_targets coverage unit_tests e2e_tests prove_port caller libpavonix.so
exec tools/check/coverage.py
