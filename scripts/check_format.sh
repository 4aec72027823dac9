#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Every committed C and C++ file is laid out as clang-format 14 does it.
set -eu
cd "$(dirname "$0")/.."
git ls-files -z '*.cc' '*.h' '*.c' '*.hpp' | xargs -0 clang-format --dry-run -Werror
