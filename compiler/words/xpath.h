// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// XPath 1.0 expressions (with the functions of RFC 7950, section 10) as trees. Every
// node of a tree knows where in the text it stands, so that a change to one part
// leaves the rest as its author wrote it.
//
// A tree is an array of nodes that name each other by index. Operators of one rank in
// a row are one node with many operands, and nesting is bounded, so that a walk may
// recurse.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace compiler {

// A stretch of the expression's text.
struct TextSpan {
  uint32_t begin = 0;
  uint32_t end = 0;  // behind the last byte
  bool empty() const noexcept { return begin == end; }
};

enum class XpathKind : uint8_t {
  kOr,
  kAnd,
  kEquality,        // "=", "!="
  kRelational,      // "<", "<=", ">", ">="
  kAdditive,        // "+", "-"
  kMultiplicative,  // "*", "div", "mod"
  kNegate,          // "-" before one operand
  kUnion,
  kPath,   // a location path, or an expression with predicates or steps behind it
  kGroup,  // one operand in parentheses
  kLiteral,
  kNumber,
  kVariable,
  kCall,
};

enum class XpathAxis : uint8_t {
  kChild,
  kParent,
  kSelf,
  kAttribute,
  kAncestor,
  kAncestorOrSelf,
  kDescendant,
  kDescendantOrSelf,
  kFollowing,
  kFollowingSibling,
  kNamespace,
  kPreceding,
  kPrecedingSibling,
};

enum class XpathTest : uint8_t {
  kName,         // "name" or "prefix:name"
  kAnyName,      // "*"
  kAnyOfPrefix,  // "prefix:*"
  kNode,         // "node()"; what "." and ".." test
  kText,
  kComment,
  kInstruction,
};

struct XpathStep {
  XpathAxis axis = XpathAxis::kChild;
  XpathTest test = XpathTest::kName;
  bool isShort = false;      // "." or ".."
  bool descendants = false;  // "//" stands before it
  TextSpan span;             // the step with its predicates
  TextSpan prefix;           // empty: none
  TextSpan name;
  std::vector<uint32_t> predicates;
};

inline constexpr uint32_t kNoXpathNode = UINT32_MAX;

struct XpathNode {
  XpathKind kind = XpathKind::kLiteral;
  TextSpan span;
  TextSpan name;                     // of a function or variable, its prefix included
  std::vector<uint32_t> operands;    // of an operator, a call, a group; of a path its
                                     // beginning when that is an expression
  std::vector<TextSpan> operators;   // between the operands
  bool absolute = false;             // a path that begins with "/"
  std::vector<uint32_t> predicates;  // of a path that begins with an expression: of that
  std::vector<XpathStep> steps;
  uint32_t holder = kNoXpathNode;  // the node that has this one as an operand or a predicate
  // Of a predicate: so many of the holder's steps stand before it.
  uint32_t stepsBefore = kNoXpathNode;
};

struct Xpath {
  std::string text;
  std::vector<XpathNode> nodes;
  uint32_t root = 0;

  std::string_view Of(TextSpan span) const noexcept {
    return std::string_view(text).substr(span.begin, span.end - span.begin);
  }
  const XpathNode& At(uint32_t index) const noexcept { return nodes[index]; }
};

struct XpathError {
  size_t offset = 0;  // in the text, of what is wrong
  std::string message;
};

// Parses an expression. False with the first mistake in `error`. What the functions
// are called and take is not looked at: see CheckXpathCalls().
bool ParseXpath(std::string_view text, Xpath* out, XpathError* error);

// The text between the quotes of a literal.
std::string_view LiteralText(const Xpath& xpath, uint32_t literal) noexcept;

enum class XpathType : uint8_t { kNodeSet, kBoolean, kNumber, kString };

// A function of XPath 1.0 or of YANG.
struct XpathFunction {
  std::string_view name;
  XpathType result;
  uint8_t fewest;  // arguments
  uint8_t most;    // 255: any number
  bool version11;  // of YANG 1.1
};

// All that there are.
std::span<const XpathFunction> XpathFunctions() noexcept;

// NULL: there is none of that name.
const XpathFunction* FindXpathFunction(std::string_view name) noexcept;

// What the expression results in. Variables count as node sets.
XpathType TypeOf(const Xpath& xpath, uint32_t node) noexcept;

// All calls of unknown functions, or with too few or too many arguments, and variables.
std::vector<XpathError> CheckXpathCalls(const Xpath& xpath);

}  // namespace compiler
