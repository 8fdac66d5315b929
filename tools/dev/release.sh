#: release VERSION           check the tree, the change log and the versions, run every test, make the kit, and tag
#:                           the commit; nothing is pushed
version=${1:?"which version? ./dev release 1.2.3"}
packaging/check_release.py "$PWD" "$version"
for release in 12 13; do
  if [ ! -e "build/fresh/$(git rev-parse HEAD).$release" ]; then
    echo "this commit was not tested on a bare Debian $release; run ./dev fresh $release" >&2
    exit 1
  fi
done
source tools/dev/test.sh
source tools/dev/package.sh
git tag --annotate "v$version" --message "Pavonix $version"
echo "tagged v$version; the kit is in build/kit. To publish: git push origin v$version, and upload the kit"
