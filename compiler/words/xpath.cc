// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/xpath.h"

#include <array>
#include <optional>
#include <utility>

#include "compiler/words/xpath_token.h"

// A parser by precedence: an operand, then operators as long as they bind tightly enough,
// those of one rank in a row into one node. Parentheses, predicates, arguments and signs
// nest; their depth is bounded, since each one recurses.

namespace compiler {
namespace {

constexpr uint32_t kMaxDepth = 256;

struct OperatorRow {
  std::string_view text;
  XpathKind kind;
};

constexpr std::array<OperatorRow, 14> kOperators = {{
    {"or", XpathKind::kOr},
    {"and", XpathKind::kAnd},
    {"=", XpathKind::kEquality},
    {"!=", XpathKind::kEquality},
    {"<", XpathKind::kRelational},
    {"<=", XpathKind::kRelational},
    {">", XpathKind::kRelational},
    {">=", XpathKind::kRelational},
    {"+", XpathKind::kAdditive},
    {"-", XpathKind::kAdditive},
    {"*", XpathKind::kMultiplicative},
    {"div", XpathKind::kMultiplicative},
    {"mod", XpathKind::kMultiplicative},
    {"|", XpathKind::kUnion},
}};

// The kinds stand in order of how tightly they bind; the sign stands between.
int RankOf(XpathKind kind) {
  return static_cast<int>(kind);
}
static_assert(XpathKind::kMultiplicative < XpathKind::kNegate &&
              XpathKind::kNegate < XpathKind::kUnion && XpathKind::kUnion < XpathKind::kPath);

struct AxisRow {
  std::string_view name;
  XpathAxis axis;
};

constexpr std::array<AxisRow, 13> kAxes = {{
    {"child", XpathAxis::kChild},
    {"parent", XpathAxis::kParent},
    {"self", XpathAxis::kSelf},
    {"attribute", XpathAxis::kAttribute},
    {"ancestor", XpathAxis::kAncestor},
    {"ancestor-or-self", XpathAxis::kAncestorOrSelf},
    {"descendant", XpathAxis::kDescendant},
    {"descendant-or-self", XpathAxis::kDescendantOrSelf},
    {"following", XpathAxis::kFollowing},
    {"following-sibling", XpathAxis::kFollowingSibling},
    {"namespace", XpathAxis::kNamespace},
    {"preceding", XpathAxis::kPreceding},
    {"preceding-sibling", XpathAxis::kPrecedingSibling},
}};

class Parser {
 public:
  Parser(Xpath* out, XpathError* error) : xpath_(out), error_(error) {}

  bool Run() {
    if (!TokenizeXpath(xpath_->text, &tokens_, error_)) return false;
    if (Kind() == XpathTokenKind::kEnd) return Fail("the expression is empty");
    if (!Expression(RankOf(XpathKind::kOr), &xpath_->root)) return false;
    TellHolders();
    return Kind() == XpathTokenKind::kEnd || Fail("the expression should end before this");
  }

 private:
  void TellHolders() {
    for (uint32_t i = 0; i < xpath_->nodes.size(); ++i) {
      const XpathNode& node = xpath_->nodes[i];
      for (const uint32_t operand : node.operands) xpath_->nodes[operand].holder = i;
      TellPredicates(node.predicates, i, 0);
      for (uint32_t step = 0; step < node.steps.size(); ++step)
        TellPredicates(node.steps[step].predicates, i, step + 1);
    }
  }

  void TellPredicates(const std::vector<uint32_t>& predicates, uint32_t holder, uint32_t steps) {
    for (const uint32_t predicate : predicates) {
      xpath_->nodes[predicate].holder = holder;
      xpath_->nodes[predicate].stepsBefore = steps;
    }
  }

  XpathTokenKind Kind() const { return tokens_[at_].kind; }
  TextSpan Span() const { return tokens_[at_].span; }
  std::string_view Text() const { return xpath_->Of(Span()); }
  bool IsSymbol(std::string_view symbol) const {
    return Kind() == XpathTokenKind::kSymbol && Text() == symbol;
  }
  uint32_t LastEnd() const { return at_ == 0 ? 0 : tokens_[at_ - 1].span.end; }

  bool Fail(std::string message) {
    if (error_->message.empty()) *error_ = {Span().begin, std::move(message)};
    return false;
  }

  bool Expect(std::string_view symbol) {
    if (!IsSymbol(symbol)) return Fail("\"" + std::string(symbol) + "\" is missing here");
    ++at_;
    return true;
  }

  uint32_t Add(XpathNode node) {
    xpath_->nodes.push_back(std::move(node));
    return static_cast<uint32_t>(xpath_->nodes.size() - 1);
  }

