#: fuzz [MINUTES]            build and run all fuzzers, for 7 minutes together by default
install_for_linux
install_missing "${fuzz_packages[@]}"
configure fuzz
build_targets fuzz fuzzers
exec tools/fuzz/run.py "${1:-7}"
