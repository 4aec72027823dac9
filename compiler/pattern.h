// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Patterns, compiled by libxml2 as the library compiles them.
#include <string_view>

namespace compiler {

// False when libxml2 cannot compile it.
bool PatternCompiles(const char* pattern);

// Whether the text matches; true also for a pattern that does not compile.
bool PatternMatches(const char* pattern, std::string_view text);

}  // namespace compiler
