#: fuzz [MINUTES]            build the fuzzers and run all of them, 7 minutes together unless told
install_for_linux
install_missing "${fuzz_packages[@]}"
configure fuzz
build_targets fuzz fuzzers
exec tools/fuzz/run.py "${1:-7}"
