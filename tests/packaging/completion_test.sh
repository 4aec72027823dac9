#!/bin/bash
# SPDX-License-Identifier: BSD-3-Clause
# Every command and option of the program's help is completed by bash, and the names of
# the modules of a folder are.
# completion_test.sh QMODEL SOURCE_DIR
set -euo pipefail
source=$2
PATH=$(dirname "$1"):$PATH
# shellcheck source=completions/qmodel.bash
. "$source/completions/qmodel.bash"

# Prints what is offered for the last of the words.
offered() {
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  COMPREPLY=()
  _qmodel
  printf '%s\n' "${COMPREPLY[@]}"
}
fail() { echo "$1"; exit 1; }
has() { grep -qxF -- "$1" <<<"$2" || fail "not offered: $1"; }

options=$(qmodel --help | sed -n 's/^ *\(-[^ ]*\) \{0,1\}\(--[^ ]*\)\{0,1\}.*/\1 \2/p' | tr -d ',')
[ "$(wc -w <<<"$options")" -gt 20 ] || fail 'the help was not understood'
all=$(offered qmodel tree -)
for option in $options; do has "$option" "$all"; done
[ "$(offered qmodel tree --descr)" = --descriptions ] || fail 'a begun option'

commands=$(qmodel --help | sed -n 's/^  qmodel \([a-z]*\).*/\1/p' | grep . | sort -u)
[ "$(wc -l <<<"$commands")" -ge 8 ] || fail 'the commands were not understood'
all=$(offered qmodel '')
for command in $commands; do has "$command" "$all"; done

cd "$source/examples"
has router-system "$(offered qmodel tree -p models router-)"
has acme-optics "$(offered qmodel load -p models -p vendor acme-)"
[ "$(offered qmodel rpc -p models -m router-sys)" = router-system ] || fail 'a module after -m'
has models "$(offered qmodel tree -p mod)"
has messages/ping.xml "$(offered qmodel rpc -p models messages/pi)"
