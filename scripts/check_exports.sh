#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Compares the names that the shared library exports with the committed list.
# usage: check_exports.sh <libqmodel.so> <exported_names.txt>
set -eu
export LC_ALL=C

actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
# The version node of the map shows up as an absolute symbol; it is no function.
nm -D --defined-only "$1" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort >"$actual"

[ -s "$actual" ] || { echo "$1 exports nothing" >&2; exit 1; }
if ! diff -u "$2" "$actual"; then
  echo "exported names differ from $2 (- is missing, + is new)" >&2
  exit 1
fi
