// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The regular expressions of XML Schema (its part 2, appendix F), which RFC 7950, section
// 9.4.5, wants for patterns; libxml2 takes more.
#include <string>
#include <string_view>

namespace compiler {

// What is wrong with the pattern; empty: it is one of XML Schema.
std::string FaultOfPattern(std::string_view pattern);

}  // namespace compiler
