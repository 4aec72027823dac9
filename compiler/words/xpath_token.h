// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The tokens of XPath 1.0 (section 3.7).
#include <string_view>
#include <vector>

#include "compiler/words/xpath.h"

namespace compiler {

enum class XpathTokenKind : uint8_t {
  kSymbol,    // "(", "//", "!=" and so on
  kOperator,  // the words and, or, div, mod, and "*" where an operator stands
  kName,      // a name test: "*", "p:*", "p:n", "n"
  kFunction,  // a name before "("
  kNodeType,  // node, text, comment or processing-instruction before "("
  kAxis,      // a name before "::"
  kLiteral,   // with its quotes
  kNumber,
  kVariable,  // with its "$"
  kEnd,
};

struct XpathToken {
  XpathTokenKind kind = XpathTokenKind::kEnd;
  TextSpan span;
};

// The last token is kEnd.
bool TokenizeXpath(std::string_view text, std::vector<XpathToken>* out, XpathError* error);

}  // namespace compiler
