#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# What pkg-config says of a build that installs into folders given as absolute paths, and
# of one with ordinary folders. Configures only.
# folders_test.sh SOURCE_DIR
set -eu
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
configure() {
  rm -rf "$work/build"
  cmake -S "$source" -B "$work/build" -G Ninja -DQMODEL_BUILD_TESTS=OFF "$@" >/dev/null
  PKG_CONFIG_PATH=$work/build
  export PKG_CONFIG_PATH
}
is() { [ "$1" = "$2" ] || { echo "$1 instead of $2"; exit 1; }; }

configure -DCMAKE_INSTALL_PREFIX=/opt/q -DCMAKE_INSTALL_LIBDIR=/srv/lib64 \
  -DCMAKE_INSTALL_INCLUDEDIR=/srv/headers
is "$(pkg-config --variable=prefix qmodel)" /opt/q
is "$(pkg-config --variable=libdir qmodel)" /srv/lib64
is "$(pkg-config --variable=includedir qmodel)" /srv/headers
is "$(pkg-config --libs-only-L qmodel | tr -d ' ')" -L/srv/lib64
# A C program that links the static library needs that of C++ as well, the shared one does not.
pkg-config --static --libs qmodel | grep -q -e '-lstdc++' || { echo 'static, no stdc++'; exit 1; }
! pkg-config --libs qmodel | grep -q -e '-lstdc++' || { echo 'shared, with stdc++'; exit 1; }

configure -DCMAKE_INSTALL_PREFIX=/opt/q -DCMAKE_INSTALL_LIBDIR=lib/deep
# Where the file lies when it is installed, "$pcfiledir" is lib/deep/pkgconfig.
mkdir -p "$work/q/lib/deep/pkgconfig"
cp "$work/build/qmodel.pc" "$work/q/lib/deep/pkgconfig"
PKG_CONFIG_PATH=$work/q/lib/deep/pkgconfig
export PKG_CONFIG_PATH
is "$(realpath -m "$(pkg-config --variable=prefix qmodel)")" "$(realpath "$work/q")"
is "$(realpath -m "$(pkg-config --variable=libdir qmodel)")" "$(realpath "$work/q")/lib/deep"
