#: run-row NAME [windows|ce|trace]  build what it needs and run one scenario: on Linux, through a DLL,
#:                           or with the tracing build, whose trace it shows if the row fails
name=${1:?"which row? The name in tests/e2e/rows/"}
flavour=${2:-linux}
case $flavour in
  linux | trace) install_for_linux; configure linux ;;
  windows) build_windows; install_for_linux; configure linux -DPAVONIX_WINDOWS_DLL="$windows_dll" ;;
  ce) build_ce; install_for_linux; configure linux -DPAVONIX_CE_DLL="$ce_dll" ;;
  *) refuse "$flavour" linux windows ce trace ;;
esac
build_targets linux e2e_tests caller libpavonix.so pavonix_trace watch_image
exec tools/dev/run_row.py "$name" "$flavour"
