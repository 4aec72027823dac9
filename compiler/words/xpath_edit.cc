// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/xpath_edit.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "compiler/words/path.h"
#include "compiler/words/xpath_token.h"

// Changes are collected as stretches of the text with what to write there instead, and
// put in at the end; nothing else of the text is touched.

namespace compiler {
namespace {

struct Edit {
  TextSpan span;
  std::string text;
};

std::string Apply(const std::string& text, std::vector<Edit> edits) {
  std::stable_sort(edits.begin(), edits.end(),
                   [](const Edit& a, const Edit& b) { return a.span.begin < b.span.begin; });
  std::string out;
  uint32_t copied = 0;
  for (const Edit& edit : edits) {
    out.append(text, copied, edit.span.begin - copied);
    out += edit.text;
    copied = edit.span.end;
  }
  return out.append(text, copied, std::string::npos);
}

uint32_t WithoutGroups(const Xpath& xpath, uint32_t node) {
  while (xpath.At(node).kind == XpathKind::kGroup) node = xpath.At(node).operands[0];
  return node;
}

bool IsCallOf(const Xpath& xpath, uint32_t node, std::string_view name) {
  return xpath.At(node).kind == XpathKind::kCall && xpath.Of(xpath.At(node).name) == name;
}

class Renamer {
 public:
  Renamer(const Xpath& xpath, const NameRules& rules, std::vector<UnknownPrefix>* unknown)
      : xpath_(xpath), rules_(rules), unknown_(unknown) {}

  std::string Run() {
    for (const XpathNode& node : xpath_.nodes) {
      for (const XpathStep& step : node.steps) RenameStep(step);
      if (node.kind == XpathKind::kCall) RenameArgument(node);
      if (node.kind == XpathKind::kEquality) RenameCompared(node);
    }
    return Apply(xpath_.text, std::move(edits_));
  }

 private:
  void RenameStep(const XpathStep& step) {
    const bool named = step.test == XpathTest::kName || step.test == XpathTest::kAnyOfPrefix;
    // An attribute without prefix is in no namespace.
    if (!named || (step.axis == XpathAxis::kAttribute && step.prefix.empty())) return;
    if (!rules_.nodes) return;
    const TextSpan old = {step.prefix.empty() ? step.name.begin : step.prefix.begin,
                          step.name.begin};
    Rename(rules_.nodes, xpath_.Of(step.prefix), old, true);
  }

  void Rename(const PrefixRule& rule, std::string_view prefix, TextSpan old, bool tell) {
    const std::optional<std::string> changed = rule(prefix);
    if (!changed) {
      if (tell && unknown_ != nullptr) unknown_->push_back({old.begin, std::string(prefix)});
    } else if (*changed != prefix) {
      edits_.push_back({old, changed->empty() ? std::string() : *changed + ":"});
    }
  }

  void RenameArgument(const XpathNode& call) {
    const std::string_view name = xpath_.Of(call.name);
    if (name != "derived-from" && name != "derived-from-or-self") return;
    if (call.operands.size() != 2) return;
    const uint32_t literal = WithoutGroups(xpath_, call.operands[1]);
    if (xpath_.At(literal).kind == XpathKind::kLiteral) RenameIdentity(literal, true);
  }

  void RenameCompared(const XpathNode& node) {
    for (size_t i = 1; i < node.operands.size(); ++i) {
      const uint32_t left = WithoutGroups(xpath_, node.operands[i - 1]);
      const uint32_t right = WithoutGroups(xpath_, node.operands[i]);
      RenameIfIdentity(left, right);
      RenameIfIdentity(right, left);
    }
  }

  void RenameIfIdentity(uint32_t literal, uint32_t path) {
    if (xpath_.At(literal).kind != XpathKind::kLiteral) return;
    if (TypeOf(xpath_, path) != XpathType::kNodeSet) return;
    const std::string_view text = LiteralText(xpath_, literal);
    const bool isIdentity = rules_.isIdentity ? rules_.isIdentity(xpath_, path, text)
                                              : text.find(':') != std::string_view::npos;
    if (isIdentity) RenameIdentity(literal, static_cast<bool>(rules_.isIdentity));
  }

