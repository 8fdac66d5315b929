#: run-row NAME [windows|ce] build what it needs and run one scenario (on Linux, or through a DLL)
name=${1:?"which row? The name in tests/e2e/rows/"}
flavour=${2:-linux}
case $flavour in
  linux) install_for_linux; configure linux ;;
  windows) build_windows; install_for_linux; configure linux -DPAVONIX_WINDOWS_DLL="$windows_dll" ;;
  ce) build_ce; install_for_linux; configure linux -DPAVONIX_CE_DLL="$ce_dll" ;;
  *) refuse "$flavour" linux windows ce ;;
esac
build_targets linux e2e_tests caller pavonix pavonix-shop watch_image
exec tools/dev/run_row.py "$name" "$flavour"
