#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Measures line and branch coverage of the library by its tests. The report is
# build/coverage/report/index.html.
set -eu
cd "$(dirname "$0")/.."
scripts/install-packages.sh build test check
cmake --preset coverage >/dev/null
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)" || echo 'some tests failed; the figures count what ran'
mkdir -p build/coverage/report
gcovr --root . --object-directory build/coverage --exclude-unreachable-branches \
  --exclude-throw-branches --filter 'platform/' --filter 'context/' --filter 'xpath/' --filter 'types/' \
  --filter 'schema/' --filter 'loader/' --filter 'data/' \
  --html-details build/coverage/report/index.html --txt build/coverage/report/lines.txt --print-summary