  // What cannot be the name of an identity is left alone.
  void RenameIdentity(uint32_t literal, bool tell) {
    const std::string_view text = LiteralText(xpath_, literal);
    const size_t colon = text.find(':');
    const size_t length = colon == std::string_view::npos ? 0 : colon + 1;
    const std::string_view prefix = text.substr(0, length == 0 ? 0 : colon);
    if (!rules_.identities || !IsIdentifier(text.substr(length))) return;
    if (length != 0 && !IsIdentifier(prefix)) return;
    if (rules_.onIdentity) rules_.onIdentity(prefix, text.substr(length));
    const uint32_t begin = xpath_.At(literal).span.begin + 1;
    Rename(rules_.identities, prefix, {begin, begin + static_cast<uint32_t>(length)}, tell);
  }

  const Xpath& xpath_;
  const NameRules& rules_;
  std::vector<UnknownPrefix>* unknown_;
  std::vector<Edit> edits_;
};

// Functions that take the context node when they are given nothing.
bool TakesContextNode(std::string_view name) {
  const XpathFunction* function = FindXpathFunction(name);
  return function != nullptr && function->fewest == 0 && function->most == 1;
}

// A walk over the paths that start at the context node, which is to become another one.
class Shifter {
 public:
  Shifter(const Xpath& xpath, bool toRoot) : xpath_(xpath), toRoot_(toRoot) {}

  std::optional<std::string> Run() {
    Visit(xpath_.root, true);
    if (failed_) return std::nullopt;
    return Apply(xpath_.text, std::move(edits_));
  }

 private:
  // `outside`: not in a predicate, so the context node is the condition's own.
  void Visit(uint32_t index, bool outside) {
    const XpathNode& node = xpath_.At(index);
    if (node.kind == XpathKind::kCall) VisitCall(node, outside);
    if (node.kind == XpathKind::kPath) {
      VisitPath(node, outside);
      return;
    }
    for (const uint32_t operand : node.operands) Visit(operand, outside);
  }

  void VisitPath(const XpathNode& node, bool outside) {
    if (!node.operands.empty() && IsCallOf(xpath_, node.operands[0], "current")) {
      ShiftCurrent(node);
    } else if (!node.operands.empty()) {
      Visit(node.operands[0], outside);
    } else if (!node.absolute && outside) {
      ShiftFirstStep(node);
    }
    for (const uint32_t predicate : node.predicates) Visit(predicate, false);
    for (const XpathStep& step : node.steps) {
      for (const uint32_t predicate : step.predicates) Visit(predicate, false);
    }
  }

  void ShiftFirstStep(const XpathNode& node) {
    const XpathStep& first = node.steps[0];
    const bool self = first.isShort && first.axis == XpathAxis::kSelf;
    if (!toRoot_) {
      if (self) {
        edits_.push_back({first.span, ".."});
      } else {
        Insert(first.span.begin, "../");
      }
      return;
    }
    if (first.axis != XpathAxis::kChild && !self) {
      failed_ = true;
    } else if (!self) {
      Insert(first.span.begin, "/");
    } else if (node.steps.size() == 1) {
      edits_.push_back({first.span, "(/)"});
    } else {
      edits_.push_back({first.span, ""});
      failed_ = failed_ || node.steps[1].axis != XpathAxis::kChild;
    }
  }

  // A path that begins with current(), whose predicates may stand right behind it.
  void ShiftCurrent(const XpathNode& node) {
    const TextSpan call = xpath_.At(node.operands[0]).span;
    if (!toRoot_) {
      Insert(call.end, node.predicates.empty() ? "/.." : "/parent::node()");
    } else if (node.predicates.empty()) {
      edits_.push_back({call, ""});
      failed_ = failed_ || (!node.steps.empty() && node.steps[0].axis != XpathAxis::kChild);
    } else {
      failed_ = true;
    }
  }

  void VisitCall(const XpathNode& node, bool outside) {
    const std::string_view name = xpath_.Of(node.name);
    if (name == "current") {
      edits_.push_back({node.span, toRoot_ ? "(/)" : "current()/.."});
    } else if (outside && (name == "position" || name == "last" || name == "lang")) {
      failed_ = true;
    } else if (outside && node.operands.empty() && TakesContextNode(name)) {
      Insert(node.span.end - 1, toRoot_ ? "/" : "..");
    }
  }

  void Insert(uint32_t at, std::string text) { edits_.push_back({{at, at}, std::move(text)}); }

