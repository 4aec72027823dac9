// SPDX-License-Identifier: BSD-3-Clause
// Models are written by strangers: an argument of a megabyte is cut in a message, never
// within a character of several bytes.
#include "compiler/words/quote.h"

namespace compiler {

namespace {

constexpr size_t kLongestQuote = 200;  // bytes

}  // namespace

std::string Quote(std::string_view text) {
  if (text.size() <= kLongestQuote) return "\"" + std::string(text) + "\"";
  size_t end = kLongestQuote;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) --end;
  return "\"" + std::string(text.substr(0, end)) + "...\"";
}

}  // namespace compiler
