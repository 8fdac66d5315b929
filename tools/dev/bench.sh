#: bench                     compare the library with a bare loop, libcurl and OpenSSL
build_linux
exec bench/run.sh
