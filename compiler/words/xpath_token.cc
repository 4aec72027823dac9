// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/xpath_token.h"

#include <array>
#include <limits>

#include "compiler/words/character.h"

// Splits an expression in one pass. What makes it more than a switch over characters is
// that "*" and the words and, or, div and mod are operators or names depending on the
// token before them, and that a name means something else before "(" and "::".

namespace compiler {
namespace {

// Two characters before one, so that the first match is the longest.
constexpr std::array<std::string_view, 19> kSymbols = {"//", "!=", "<=", ">=", "..", "::", "/",
                                                       "(",  ")",  "[",  "]",  "@",  ",",  "|",
                                                       "+",  "-",  "=",  "<",  ">"};

constexpr std::array<std::string_view, 4> kWordOperators = {"and", "or", "div", "mod"};
constexpr std::array<std::string_view, 4> kNodeTypes = {"node", "text", "comment",
                                                        "processing-instruction"};

// Bytes outside of ASCII are taken for letters: no name of YANG has them, and whoever
// looks the name up says so.
bool IsWordStart(char c) {
  return IsNameStart(c) || (static_cast<unsigned char>(c) & 0x80U) != 0;
}

bool IsWordChar(char c) {
  return IsWordStart(c) || IsNameCharacter(c);
}

template <size_t N>
bool IsOneOf(std::string_view word, const std::array<std::string_view, N>& words) {
  for (const std::string_view candidate : words) {
    if (candidate == word) return true;
  }
  return false;
}

class Scanner {
 public:
  Scanner(std::string_view text, std::vector<XpathToken>* out, XpathError* error)
      : text_(text), out_(out), error_(error) {}

  bool Run() {
    for (SkipBlanks(); at_ < text_.size(); SkipBlanks()) {
      if (!Next()) return false;
    }
    Add(XpathTokenKind::kEnd, at_);
    return true;
  }

 private:
  char Look(size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }

  void SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
  }

  void Add(XpathTokenKind kind, size_t end) {
    out_->push_back({kind, {static_cast<uint32_t>(at_), static_cast<uint32_t>(end)}});
    at_ = end;
  }

  bool Fail(size_t offset, std::string message) {
    *error_ = {offset, std::move(message)};
    return false;
  }

  bool Next() {
    const char c = Look();
    if (c == '"' || c == '\'') return Literal(c);
    if (IsDigit(c) || (c == '.' && IsDigit(Look(1)))) return Number();
    if (IsWordStart(c)) return Name();
    if (c == '$') return Variable();
    if (c == '*') {
      Add(OperatorMayStand() ? XpathTokenKind::kOperator : XpathTokenKind::kName, at_ + 1);
      return true;
    }
    return Symbol();
  }

  bool Literal(char quote) {
    const size_t end = text_.find(quote, at_ + 1);
    if (end == std::string_view::npos) return Fail(at_, "this literal has no closing quote");
    Add(XpathTokenKind::kLiteral, end + 1);
    return true;
  }

  bool Number() {
    size_t end = at_;
    while (end < text_.size() && IsDigit(text_[end])) ++end;
    if (end < text_.size() && text_[end] == '.') ++end;
    while (end < text_.size() && IsDigit(text_[end])) ++end;
    Add(XpathTokenKind::kNumber, end);
    return true;
  }

  size_t NameEnd(size_t begin) const {
    size_t end = begin;
    while (end < text_.size() && IsWordChar(text_[end])) ++end;
    return end;
  }

  // The end of "n", "p:n" or "p:*"; `begin` when a name is missing behind the ":".
  size_t QualifiedEnd(size_t begin) const {
    const size_t end = NameEnd(begin);
    if (end >= text_.size() || text_[end] != ':') return end;
    if (end + 1 < text_.size() && text_[end + 1] == ':') return end;  // an axis
    if (end + 1 < text_.size() && text_[end + 1] == '*') return end + 2;
    return end + 1 < text_.size() && IsWordStart(text_[end + 1]) ? NameEnd(end + 1) : begin;
  }

  bool Name() {
    if (OperatorMayStand()) return WordOperator();
    const size_t end = QualifiedEnd(at_);
    if (end == at_) return Fail(NameEnd(at_), "a name is missing behind this \":\"");
    size_t next = end;
    while (next < text_.size() && IsBlank(text_[next])) ++next;
    const std::string_view rest = text_.substr(next);
    if (rest.substr(0, 2) == "::") {
      Add(XpathTokenKind::kAxis, end);
    } else if (!rest.empty() && rest[0] == '(') {
      const bool isType = IsOneOf(text_.substr(at_, end - at_), kNodeTypes);
      Add(isType ? XpathTokenKind::kNodeType : XpathTokenKind::kFunction, end);
    } else {
      Add(XpathTokenKind::kName, end);
    }
    return true;
  }

  bool WordOperator() {
    const size_t end = NameEnd(at_);
    const std::string word(text_.substr(at_, end - at_));
    if (!IsOneOf(std::string_view(word), kWordOperators)) {
      return Fail(at_, "\"" + word + "\" stands where an operator is expected");
    }
    Add(XpathTokenKind::kOperator, end);
    return true;
  }

  bool Variable() {
    if (!IsWordStart(Look(1))) return Fail(at_, "a name is missing behind \"$\"");
    const size_t end = QualifiedEnd(at_ + 1);
    if (end == at_ + 1) return Fail(NameEnd(at_ + 1), "a name is missing behind this \":\"");
    Add(XpathTokenKind::kVariable, end);
    return true;
  }

  bool Symbol() {
    const std::string_view rest = text_.substr(at_);
    for (const std::string_view symbol : kSymbols) {
      if (rest.substr(0, symbol.size()) != symbol) continue;
      Add(XpathTokenKind::kSymbol, at_ + symbol.size());
      return true;
    }
    if (rest[0] == '.') {
      Add(XpathTokenKind::kSymbol, at_ + 1);
      return true;
    }
    return Fail(at_, "this character belongs to no expression");
  }

  // Section 3.7: an operator stands behind a token, unless that is an operator itself or
  // opens something.
  bool OperatorMayStand() const {
    if (out_->empty()) return false;
    const XpathToken& last = out_->back();
    switch (last.kind) {
      case XpathTokenKind::kName:
      case XpathTokenKind::kLiteral:
      case XpathTokenKind::kNumber:
      case XpathTokenKind::kVariable:
        return true;
      case XpathTokenKind::kSymbol: {
        const std::string_view symbol =
            text_.substr(last.span.begin, last.span.end - last.span.begin);
        return symbol == ")" || symbol == "]" || symbol == "." || symbol == "..";
      }
      default:
        return false;
    }
  }

  std::string_view text_;
  std::vector<XpathToken>* out_;
  XpathError* error_;
  size_t at_ = 0;
};

}  // namespace

bool TokenizeXpath(std::string_view text, std::vector<XpathToken>* out, XpathError* error) {
  out->clear();
  if (text.size() >= std::numeric_limits<uint32_t>::max()) {
    *error = {0, "the expression is too long"};
    return false;
  }
  return Scanner(text, out, error).Run();
}

}  // namespace compiler
