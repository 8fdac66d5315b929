#!/bin/sh
# make_and_unpack.sh SOURCE KIT UNPACKED: makes the kit without Debian packages, and unpacks its archives to
# UNPACKED/ce-armv4 and UNPACKED/windows.
set -eu
/usr/bin/python3 -B "$1/packaging/make_kit.py" --without-debian "$2"
rm -rf "$3"
mkdir "$3"
for flavour in ce-armv4 windows; do
  python3 -m zipfile -e "$2"/*-$flavour.zip "$3"
  mv "$3"/*-*-$flavour "$3/$flavour"
done
