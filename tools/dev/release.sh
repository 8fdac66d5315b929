# A release: everything is checked before the tag is set.
#: release VERSION           check the tree, the change log and the versions, run every test, make the kit, and tag
#:                           the commit; nothing is pushed
version=${1:?"which version? ./dev release 1.2.3"}
packaging/check_release.py "$PWD" "$version"
source tools/dev/test.sh
source tools/dev/package.sh
git tag --annotate "v$version" --message "Pavonix $version"
echo "tagged v$version; the kit is in build/kit. To publish: git push origin v$version, and upload the kit"
