# Builds only what the demonstration needs.
#: demo [ce]                 install missing packages, build, and buy in a sample shop
#:                           (ce: with the Windows CE image, under qemu-arm)
#: demo scale [ce]           the shop of several machines on this one, while parts of it fail
scale=
if [ "${1:-}" = scale ]; then
  scale=yes
  shift
fi
case ${1:-linux} in
  ce) build_ce ;;
  linux) ;;
  *) refuse "$1" linux ce scale ;;
esac
if [ -n "$scale" ]; then
  install_for_linux
  install_missing "${deploy_packages[@]}"
  configure linux -DPAVONIX_DEVELOPMENT=ON
  build_targets linux libpavonix.so pavonix-cli pavonix-shop caller
  exec tools/demo/scale.py "$@"
fi
install_missing "${core_packages[@]}" "${tool_packages[@]}"
configure linux -DPAVONIX_DEVELOPMENT=OFF
build_targets linux libpavonix.so pavonix-cli pavonix-shop
exec tools/demo/demo.sh "$@"
