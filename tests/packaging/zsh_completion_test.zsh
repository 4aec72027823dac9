#!/usr/bin/env zsh
# SPDX-License-Identifier: BSD-3-Clause
# Every command and option of the program's help is completed by zsh, and the names of the
# modules of a folder are. zsh's own functions, which work within its line editor only,
# print what they are given.
# zsh_completion_test.zsh QMODEL SOURCE_DIR
emulate -R zsh
set -eu
path=(${1:h} $path)
source_folder=$2

compadd() { [[ $1 == -a ]] && print -rl -- ${(P)2} }
_files() { print -r -- _files $@ }

# Prints what is offered for the last of the words.
offered() {
  local -a words=("$@")
  integer CURRENT=$#
  source $source_folder/completions/qmodel.zsh
}
fail() { print -r -- $1; exit 1 }
has() { print -r -- $2 | grep -qxF -e $1 || fail "not offered: $1" }

dashed=(${=$(qmodel --help | sed -n 's/^ *\(-[^ ]*\) \{0,1\}\(--[^ ]*\)\{0,1\}.*/\1 \2/p' | tr -d ',')})
(( ${#dashed} > 20 )) || fail 'the help was not understood'
all=$(offered qmodel tree -)
for option in $dashed; do has $option $all; done

verbs=(${(f)"$(qmodel --help | sed -n 's/^  qmodel \([a-z]*\).*/\1/p' | grep . | sort -u)"})
(( ${#verbs} >= 8 )) || fail 'the commands were not understood'
all=$(offered qmodel '')
for verb in $verbs; do has $verb $all; done

cd $source_folder/examples
has router-system "$(offered qmodel tree -p models router-)"
has acme-optics "$(offered qmodel load -p models -p vendor acme-)"
has router-system "$(offered qmodel rpc -p models -m router-sys)"
has '_files -/' "$(offered qmodel tree -p mod)"
has _files "$(offered qmodel rpc -p models messages/pi)"
