#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Installs the build into a folder of its own, moves it, and builds and runs the
# example against it twice: by find_package() and by pkg-config.
# install_and_consume.sh BUILD_DIR SOURCE_DIR C_COMPILER
set -eu
build=$1
source=$2
cc=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
prefix=$work/moved
export LD_LIBRARY_PATH="$prefix/lib:$prefix/lib/$("$cc" -dumpmachine)"
request='<restart xmlns="urn:example:router-system"><reason>test</reason></restart>'
check() { [ "$("$1" "$source/examples/models" router-system "$request")" = valid ]; }

cmake -S "$source/tests/consumer" -B "$work/build" -G Ninja -DCMAKE_C_COMPILER="$cc" \
  -DCMAKE_PREFIX_PATH="$prefix" -DEXAMPLE_SOURCE="$source/examples/validate_rpc.c" >/dev/null
cmake --build "$work/build" >/dev/null
check "$work/build/consumer"

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name qmodel.pc)")
export PKG_CONFIG_PATH
# shellcheck disable=SC2046  # lists of words
"$cc" -std=c11 "$source/examples/validate_rpc.c" $(pkg-config --cflags --libs qmodel) \
  -o "$work/by-pkg-config"
check "$work/by-pkg-config"
[ "$("$prefix/bin/qmodel" --version)" = "qmodel $(pkg-config --modversion qmodel)" ]
