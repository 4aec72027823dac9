// SPDX-License-Identifier: BSD-3-Clause
#include <array>
#include <string>

#include "compiler/words/xpath.h"

// The functions of XPath 1.0 (section 4) and of YANG (RFC 7950, section 10), and what
// expressions result in.

namespace compiler {
namespace {

constexpr uint8_t kAny = 255;

constexpr std::array<XpathFunction, 34> kFunctions = {{
    {"bit-is-set", XpathType::kBoolean, 2, 2, true},
    {"boolean", XpathType::kBoolean, 1, 1, false},
    {"ceiling", XpathType::kNumber, 1, 1, false},
    {"concat", XpathType::kString, 2, kAny, false},
    {"contains", XpathType::kBoolean, 2, 2, false},
    {"count", XpathType::kNumber, 1, 1, false},
    {"current", XpathType::kNodeSet, 0, 0, false},
    {"deref", XpathType::kNodeSet, 1, 1, true},
    {"derived-from", XpathType::kBoolean, 2, 2, true},
    {"derived-from-or-self", XpathType::kBoolean, 2, 2, true},
    {"enum-value", XpathType::kNumber, 1, 1, true},
    {"false", XpathType::kBoolean, 0, 0, false},
    {"floor", XpathType::kNumber, 1, 1, false},
    {"id", XpathType::kNodeSet, 1, 1, false},
    {"lang", XpathType::kBoolean, 1, 1, false},
    {"last", XpathType::kNumber, 0, 0, false},
    {"local-name", XpathType::kString, 0, 1, false},
    {"name", XpathType::kString, 0, 1, false},
    {"namespace-uri", XpathType::kString, 0, 1, false},
    {"normalize-space", XpathType::kString, 0, 1, false},
    {"not", XpathType::kBoolean, 1, 1, false},
    {"number", XpathType::kNumber, 0, 1, false},
    {"position", XpathType::kNumber, 0, 0, false},
    {"re-match", XpathType::kBoolean, 2, 2, true},
    {"round", XpathType::kNumber, 1, 1, false},
    {"starts-with", XpathType::kBoolean, 2, 2, false},
    {"string", XpathType::kString, 0, 1, false},
    {"string-length", XpathType::kNumber, 0, 1, false},
    {"substring", XpathType::kString, 2, 3, false},
    {"substring-after", XpathType::kString, 2, 2, false},
    {"substring-before", XpathType::kString, 2, 2, false},
    {"sum", XpathType::kNumber, 1, 1, false},
    {"translate", XpathType::kString, 3, 3, false},
    {"true", XpathType::kBoolean, 0, 0, false},
}};

std::string Arguments(const XpathFunction& function) {
  if (function.most == kAny) return "at least " + std::to_string(function.fewest) + " arguments";
  if (function.fewest != function.most) {
    return std::to_string(function.fewest) + " to " + std::to_string(function.most) + " arguments";
  }
  if (function.most == 0) return "no argument";
  return function.most == 1 ? "1 argument" : std::to_string(function.most) + " arguments";
}

void CheckCall(const Xpath& xpath, const XpathNode& node, std::vector<XpathError>* out) {
  const std::string name(xpath.Of(node.name));
  const XpathFunction* function = FindXpathFunction(name);
  if (function == nullptr) {
    out->push_back({node.name.begin, "there is no function \"" + name + "\""});
    return;
  }
  const size_t count = node.operands.size();
  if (count >= function->fewest && (function->most == kAny || count <= function->most)) return;
  out->push_back({node.name.begin, "\"" + name + "\" takes " + Arguments(*function) + ", not " +
                                       std::to_string(count)});
}

}  // namespace

std::span<const XpathFunction> XpathFunctions() noexcept {
  return kFunctions;
}

const XpathFunction* FindXpathFunction(std::string_view name) noexcept {
  for (const XpathFunction& function : kFunctions) {
    if (function.name == name) return &function;
  }
  return nullptr;
}

XpathType TypeOf(const Xpath& xpath, uint32_t node) noexcept {
  while (xpath.At(node).kind == XpathKind::kGroup) node = xpath.At(node).operands[0];
  switch (xpath.At(node).kind) {
    case XpathKind::kOr:
    case XpathKind::kAnd:
    case XpathKind::kEquality:
    case XpathKind::kRelational:
      return XpathType::kBoolean;
    case XpathKind::kAdditive:
    case XpathKind::kMultiplicative:
    case XpathKind::kNegate:
    case XpathKind::kNumber:
      return XpathType::kNumber;
    case XpathKind::kLiteral:
      return XpathType::kString;
    case XpathKind::kCall: {
      const XpathFunction* function = FindXpathFunction(xpath.Of(xpath.At(node).name));
      return function == nullptr ? XpathType::kNodeSet : function->result;
    }
    default:
      return XpathType::kNodeSet;
  }
}

std::vector<XpathError> CheckXpathCalls(const Xpath& xpath) {
  std::vector<XpathError> out;
  for (const XpathNode& node : xpath.nodes) {
    if (node.kind == XpathKind::kCall) CheckCall(xpath, node, &out);
    if (node.kind == XpathKind::kVariable) {
      out.push_back({node.span.begin, "conditions have no variables"});
    }
  }
  return out;
}

}  // namespace compiler
