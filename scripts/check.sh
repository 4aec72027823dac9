#!/bin/bash
# SPDX-License-Identifier: BSD-3-Clause
# The slower checks, one after another; the first that fails ends the run. Ends
# with the test suite under the address and undefined-behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
mapfile -t layers < <(grep '^[a-z]' cmake/layers.txt)
step() { printf '\n=== %s (%s)\n' "$1" "$(date +%T)"; }

step 'format'
scripts/check_format.sh

step 'no warning with clang++'
cmake -S . -B build/clang -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQMODEL_WERROR=ON \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ >/dev/null
cmake --build build/clang --target all bench_count

# The longest step but one. A third of the analyzer's usual budget of nodes bounds what
# it spends on one function.
step 'clang-tidy'
git ls-files "${layers[@]/%//*.cc}" 'client/*.cc' 'compiler/*.cc' |
  xargs -P "$jobs" -n 8 clang-tidy --quiet -p build/clang \
    --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=75000

# The analyzer of g++ 12 does not know which records a schema always has; every
# dereference that it reports as one of NULL stands behind such a promise.
step "g++'s analyzer"
git ls-files "${layers[@]/%//*.cc}" |
  xargs -P "$jobs" -n 1 g++ -std=c++20 -fno-exceptions -fno-rtti -O1 -fanalyzer -Werror \
    -Wno-analyzer-null-dereference -I . -I include -I build/clang/include \
    $(pkg-config --cflags libxml-2.0) -S -o /dev/null

step 'cppcheck'
cppcheck --quiet --enable=warning,performance,portability --inline-suppr --error-exitcode=1 \
  --suppressions-list=scripts/cppcheck-suppressions.txt --std=c++20 -I . -I include \
  "${layers[@]}" client compiler

step 'no leak seen by valgrind'
for message in restart ping install-image; do
  valgrind --quiet --error-exitcode=9 --leak-check=full --show-leak-kinds=all \
    build/release/client/qmodel rpc -i -p examples/models -m router-system \
    "examples/messages/$message.xml" >/dev/null
done

# Instructions do not jitter, times do: see bench/README.md.
step "instructions of the library within their budgets"
cmake --build build/release --target bench_count
python3 bench/check_budgets.py build/release

step 'every message validated in all ways'
scripts/check_differential.sh build/release

step 'reference without a gap, man pages'
cmake -S . -B build/docs -G Ninja -DQMODEL_BUILD_DOCS=ON -DQMODEL_BUILD_TESTS=OFF >/dev/null
cmake --build build/docs --target reference man

step 'what the soname promises'
scripts/check_abi.sh build/release/libqmodel.so

step 'Debian packages'
scripts/check_packages.sh

step 'fuzz targets'
QMODEL_FUZZ_SEED=1 scripts/fuzz.sh 6

step 'threads under the thread sanitizer'
cmake --preset tsan >/dev/null
cmake --build --preset tsan --target data_tests context_tests threads_tests
ctest --preset tsan -R 'Thread' --no-tests=error

step 'no warning with g++, test suite under the address and undefined-behaviour sanitizers'
cmake --preset asan -DQMODEL_WERROR=ON >/dev/null
cmake --build --preset asan
ctest --preset asan -j "$jobs"
