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
# Counters of earlier runs, and notes of CMake's own trial programs, whose sources are gone.
find build/coverage '(' -name '*.gcda' -o -name '*CompilerId.gcno' ')' -delete
# Two tests let no file of the client grow, and so none of its counters.
ctest --preset coverage -j "$(nproc)" \
  -E 'AnEntryThatCannotBeWritten|AFileThatCannotBeWrittenWhole' || echo 'some tests failed; the figures count what ran'
mkdir -p "$report"
status=0
filters=$(sed -n 's|^[a-z].*|--filter &/|p' cmake/layers.txt)
# shellcheck disable=SC2086 # each filter is two words
gcovr --root . --object-directory build/coverage --exclude-unreachable-branches \
  --exclude-throw-branches $filters \
  --html-details "$report/index.html" --txt "$report/lines.txt" --print-summary \
  --fail-under-line 97 --fail-under-branch 90 >"$report/figures.txt" || status=$?
# The fifth column of a row names its unreached lines.
for file in $(awk 'NF == 5 && $4 ~ /%$/ { print $1 }' "$report/lines.txt"); do
  grep -qF "| \`$file\` |" docs/coverage.md && continue
  echo "unreached lines, and not in docs/coverage.md: $file"
  status=1
done
echo "report: $report/index.html"
cat "$report/figures.txt"
exit "$status"