  const Xpath& xpath_;
  bool toRoot_;
  bool failed_ = false;
  std::vector<Edit> edits_;
};

// The library's own way, token by token: a step is put in front of what follows the
// beginning or an operator, and behind the first "/" after current().
class LibraryShifter {
 public:
  LibraryShifter(std::string_view text, const std::vector<XpathToken>& tokens)
      : text_(text), tokens_(tokens) {}

  std::string Run() {
    uint32_t copied = 0;
    for (size_t i = 0; tokens_[i].kind != XpathTokenKind::kEnd; ++i) {
      const TextSpan span = tokens_[i].span;
      out_.append(text_.substr(copied, span.begin - copied));
      PutStepAtPathStart(i);
      if (afterCurrent_ && IsSlash(i)) {
        out_ += "/..";
        afterCurrent_ = false;
      }
      out_ += At(i);
      copied = span.end;
      if (IsOperator(i)) atPathStart_ = true;
      if (IsCallOfCurrent(i)) afterCurrent_ = true;
    }
    return out_;
  }

 private:
  std::string_view At(size_t i) const {
    return text_.substr(tokens_[i].span.begin, tokens_[i].span.end - tokens_[i].span.begin);
  }
  bool Is(size_t i, std::string_view symbol) const {
    return i < tokens_.size() && tokens_[i].kind == XpathTokenKind::kSymbol && At(i) == symbol;
  }
  bool IsSlash(size_t i) const { return Is(i, "/") || Is(i, "//"); }

  bool IsOperator(size_t i) const {
    if (tokens_[i].kind == XpathTokenKind::kOperator) return true;
    constexpr const char* kSymbols[] = {"|", "+", "-", "=", "!=", "<", "<=", ">", ">="};
    return std::any_of(std::begin(kSymbols), std::end(kSymbols),
                       [&](const char* symbol) { return Is(i, symbol); });
  }

  bool IsCallOfCurrent(size_t i) const {
    return tokens_[i].kind == XpathTokenKind::kFunction && At(i) == "current" && Is(i + 1, "(") &&
           Is(i + 2, ")");
  }

  void PutStepAtPathStart(size_t i) {
    if (!atPathStart_) return;
    const bool up = tokens_[i].kind == XpathTokenKind::kName || Is(i, "..");
    if (!up && !Is(i, ".") && !IsSlash(i)) return;
    if (up) out_ += "../";
    if (Is(i, ".")) out_ += ".";
    atPathStart_ = false;
  }

  std::string_view text_;
  const std::vector<XpathToken>& tokens_;
  std::string out_;
  bool atPathStart_ = true;
  bool afterCurrent_ = false;
};

}  // namespace

std::string RenamePrefixes(const Xpath& xpath, const NameRules& rules,
                           std::vector<UnknownPrefix>* unknown) {
  return Renamer(xpath, rules, unknown).Run();
}

std::optional<std::string> ShiftOneDown(const Xpath& xpath) {
  return Shifter(xpath, false).Run();
}

std::optional<std::string> ShiftToRoot(const Xpath& xpath) {
  return Shifter(xpath, true).Run();
}

std::string JoinConditions(std::string_view a, std::string_view b) {
  if (a.empty() || a == b) return std::string(b);
  if (b.empty()) return std::string(a);
  std::string joined = "(";
  joined += a;
  joined += ") and (";
  joined += b;
  return joined + ")";
}

std::optional<std::string> LibraryShiftOneDown(std::string_view condition) {
  std::vector<XpathToken> tokens;
  XpathError error;
  if (!TokenizeXpath(condition, &tokens, &error)) return std::nullopt;
  for (const XpathToken& token : tokens) {
    if (token.kind == XpathTokenKind::kVariable || token.kind == XpathTokenKind::kAxis) {
      return std::nullopt;
    }
  }
  std::string shifted = LibraryShifter(condition, tokens).Run();
  // Twice the length is all the room that the library has.
  if (shifted.size() > 2 * condition.size()) return std::nullopt;
  return shifted;
}

bool LibraryShiftsRightly(const Xpath& xpath) {
  const std::optional<std::string> right = ShiftOneDown(xpath);
  std::optional<std::string> made = LibraryShiftOneDown(xpath.text);
  if (!right || !made) return false;
  // What follows the last token the library leaves out.
  std::string_view wanted = *right;
  const size_t last = wanted.find_last_not_of(" \t\r\n");
  return *made == wanted.substr(0, last + 1);
}

}  // namespace compiler
