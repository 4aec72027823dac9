#!/bin/bash
# SPDX-License-Identifier: BSD-3-Clause
# The slower checks, one after another; the first that fails ends the run. Ends
# with the test suite under the address and undefined-behaviour sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
step() { printf '\n=== %s (%s)\n' "$1" "$(date +%T)"; }

step 'format'
git ls-files '*.cc' '*.h' '*.c' | xargs clang-format --dry-run -Werror

step 'no warning with g++ and clang++'
for compiler in g++ clang++; do
  cmake -S . -B "build/werror-$compiler" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQMODEL_WERROR=ON \
    -DCMAKE_CXX_COMPILER="$compiler" -DQMODEL_MODELS_DIR="${QMODEL_MODELS_DIR:-}" >/dev/null
  cmake --build "build/werror-$compiler"
done

step 'clang-tidy'
git ls-files 'platform/*.cc' 'context/*.cc' 'xpath/*.cc' 'types/*.cc' 'schema/*.cc' 'loader/*.cc' \
  'data/*.cc' 'client/*.cc' |
  xargs -P "$jobs" -n 4 clang-tidy --quiet -p build/werror-clang++

step 'no leak seen by valgrind'
for message in restart ping install-image; do
  valgrind --quiet --error-exitcode=9 --leak-check=full --show-leak-kinds=all \
    build/werror-g++/client/qmodel rpc -i -p examples/models -m router-system \
    "examples/messages/$message.xml" >/dev/null
done

step 'reference without a gap, man pages'
cmake -S . -B build/docs -G Ninja -DQMODEL_BUILD_DOCS=ON -DQMODEL_BUILD_TESTS=OFF >/dev/null
cmake --build build/docs --target reference man

step 'parallel validation under the thread sanitizer'
cmake --preset tsan >/dev/null
cmake --build --preset tsan --target data_tests
ctest --preset tsan -R 'Threads' --no-tests=error

step 'test suite under the address and undefined-behaviour sanitizers'
cmake --preset asan >/dev/null
cmake --build --preset asan
ctest --preset asan -j "$jobs"
