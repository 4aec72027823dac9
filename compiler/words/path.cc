// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/path.h"

#include <utility>

#include "compiler/words/character.h"

// A leafref path is an XPath expression of a narrow form, so it is parsed as one and its
// form looked at then. Schema node identifiers have a grammar of their own.

namespace compiler {
namespace {

class LeafrefReader {
 public:
  LeafrefReader(NodePath* out, XpathError* error) : out_(out), error_(error) {}

  bool Run() {
    if (!ParseXpath(out_->text, &xpath_, error_)) return false;
    const XpathNode& path = xpath_.At(xpath_.root);
    if (path.kind != XpathKind::kPath) return Fail(path.span.begin, "this is no path");
    out_->absolute = path.absolute;
    if (!path.operands.empty() && !Beginning(path)) return false;
    for (const XpathStep& step : path.steps) {
      if (!Step(step)) return false;
    }
    if (out_->steps.empty()) return Fail(path.span.end, "the path names no node");
    if (out_->absolute || out_->ups > 0) return true;
    return Fail(path.span.begin, "a path begins with \"/\" or \"..\"");
  }

 private:
  bool Fail(size_t offset, std::string message) {
    *error_ = {offset, std::move(message)};
    return false;
  }

  bool Beginning(const XpathNode& path) {
    const XpathNode& call = xpath_.At(path.operands[0]);
    if (call.kind != XpathKind::kCall || xpath_.Of(call.name) != "deref" ||
        call.operands.size() != 1 || !path.predicates.empty()) {
      return Fail(call.span.begin, "a path begins with \"/\" or \"..\"");
    }
    out_->throughDeref = true;
    out_->deref = xpath_.At(call.operands[0]).span;
    return true;
  }

  bool Step(const XpathStep& step) {
    if (step.descendants) return Fail(step.span.begin, "a path has no \"//\"");
    if (step.isShort && step.axis == XpathAxis::kParent) {
      if (out_->absolute || !out_->steps.empty()) {
        return Fail(step.span.begin, "\"..\" stands in front of all names only");
      }
      ++out_->ups;
      return true;
    }
    if (!IsPlainName(step)) return Fail(step.span.begin, "a path consists of names and \"..\"");
    PathStep read;
    read.prefix = step.prefix;
    read.name = step.name;
    if (step.name.end != step.span.end) read.predicates = {step.name.end, step.span.end};
    for (const uint32_t predicate : step.predicates) {
      if (!Predicate(xpath_.At(predicate))) return false;
    }
    out_->steps.push_back(read);
    return true;
  }

  bool IsPlainName(const XpathStep& step) const {
    return step.axis == XpathAxis::kChild && step.test == XpathTest::kName &&
           step.span.begin == (step.prefix.empty() ? step.name.begin : step.prefix.begin);
  }

  // "name = current()/../name", section 14's path-equality-expr.
  bool Predicate(const XpathNode& node) {
    const char* const kForm = "a predicate of a path reads \"[key = current()/../name]\"";
    const bool isEquality = node.kind == XpathKind::kEquality && node.operands.size() == 2 &&
                            xpath_.Of(node.operators[0]) == "=";
    if (!isEquality) return Fail(node.span.begin, kForm);
    const XpathNode& key = xpath_.At(node.operands[0]);
    const bool isKey = key.kind == XpathKind::kPath && key.operands.empty() && !key.absolute &&
                       key.steps.size() == 1 && IsPlainName(key.steps[0]) &&
                       key.steps[0].predicates.empty();
    if (!isKey) return Fail(key.span.begin, kForm);
    const XpathNode& value = xpath_.At(node.operands[1]);
    return IsKeyValue(value) || Fail(value.span.begin, kForm);
  }

  bool IsKeyValue(const XpathNode& value) const {
    if (value.kind != XpathKind::kPath || value.operands.empty() || !value.predicates.empty()) {
      return false;
    }
    const XpathNode& call = xpath_.At(value.operands[0]);
    if (call.kind != XpathKind::kCall || xpath_.Of(call.name) != "current" ||
        !call.operands.empty()) {
      return false;
    }
    bool named = false;
    for (const XpathStep& step : value.steps) {
      const bool up = step.isShort && step.axis == XpathAxis::kParent;
      if (step.descendants || !step.predicates.empty()) return false;
      if (up ? named : !IsPlainName(step)) return false;
      if (!up) named = true;
    }
    return named && value.steps[0].isShort;
  }

  NodePath* out_;
  XpathError* error_;
  Xpath xpath_;
};

class NodeIdReader {
 public:
  NodeIdReader(NodePath* out, XpathError* error) : out_(out), error_(error), text_(out->text) {}

  bool Run() {
    while (end_ > at_ && IsBlank(text_[end_ - 1])) --end_;
    while (at_ < end_ && IsBlank(text_[at_])) ++at_;
    if (at_ == end_) return Fail("a name is missing here");
    const bool slash = text_[at_] == '/';
    if (slash != out_->absolute) {
      return Fail(slash ? "this path is relative to where it stands: it does not begin with \"/\""
                        : "this path begins with \"/\"");
    }
    if (slash) ++at_;
    for (;;) {
      if (!Step()) return false;
      if (at_ == end_) return true;
      if (text_[at_] != '/') return Fail("this character belongs to no path of names");
      ++at_;
    }
  }

 private:
  bool Fail(std::string message) {
    *error_ = {at_, std::move(message)};
    return false;
  }

  bool Name(TextSpan* out) {
    const size_t begin = at_;
    if (at_ == end_ || !IsNameStart(text_[at_])) return Fail("a name is missing here");
    while (at_ < end_ && IsNameCharacter(text_[at_])) ++at_;
    *out = {static_cast<uint32_t>(begin), static_cast<uint32_t>(at_)};
    return true;
  }

  bool Step() {
    PathStep step;
    if (!Name(&step.name)) return false;
    if (at_ < end_ && text_[at_] == ':') {
      ++at_;
      step.prefix = step.name;
      if (!Name(&step.name)) return false;
    }
    out_->steps.push_back(step);
    return true;
  }

  NodePath* out_;
  XpathError* error_;
  std::string_view text_;
  size_t at_ = 0;
  size_t end_ = text_.size();
};

}  // namespace

bool ParseLeafrefPath(std::string_view text, NodePath* out, XpathError* error) {
  *out = NodePath{};
  *error = XpathError{};
  out->text = text;
  return LeafrefReader(out, error).Run();
}

bool ParseSchemaNodeId(std::string_view text, bool absolute, NodePath* out, XpathError* error) {
  *out = NodePath{};
  *error = XpathError{};
  out->text = text;
  out->absolute = absolute;
  return NodeIdReader(out, error).Run();
}

std::vector<std::string_view> SplitNames(std::string_view text) {
  std::vector<std::string_view> names;
  for (size_t i = 0; i < text.size();) {
    size_t end = i;
    while (end < text.size() && !IsBlank(text[end])) ++end;
    if (end > i) names.push_back(text.substr(i, end - i));
    i = end + 1;
  }
  return names;
}

bool IsIdentifier(std::string_view text) noexcept {
  if (text.empty() || !IsNameStart(text[0])) return false;
  for (const char c : text) {
    if (!IsNameCharacter(c)) return false;
  }
  return true;
}

}  // namespace compiler
