#!/bin/bash
# SPDX-License-Identifier: BSD-3-Clause
# Validates every message of the suites in all ways there are: with an index and without, with
# its memory refused at each step, while features are switched and a module comes and goes.
# Where two of them differ the program of the message ends itself, so that its test fails:
# see tests/differential. Takes the build folder, with all tests built.
#
# Left out are what compares them itself (random models), what refuses memory from one end to
# the other for the messages of the examples (memory/), one pattern that takes libxml2 half a
# second each time, threads that validate a few messages thousands of times, a test that
# measures the stack, and one that kills the agent between two calls of the system.
set -euo pipefail
cd "$1"
suites='^(data|xpath|agent|loader|hostile|stack|client|api|real|agent_example)/|^fuzz/(rpc|notif|agent)|CompiledMessages|IdentityDefaults'
without='SameResults|PatternThatExplodes|SharedPatterns|TakesNoMoreStack|killed_at'
count=$(mktemp)
trap 'rm -f "$count"' EXIT
export LD_LIBRARY_PATH=$PWD/tests/differential QMODEL_DIFFERENTIAL_COUNT=$count
run() {
  ctest --no-tests=error --output-on-failure -j "$(nproc)" "$@" | sed '/ Passed /d; /^ *Start /d'
}
QMODEL_DIFFERENTIAL=changes run -R "$suites" -E "$without|Thread"
# Nothing is changed beside other threads.
QMODEL_DIFFERENTIAL=runs run -R Thread -E "$without"
awk '{ messages += $1; runs += $2; refused += $3; big += $4 }
  END {
    printf "%d messages, %d other runs, %d of them with memory refused; %d too big\n",
      messages, runs, refused, big
    # So many at least, or the runs have not been led here.
    exit messages < 9000 || refused < 500000
  }' "$count"
