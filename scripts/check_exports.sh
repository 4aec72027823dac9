#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Compares the names that the shared library exports with the committed list, and the
# version of each with the map: QMODEL_1 for the names that it lists, else QMODEL_PRIVATE_1.
# usage: check_exports.sh <libqmodel.so> <exported_names.txt> <libqmodel.map>
set -eu
export LC_ALL=C

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The version nodes of the map show up as absolute symbols; they are no functions.
nm -D --defined-only "$1" | awk '$2 != "A" { print $3 }' | sort >"$work/versioned"
sed 's/@.*//' "$work/versioned" >"$work/actual"

[ -s "$work/actual" ] || { echo "$1 exports nothing" >&2; exit 1; }
if ! diff -u "$2" "$work/actual"; then
  echo "exported names differ from $2 (- is missing, + is new)" >&2
  exit 1
fi

sed -n 's/^    \(QM[A-Za-z0-9_]*\);$/\1/p' "$3" | sort >"$work/promised"
awk 'NR == FNR { promised[$0]; next }
  { print $0 "@@" ($0 in promised ? "QMODEL_1" : "QMODEL_PRIVATE_1") }' \
  "$work/promised" "$work/actual" >"$work/expected"
if ! diff -u "$work/expected" "$work/versioned"; then
  echo "versions differ from $3" >&2
  exit 1
fi
