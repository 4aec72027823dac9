#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Installs the build into an empty prefix, moves it, and uses it as an outsider does:
# the program, a C program by pkg-config and by the manual page's line, C and C++
# programs by find_package(), the example agent among them. Then uninstalls it, and nothing is left.
# install_test.sh BUILD_DIR SOURCE_DIR C_COMPILER CXX_COMPILER
set -eu
build=$1
source=$2
cc=$3
cxx=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$1"; exit 1; }
request='<restart xmlns="urn:example:router-system"><reason>test</reason></restart>'
check() { [ "$("$1" "$source/examples/models" router-system "$request")" = valid ]; }

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
prefix=$work/moved

# The program finds its library by its own place.
unset LD_LIBRARY_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name qmodel.pc)")
export PKG_CONFIG_PATH
[ "$("$prefix/bin/qmodel" --version)" = "qmodel $(pkg-config --modversion qmodel)" ]
[ -f "$prefix/share/bash-completion/completions/qmodel" ] || fail 'no completion for bash'
[ -f "$prefix/share/zsh/site-functions/_qmodel" ] || fail 'no completion for zsh'
if command -v scdoc >/dev/null; then
  for page in man1/qmodel.1 man3/libqmodel.3 man3/libqmodel_agent.3; do
    [ -s "$prefix/share/man/$page" ] || fail "no manual page $page"
  done
fi

LD_LIBRARY_PATH=$(pkg-config --variable=libdir qmodel)
export LD_LIBRARY_PATH
cmake -S "$source/tests/packaging/consumer" -B "$work/build" -G Ninja -DCMAKE_C_COMPILER="$cc" \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix" \
  -DEXAMPLE_SOURCE="$source/examples/validate_rpc.c" >/dev/null
cmake --build "$work/build" >/dev/null
check "$work/build/c_program"
[ "$("$work/build/cxx_program" "$source/examples/models" router-system)" = router-system ]

cmake -S "$source/examples/agent" -B "$work/agent" -G Ninja -DCMAKE_C_COMPILER="$cc" \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/agent" >/dev/null
mkdir "$work/state"
hello=$("$work/agent/netconf_agent" "$work/state" --models "$source/examples/agent/models" </dev/null)
case $hello in
  *'module=router-packages'*) ;;
  *) fail "the example agent says: $hello" ;;
esac

# A plain compiler will do as well, without a word.
words=$("$cc" -std=c11 -Wall -Wextra -Wpedantic "$source"/examples/agent/*.c -o "$work/plain_agent" \
  $(pkg-config --cflags --libs qmodel libxml-2.0) 2>&1) || fail "$words"
[ -z "$words" ] || fail "$words"

# The line of the manual page, as printed there.
line=$(sed -n 's/^\*\(cc .*\)\*$/\1/p' "$source/docs/man/libqmodel.3.scd" | tr -d '\\')
[ -n "$line" ] || fail 'the manual page has no line that compiles'
mkdir "$work/bin"
ln -s "$(command -v "$cc")" "$work/bin/cc"
cp "$source/examples/validate_rpc.c" "$work/program.c"
(cd "$work" && PATH=$work/bin:$PATH sh -c "$line")
check "$work/program"

DESTDIR=$work/root cmake --install "$build" >/dev/null
DESTDIR=$work/root cmake --build "$build" --target uninstall >/dev/null
left=$(cd "$work/root" && find . ! -type d -o -name qmodel)
[ -z "$left" ] || fail "left after uninstall: $left"
