#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Instructions that compiling takes, and looking for faults in the same modules, against
# libxml2's parse of the YIN of every file read and of the output, and against the
# client's load of what was compiled: compile_instructions.sh BUILD NAME [-p DIR]...
# MODULE|FILE... One line: NAME, parse, compile, lint, load, and what compiling is of
# the parse, lint of the parse, and compiling of the load.
set -eu
build=$1
name=$2
shift 2
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
mkdir "$out/read" "$out/written"

# Prints how many instructions the rest of the words need inside of the function;
# what they print goes to the file $out/printed.
count() {
  function=$1
  shift
  valgrind --tool=callgrind --collect-atstart=no --toggle-collect="$function" \
    --callgrind-out-file="$out/callgrind" --log-file="$out/log" "$@" >"$out/printed" || true
  sed -n 's/.*Collected : \([0-9]*\).*/\1/p' "$out/log"
}

# The options of the words, one to a line.
folders() {
  while [ $# -gt 0 ]; do
    if [ "$1" = -p ]; then
      printf '%s\n' -p "$2"
      shift
    fi
    shift
  done
}

bench=$build/bench/compile_instructions
compile=$(count MeasuredCompile "$bench" compile "$out/written" "$@")
mv "$out/printed" "$out/files"
lint=$(count MeasuredLint "$bench" lint "$@")

number=0
while read -r file; do
  number=$((number + 1))
  case $file in
    *.yin) cp "$file" "$out/read/$number.yin" ;;
    # shellcheck disable=SC2046 # the options are words of their own
    *) "$build/client/qmodel" compile --convert $(folders "$@") "$file" >"$out/read/$number.yin" ;;
  esac
done <"$out/files"
parse=$(count MeasuredParse "$bench" parse "$out"/read/*.yin "$out"/written/*.yin)
# shellcheck disable=SC2046 # names have no blanks
load=$(count main "$build/client/qmodel" load -p "$out/written" \
  $(cd "$out/written" && ls | sed 's/\.yin$//'))
share() { echo "$(($1 * 10 / $2))" | sed 's/.$/.&/; s/^\./0./'; }
echo "$name $parse $compile $lint $load" "$(share "$compile" "$parse")" \
  "$(share "$lint" "$parse")" "$(share "$compile" "$load")"
