#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Compares what the functions of the public headers take and give with the stored
# description, tests/api/libqmodel.abi. Names that came are no difference; what is gone or
# changed fails.
# usage: check_abi.sh [--update] [LIBQMODEL_SO]   (built with debug information)
set -eu
cd "$(dirname "$0")/.."
update=
[ "${1:-}" != --update ] || { update=1; shift; }
library=${1:-build/release/libqmodel.so}
stored=tests/api/libqmodel.abi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Compared is what was promised then, so that a name that is gone is missed.
if [ -n "$update" ]; then
  sed -n 's/^    \(QM[A-Za-z0-9_]*\);$/\1/p' libqmodel.map >"$work/names"
else
  sed -n 's/.*<elf-symbol name="\([A-Za-z0-9_]*\)".*/\1/p' "$stored" >"$work/names"
fi
{ echo '[abi_whitelist]'; sed 's/^/  /' "$work/names"; } >"$work/promise"
if [ -n "$update" ]; then
  abidw --exported-interfaces-only --kmi-whitelist "$work/promise" --headers-dir include \
    --drop-private-types --no-corpus-path --no-comp-dir-path --no-show-locs \
    --no-parameter-names --type-id-style hash "$library" |
    python3 scripts/abi_description.py "$work/names" >"$work/new"
  mv "$work/new" "$stored"
else
  abidiff --no-added-syms --kmi-whitelist "$work/promise" "$stored" "$library"
fi