  uint32_t Begin(uint32_t node) const { return xpath_->nodes[node].span.begin; }

  std::optional<XpathKind> OperatorHere() const {
    if (Kind() != XpathTokenKind::kSymbol && Kind() != XpathTokenKind::kOperator) return {};
    for (const OperatorRow& row : kOperators) {
      if (row.text == Text()) return row.kind;
    }
    return {};
  }

  bool Expression(int least, uint32_t* out) {
    if (depth_ >= kMaxDepth) return Fail("the expression is nested too deep");
    ++depth_;
    const bool done = Operators(least, out);
    --depth_;
    return done;
  }

  bool Operators(int least, uint32_t* out) {
    if (!Operand(out)) return false;
    for (std::optional<XpathKind> kind = OperatorHere(); kind && RankOf(*kind) >= least;
         kind = OperatorHere()) {
      if (!Chain(*kind, out)) return false;
    }
    return true;
  }

  // All operators of one rank in a row, with *out as the first operand.
  bool Chain(XpathKind kind, uint32_t* out) {
    XpathNode node;
    node.kind = kind;
    node.operands.push_back(*out);
    while (OperatorHere() == kind) {
      node.operators.push_back(Span());
      ++at_;
      uint32_t operand = 0;
      if (kind == XpathKind::kUnion && IsSymbol("-")) return Fail("a sign cannot stand here");
      if (!Expression(RankOf(kind) + 1, &operand)) return false;
      node.operands.push_back(operand);
    }
    node.span = {Begin(*out), LastEnd()};
    *out = Add(std::move(node));
    return true;
  }

  bool Operand(uint32_t* out) {
    if (!IsSymbol("-")) return Path(out);
    XpathNode node;
    node.kind = XpathKind::kNegate;
    node.span.begin = Span().begin;
    ++at_;
    uint32_t operand = 0;
    // A sign binds more loosely than "|" alone.
    if (!Expression(RankOf(XpathKind::kUnion), &operand)) return false;
    node.operands.push_back(operand);
    node.span.end = LastEnd();
    *out = Add(std::move(node));
    return true;
  }

  bool Path(uint32_t* out) {
    XpathNode node;
    node.kind = XpathKind::kPath;
    node.span.begin = Span().begin;
    if (BeginsPrimary()) {
      uint32_t primary = 0;
      if (!Primary(&primary)) return false;
      if (!IsSymbol("[") && !IsSymbol("/") && !IsSymbol("//")) {
        *out = primary;
        return true;
      }
      node.operands.push_back(primary);
      if (!Predicates(&node.predicates)) return false;
      if ((IsSymbol("/") || IsSymbol("//")) && !Steps(&node.steps)) return false;
    } else if (IsSymbol("/") || IsSymbol("//")) {
      node.absolute = true;
      if (!RootAlone() && !Steps(&node.steps)) return false;
    } else if (!FirstStep(&node.steps) || !Steps(&node.steps)) {
      return false;
    }
    node.span.end = LastEnd();
    *out = Add(std::move(node));
    return true;
  }

  // "/" with nothing behind it is the root.
  bool RootAlone() {
    if (!IsSymbol("/")) return false;
    ++at_;
    if (!BeginsStep()) return true;
    --at_;
    return false;
  }

  bool BeginsPrimary() const {
    switch (Kind()) {
      case XpathTokenKind::kLiteral:
      case XpathTokenKind::kNumber:
      case XpathTokenKind::kVariable:
      case XpathTokenKind::kFunction:
        return true;
      default:
        return IsSymbol("(");
    }
  }

  bool BeginsStep() const {
    switch (Kind()) {
      case XpathTokenKind::kName:
      case XpathTokenKind::kNodeType:
      case XpathTokenKind::kAxis:
        return true;
      default:
        return IsSymbol(".") || IsSymbol("..") || IsSymbol("@");
    }
  }

  bool Primary(uint32_t* out) {
    if (IsSymbol("(")) return Group(out);
    if (Kind() == XpathTokenKind::kFunction) return Call(out);
    XpathNode node;
    node.span = Span();
    node.kind = XpathKind::kNumber;
    if (Kind() == XpathTokenKind::kLiteral) node.kind = XpathKind::kLiteral;
    if (Kind() == XpathTokenKind::kVariable) {
      node.kind = XpathKind::kVariable;
      node.name = {node.span.begin + 1, node.span.end};
    }
    ++at_;
    *out = Add(std::move(node));
    return true;
  }

