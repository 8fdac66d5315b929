#: package                   make the kit in build/kit/: archives for the device and for Windows, the device's cabinet,
#:                           Debian packages, the source, checksums
uncommitted=$(git status --porcelain)
build_windows
build_ce
install_missing "${tool_packages[@]}" "${package_packages[@]}" "${debian_packages[@]}"
echo "making the kit"
run_quietly package packaging/make_kit.py
echo "testing the Debian packages"
run_quietly package-check tests/kit/check_debian.sh build/kit
cat build/kit/SHA256SUMS
if [ -n "$uncommitted" ]; then
  printf 'The source archive and the Debian packages are of the last commit, without these changes:\n%s\n' "$uncommitted"
fi
