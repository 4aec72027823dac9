// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/random_condition.h"

namespace random_condition {

std::string Writer::Path() {
  const std::vector<std::string> kBeginnings = {"", "", "", "/", "../", "../../", "./", ".//"};
  const std::vector<std::string> kPredicates = {"", "", "", "", "[x = 1]", "[a][b]"};
  std::string path = One(kBeginnings);
  for (uint32_t steps = Below(3); steps > 0; --steps) {
    path += Below(4) == 0 ? ".." : One(names_) + One(kPredicates);
    path += Below(8) == 0 ? "//" : "/";
  }
  if (Below(3) == 0) return path + (Below(2) == 0 ? "." : "..");
  return path + One(names_) + One(kPredicates);
}

std::string Writer::Operand(uint32_t depth) {
  const std::vector<std::string> kIdentities = {"'c:dog'", "'c:animal'", "'mammal'",
                                                "'d:cat'", "''",         "'zz:x'"};
  switch (Below(depth == 0 ? 5 : 8)) {
    case 0:
    case 1:
      return Path();
    case 2:
    case 3:
      return One(constants_);
    case 4:
      return (Below(2) == 0 ? "derived-from(" : "derived-from-or-self(") + Path() + ", " +
             One(kIdentities) + ")";
    case 5:
      return "not(" + Expression(depth - 1) + ")";
    default:
      return "(" + Expression(depth - 1) + ")";
  }
}

std::string Writer::Expression(uint32_t depth) {
  const std::vector<std::string> kOperators = {
      " = ", " != ", " < ", " > ", " <= ", " >= ", " or ", " and ", " = ", " or "};
  std::string text = Operand(depth);
  for (uint32_t more = Below(4); more > 0; --more) text += One(kOperators) + Operand(depth);
  return text;
}

std::string Writer::Condition() {
  const std::vector<std::string> kTokens = {
      "(",    ")", ",",   "+", "|", " * ", "//", "[",   "]",    "@",     "x(", ".",
      " or ", "=", " - ", "'", "$", "/",   "''", "not", "not(", " and ", "1",  "derived-from("};
  std::string text = Expression(3);
  if (Below(4) == 0) text.insert(Below(static_cast<uint32_t>(text.size()) + 1), One(kTokens));
  if (Below(16) == 0) text.erase(Below(static_cast<uint32_t>(text.size())), 1);
  return text;
}

}  // namespace random_condition
