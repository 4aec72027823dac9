#!/bin/bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds the Debian packages from what is committed, asks lintian, and runs the packages'
# own test: in a fresh chroot where one can be made (root, debootstrap, a mirror), else
# on the packages unpacked into an empty folder.
# usage: check_packages.sh [--no-chroot]
set -euo pipefail
cd "$(dirname "$0")/.."
source=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

git archive --prefix=libqmodel/ HEAD | tar -x -C "$work"
cd "$work/libqmodel"
DEB_BUILD_OPTIONS="nocheck parallel=$(nproc)" dpkg-buildpackage -b -us -uc >"$work/log" 2>&1 ||
  { tail -40 "$work/log"; exit 1; }
cd "$work"
lintian --fail-on error,warning --allow-root ./*.changes
dpkg-deb --fsys-tarfile qmodel-tools_*.deb | tar -xO ./usr/bin/qmodel >program
! readelf -d program | grep -E 'R(UN)?PATH' || { echo 'the program has a run path'; exit 1; }
packages=(libqmodel1_*.deb libqmodel-dev_*.deb qmodel-tools_*.deb)

in_chroot() {
  [ "${1:-}" != --no-chroot ] && [ "$(id -u)" -eq 0 ] && command -v debootstrap >/dev/null || return 1
  timeout 300 debootstrap --variant=minbase --include=g++,gcc,libc6-dev,pkg-config,libxml2-dev \
    bookworm root >debootstrap.log 2>&1 || return 1
}
if in_chroot "$@"; then
  echo 'in a fresh chroot:'
  mkdir root/build
  cp -r libqmodel/debian libqmodel/examples "${packages[@]}" root/build
  chroot root sh -ec 'cd /build; dpkg -i ./*.deb >/dev/null; debian/tests/consumer'
else
  echo 'unpacked into an empty folder:'
  mkdir unpacked
  for package in "${packages[@]}"; do dpkg-deb -x "$package" unpacked; done
  libs=$(dirname "$(find "$work/unpacked" -name libqmodel.so)")
  PKG_CONFIG_PATH=$libs/pkgconfig LD_LIBRARY_PATH=$libs ROOT=$work/unpacked \
    "$source/debian/tests/consumer"
fi
