#: build [linux|windows|ce]  libpavonix.so in build/linux/, the DLLs in build/windows-x64/,
#:                           build/windows-x86/ and build/ce-armv4/ (all of them without an argument)
case ${1:-all} in
  linux) build_linux ;;
  windows) build_windows ;;
  ce) build_ce ;;
  all) build_linux; build_windows; build_ce ;;
  *) refuse "$1" linux windows ce ;;
esac
