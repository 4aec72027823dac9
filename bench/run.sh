#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Builds in release mode and prints all tables; words are those of measure.py, for example
# `bench/run.sh --small --only patterns`. Real models are taken from QMODEL_MODELS_DIR.
set -eu
cd "$(dirname "$0")/.."
cmake --preset bench >/dev/null
cmake --build --preset bench --target bench_count qmodel_bench >/dev/null
python3 bench/measure.py build/bench "$@"
