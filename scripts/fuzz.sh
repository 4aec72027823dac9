#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Runs every fuzz target for a time, with the address and undefined-behaviour
# sanitizers: fuzz.sh [SECONDS_PER_TARGET [TARGET...]]. New inputs go to
# build/fuzz/found/; one that breaks something is kept as build/fuzz/crash-… and
# belongs into fuzz/regressions/ with its fix.
set -eu
cd "$(dirname "$0")/.."
seconds=${1:-60}
seed=${QMODEL_FUZZ_SEED:-0} # 0: another one each time
[ $# -eq 0 ] || shift
scripts/install-packages.sh build test check
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
[ $# -ne 0 ] || set -- load couple rpc rpc_tree notif agent xpath path range value pattern lint \
  compile yang_text
for target in "$@"; do
  found=build/fuzz/found/$target
  mkdir -p "$found" "fuzz/regressions/$target"
  echo "--- $target, $seconds s"
  dict=fuzz/dict/$target.dict
  [ -f "$dict" ] || dict=fuzz/dict/yin.dict
  build/fuzz/fuzz/"$target"_fuzz -seed="$seed" -max_total_time="$seconds" -max_len=8195 -timeout=20 \
    -rss_limit_mb=2048 -dict="$dict" -artifact_prefix="build/fuzz/crash-$target-" \
    -print_final_stats=1 -verbosity=0 "$found" "fuzz/corpus/$target" "fuzz/regressions/$target" 2>&1 |
    { grep -E 'ERROR|SUMMARY|number_of_executed_units|crash-|timeout-|oom-|blocks of the library' || true; }
  ! ls build/fuzz/crash-"$target"-* >/dev/null 2>&1
done
