#: bench                     compare the library with a bare loop, libcurl and OpenSSL
#: bench serving [PICTURE]   compare the shop of several machines with its parts
case ${1:-} in
  "")
    build_linux
    exec bench/run.sh ;;
  serving)
    install_for_linux
    install_missing "${deploy_packages[@]}" "${serving_packages[@]}"
    configure linux -DPAVONIX_DEVELOPMENT=ON
    build_targets linux libpavonix.so pavonix-cli pavonix-shop caller
    exec bench/serving/serving.py "${@:2}" ;;
  *) refuse "$1" serving ;;
esac
