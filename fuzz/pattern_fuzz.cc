// SPDX-License-Identifier: BSD-3-Clause
// A pattern and a value, separated by a line feed.
#include <cstdlib>

#include "context/pattern.h"
#include "fuzz/fuzz_target.h"

void FuzzOne(const FuzzInput& input) {
  char* copy = CopyText(input);
  char* rest = copy;
  const char* pattern = NextPiece(&rest, '\n');
  // Long patterns and values only measure libxml2's own matching.
  if (input.length < 256) {
    static_cast<void>(QM_UTL_MatchStrWithPattern(rest == nullptr ? "" : rest, pattern));
  }
  std::free(copy);
}
