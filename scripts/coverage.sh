#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Measures line and branch coverage of the library by its tests, and fails when
# it is below the bounds. docs/coverage.md tells what is left out and why.
set -eu
cd "$(dirname "$0")/.."
report=build/coverage/report
scripts/install-packages.sh build test check
cmake --preset coverage >/dev/null
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)" || echo 'some tests failed; the figures count what ran'
mkdir -p "$report"
status=0
gcovr --root . --object-directory build/coverage --exclude-unreachable-branches \
  --exclude-throw-branches --filter 'platform/' --filter 'context/' --filter 'xpath/' --filter 'types/' \
  --filter 'schema/' --filter 'loader/' --filter 'data/' \
  --html-details "$report/index.html" --txt "$report/lines.txt" --print-summary \
  --fail-under-line 97 --fail-under-branch 90 >"$report/figures.txt" || status=$?
echo "report: $report/index.html"
cat "$report/figures.txt"
exit "$status"