  bool Group(uint32_t* out) {
    XpathNode node;
    node.kind = XpathKind::kGroup;
    node.span.begin = Span().begin;
    ++at_;
    uint32_t inner = 0;
    if (!Expression(RankOf(XpathKind::kOr), &inner) || !Expect(")")) return false;
    node.operands.push_back(inner);
    node.span.end = LastEnd();
    *out = Add(std::move(node));
    return true;
  }

  bool Call(uint32_t* out) {
    XpathNode node;
    node.kind = XpathKind::kCall;
    node.span.begin = Span().begin;
    node.name = Span();
    ++at_;
    if (!Expect("(")) return false;
    while (!IsSymbol(")")) {
      if (!node.operands.empty() && !Expect(",")) return false;
      uint32_t argument = 0;
      if (!Expression(RankOf(XpathKind::kOr), &argument)) return false;
      node.operands.push_back(argument);
    }
    ++at_;
    node.span.end = LastEnd();
    *out = Add(std::move(node));
    return true;
  }

  bool Predicates(std::vector<uint32_t>* out) {
    while (IsSymbol("[")) {
      ++at_;
      uint32_t predicate = 0;
      if (!Expression(RankOf(XpathKind::kOr), &predicate) || !Expect("]")) return false;
      out->push_back(predicate);
    }
    return true;
  }

  bool FirstStep(std::vector<XpathStep>* steps) {
    if (!BeginsStep()) return Fail("an operand is missing here");
    return Step(false, steps);
  }

  bool Steps(std::vector<XpathStep>* steps) {
    while (IsSymbol("/") || IsSymbol("//")) {
      const bool descendants = IsSymbol("//");
      ++at_;
      if (!BeginsStep()) return Fail("a step is missing behind the \"/\"");
      if (!Step(descendants, steps)) return false;
    }
    return true;
  }

  bool Step(bool descendants, std::vector<XpathStep>* steps) {
    XpathStep step;
    step.descendants = descendants;
    step.span.begin = Span().begin;
    if (IsSymbol(".") || IsSymbol("..")) {
      step.axis = IsSymbol(".") ? XpathAxis::kSelf : XpathAxis::kParent;
      step.test = XpathTest::kNode;
      step.isShort = true;
      ++at_;
    } else if (!Axis(&step) || !Test(&step) || !Predicates(&step.predicates)) {
      return false;
    }
    step.span.end = LastEnd();
    steps->push_back(std::move(step));
    return true;
  }

  bool Axis(XpathStep* step) {
    if (IsSymbol("@")) {
      step->axis = XpathAxis::kAttribute;
      ++at_;
      return true;
    }
    if (Kind() != XpathTokenKind::kAxis) return true;
    for (const AxisRow& row : kAxes) {
      if (row.name != Text()) continue;
      step->axis = row.axis;
      ++at_;
      return Expect("::");
    }
    return Fail("\"" + std::string(Text()) + "\" is no axis");
  }

  bool Test(XpathStep* step) {
    if (Kind() == XpathTokenKind::kNodeType) return NodeType(step);
    if (Kind() != XpathTokenKind::kName) return Fail("a name is missing here");
    const TextSpan span = Span();
    const std::string_view text = Text();
    const size_t colon = text.find(':');
    step->test = XpathTest::kName;
    step->name = span;
    if (colon != std::string_view::npos) {
      const auto middle = static_cast<uint32_t>(span.begin + colon);
      step->prefix = {span.begin, middle};
      step->name.begin = middle + 1;
    }
    if (text.back() == '*') {
      step->test = colon == std::string_view::npos ? XpathTest::kAnyName : XpathTest::kAnyOfPrefix;
    }
    ++at_;
    return true;
  }

  bool NodeType(XpathStep* step) {
    step->name = Span();
    step->test = XpathTest::kInstruction;
    if (Text() == "node") step->test = XpathTest::kNode;
    if (Text() == "text") step->test = XpathTest::kText;
    if (Text() == "comment") step->test = XpathTest::kComment;
    ++at_;
    if (!Expect("(")) return false;
    if (step->test == XpathTest::kInstruction && Kind() == XpathTokenKind::kLiteral) ++at_;
    return Expect(")");
  }

  Xpath* xpath_;
  XpathError* error_;
  std::vector<XpathToken> tokens_;
  size_t at_ = 0;
  uint32_t depth_ = 0;
};

}  // namespace

bool ParseXpath(std::string_view text, Xpath* out, XpathError* error) {
  *out = Xpath{};
  *error = XpathError{};
  out->text = text;
  return Parser(out, error).Run();
}

std::string_view LiteralText(const Xpath& xpath, uint32_t literal) noexcept {
  const std::string_view quoted = xpath.Of(xpath.At(literal).span);
  return quoted.substr(1, quoted.size() - 2);
}

}  // namespace compiler
