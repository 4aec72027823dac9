#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Builds the library as a part of another project, static, and runs a program with it.
# subproject_test.sh SOURCE_DIR C_COMPILER CXX_COMPILER
set -eu
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake -S "$source/tests/packaging/subproject" -B "$work/build" -G Ninja \
  -DCMAKE_C_COMPILER="$2" -DCMAKE_CXX_COMPILER="$3" -DQMODEL_SOURCE="$source" >/dev/null
cmake --build "$work/build" --target program >/dev/null
! ldd "$work/build/program" | grep qmodel
request='<restart xmlns="urn:example:router-system"><reason>test</reason></restart>'
[ "$("$work/build/program" "$source/examples/models" router-system "$request")" = valid ]
