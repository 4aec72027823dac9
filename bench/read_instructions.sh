#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Instructions that reading YANG text takes, against libxml2's parse of the YIN that the
# client converts it to: read_instructions.sh BUILD FILE.yang... One line for each file,
# and one for all. Folders to look imports up in stand in QMODEL_PATH, between colons.
set -eu
build=$1
shift
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT

options=$(printf %s "${QMODEL_PATH:-}" | sed 's/[^:][^:]*/-p &/g; s/:/ /g')

# Prints how many instructions the program needs inside of the function.
count() {
  valgrind --tool=callgrind --collect-atstart=no --toggle-collect="$1" \
    --callgrind-out-file="$out/callgrind" "$build/bench/read_instructions" "$2" "$3" 2>&1 |
    sed -n 's/.*Collected : \([0-9]*\).*/\1/p'
}

parses=0
reads=0
for file in "$@"; do
  yin=$out/converted.yin
  # shellcheck disable=SC2086 # the options are words of their own
  if ! "$build/client/qmodel" compile --convert $options "$file" >"$yin"; then continue; fi
  parse=$(count MeasuredParse parse "$yin")
  read=$(count MeasuredRead read "$file")
  parses=$((parses + parse))
  reads=$((reads + read))
  echo "$file $parse $read $((read * 100 / parse))%"
done
echo "all $parses $reads $((reads * 100 / parses))%"
