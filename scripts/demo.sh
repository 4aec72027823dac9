#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Shows what the library is for, with the client and the models of examples/. On
# a fresh Debian 12 it first installs what is missing.
set -eu
cd "$(dirname "$0")/.."
scripts/install-packages.sh build

# Runs a build step and shows its output only when it fails.
quietly() {
  log=$(mktemp)
  "$@" >"$log" 2>&1 || { cat "$log"; rm -f "$log"; exit 1; }
  rm -f "$log"
}
quietly cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DQMODEL_BUILD_TESTS=OFF
quietly cmake --build build/demo
PATH=$PWD/build/demo/client:$PATH
cd examples

# Prints a command, runs it, and fails when its exit status is not the expected one.
show() {
  expected=$1
  shift
  printf '\n$ %s\n' "$*"
  status=0
  "$@" || status=$?
  [ "$status" -eq "$expected" ] || { echo "exit status $status instead of $expected"; exit 1; }
}

title() { printf '\n== %s\n' "$1"; }

title 'Modules are loaded from YIN files, with all their imports'
show 0 qmodel load -i -p models router-system router-alarms

title 'Their schema as a tree'
show 0 qmodel tree -i -p models router-interfaces

title 'A request is completed with defaults'
show 0 qmodel rpc -i -p models -m router-system messages/ping.xml

title 'A bad request is answered with its error record'
show 1 qmodel rpc -i -p models -m router-system messages/restart-bad-delay.xml
show 1 qmodel rpc -i -p models -m router-system messages/install-image-unverified.xml

title 'An action in its data tree, and a notification'
show 0 qmodel rpc -i -p models -m router-interfaces messages/reset-counters.xml
show 0 qmodel notif -i -p models -m router-alarms messages/alarm-link-down.xml

title 'Values are checked against their types'
show 1 qmodel value -i -p models -m router-system /router-system:system/host-name edge-1 edge_1

title 'A deviating module changes the tree of another ...'
show 0 qmodel tree -i -p models -m router-lite router-system
title '... until it is unloaded'
show 0 qmodel tree -i -p models -m router-lite -u router-lite router-system

title 'A module in two files, and one that augments others'
show 0 qmodel tree -i -p models router-qos router-vlans

title 'Models as they are published, YANG text, are compiled first'
show 0 qmodel tree -c -i -p vendor acme-optics
show 0 qmodel rpc -c -i -p vendor -m acme-optics vendor/tune.xml
show 1 qmodel lint authors/acme-fans-wrong.yang
