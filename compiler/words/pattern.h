// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Patterns, compiled by libxml2 as the library compiles them.
#include <cstdint>
#include <string_view>

namespace compiler {

enum class PatternState : uint8_t {
  kCompiles,
  kFaulty,   // libxml2 cannot compile it
  kTooDeep,  // libxml2 would recurse too deeply over it; the library refuses it, too
};

PatternState JudgePattern(const char* pattern);

// Whether the text matches; true also for a pattern that does not compile.
bool PatternMatches(const char* pattern, std::string_view text);

}  // namespace compiler
