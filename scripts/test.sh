#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Builds everything and runs the whole test suite. On a fresh Debian 12 it first
# installs what is missing.
set -eu
cd "$(dirname "$0")/.."
scripts/install-packages.sh build test
cmake --preset release
cmake --build --preset release
ctest --preset release -j "$(nproc)" "$@"
