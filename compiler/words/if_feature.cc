// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/if_feature.h"

#include <algorithm>
#include <utility>

#include "compiler/words/character.h"
#include "compiler/words/path.h"

// Expressions of features. Words are taken apart first; and, or and not are operators by
// their place only, so that features may be called so.

namespace compiler {
namespace {

constexpr uint32_t kMaxDepth = 256;

class Parser {
 public:
  Parser(bool version11, FeatureExpr* out, XpathError* error)
      : version11_(version11), expr_(out), error_(error) {}

  bool Run() {
    Split();
    if (words_.empty()) return Fail("a feature is missing here");
    if (!version11_ && (words_.size() != 1 || Text() == "(" || Text() == ")")) {
      return FailAt(words_[words_.size() > 1 ? 1 : 0].begin,
                    "only one feature may stand here in YANG version 1");
    }
    if (!Chain(FeatureOp::kOr, &expr_->root)) return false;
    return AtEnd() || Fail("the expression should end before this");
  }

 private:
  void Split() {
    const std::string_view text = expr_->text;
    for (size_t i = 0; i < text.size();) {
      if (IsBlank(text[i])) {
        ++i;
        continue;
      }
      size_t end = i + 1;
      const auto isParen = [&](size_t at) { return text[at] == '(' || text[at] == ')'; };
      if (!isParen(i)) {
        while (end < text.size() && !IsBlank(text[end]) && !isParen(end)) ++end;
      }
      words_.push_back({static_cast<uint32_t>(i), static_cast<uint32_t>(end)});
      i = end;
    }
  }

  bool AtEnd() const { return at_ == words_.size(); }
  std::string_view Text() const { return AtEnd() ? std::string_view() : expr_->Of(words_[at_]); }
  uint32_t Offset() const {
    return AtEnd() ? static_cast<uint32_t>(expr_->text.size()) : words_[at_].begin;
  }

  bool FailAt(size_t offset, std::string message) {
    *error_ = {offset, std::move(message)};
    return false;
  }
  bool Fail(std::string message) { return FailAt(Offset(), std::move(message)); }

  uint32_t Add(FeatureNode node) {
    expr_->nodes.push_back(std::move(node));
    return static_cast<uint32_t>(expr_->nodes.size() - 1);
  }

  // A word operator wants a blank on both sides.
  void CheckBlanks(size_t word) {
    const TextSpan span = words_[word];
    const bool before =
        word > 0 && words_[word - 1].end == span.begin && expr_->text[span.begin - 1] == ')';
    const bool behind = word + 1 < words_.size() && words_[word + 1].begin == span.end;
    if (!before && !behind) return;
    expr_->slips.push_back({before ? span.begin : span.end,
                            "a blank is missing next to \"" + std::string(expr_->Of(span)) + "\""});
  }

  bool Chain(FeatureOp op, uint32_t* out) {
    const std::string_view word = op == FeatureOp::kOr ? "or" : "and";
    const auto operand = [&](uint32_t* node) {
      return op == FeatureOp::kOr ? Chain(FeatureOp::kAnd, node) : Factor(node);
    };
    if (!operand(out)) return false;
    if (Text() != word) return true;
    FeatureNode node;
    node.op = op;
    node.operands.push_back(*out);
    while (Text() == word) {
      CheckBlanks(at_);
      ++at_;
      uint32_t next = 0;
      if (!operand(&next)) return false;
      node.operands.push_back(next);
    }
    node.span = {expr_->nodes[*out].span.begin, words_[at_ - 1].end};
    *out = Add(std::move(node));
    return true;
  }

  bool Factor(uint32_t* out) {
    if (AtEnd() || Text() == ")") return Fail("a feature is missing here");
    const bool isNot =
        Text() == "not" && at_ + 1 < words_.size() && expr_->Of(words_[at_ + 1]) != ")";
    if (!isNot && Text() != "(") return Feature(out);
    if (depth_ >= kMaxDepth) return Fail("the expression is nested too deep");
    ++depth_;
    const bool done = isNot ? Not(out) : Group(out);
    --depth_;
    return done;
  }

  bool Not(uint32_t* out) {
    FeatureNode node;
    node.op = FeatureOp::kNot;
    node.span.begin = Offset();
    CheckBlanks(at_);
    ++at_;
    uint32_t operand = 0;
    if (!Factor(&operand)) return false;
    node.operands.push_back(operand);
    node.span.end = words_[at_ - 1].end;
    *out = Add(std::move(node));
    return true;
  }

  bool Group(uint32_t* out) {
    FeatureNode node;
    node.op = FeatureOp::kGroup;
    node.span.begin = Offset();
    ++at_;
    uint32_t inner = 0;
    if (!Chain(FeatureOp::kOr, &inner)) return false;
    if (Text() != ")") return Fail("\")\" is missing here");
    ++at_;
    node.operands.push_back(inner);
    node.span.end = words_[at_ - 1].end;
    *out = Add(std::move(node));
    return true;
  }

  bool Feature(uint32_t* out) {
    FeatureNode node;
    node.span = words_[at_];
    node.name = node.span;
    const size_t colon = Text().find(':');
    if (colon != std::string_view::npos) {
      const auto middle = static_cast<uint32_t>(node.span.begin + colon);
      node.prefix = {node.span.begin, middle};
      node.name.begin = middle + 1;
    }
    const bool good = IsIdentifier(expr_->Of(node.name)) &&
                      (colon == std::string_view::npos || IsIdentifier(expr_->Of(node.prefix)));
    if (!good) return Fail("\"" + std::string(Text()) + "\" is no name of a feature");
    ++at_;
    *out = Add(std::move(node));
    return true;
  }

  bool version11_;
  FeatureExpr* expr_;
  XpathError* error_;
  std::vector<TextSpan> words_;
  size_t at_ = 0;
  uint32_t depth_ = 0;
};

FeatureState Negated(FeatureState state) {
  if (state == FeatureState::kUnknown) return state;
  return state == FeatureState::kOn ? FeatureState::kOff : FeatureState::kOn;
}

FeatureState StateOf(const FeatureExpr& expr, uint32_t index, const FeatureOracle& oracle) {
  const FeatureNode& node = expr.nodes[index];
  if (node.op == FeatureOp::kFeature) return oracle(expr.Of(node.prefix), expr.Of(node.name));
  if (node.op == FeatureOp::kGroup) return StateOf(expr, node.operands[0], oracle);
  if (node.op == FeatureOp::kNot) return Negated(StateOf(expr, node.operands[0], oracle));
  const FeatureState deciding = node.op == FeatureOp::kOr ? FeatureState::kOn : FeatureState::kOff;
  FeatureState result = Negated(deciding);
  for (const uint32_t operand : node.operands) {
    const FeatureState state = StateOf(expr, operand, oracle);
    if (state == deciding) return deciding;
    if (state == FeatureState::kUnknown) result = state;
  }
  return result;
}

using PrefixFunc = std::function<std::optional<std::string>(std::string_view)>;

std::string WrittenName(const FeatureExpr& expr, const FeatureNode& node,
                        const PrefixFunc& prefix) {
  const std::optional<std::string> changed = prefix(expr.Of(node.prefix));
  const std::string written = changed ? *changed : std::string(expr.Of(node.prefix));
  const std::string name(expr.Of(node.name));
  return written.empty() ? name : written + ":" + name;
}

bool Holds(const std::vector<std::string>& all, const std::string& one) {
  return std::find(all.begin(), all.end(), one) != all.end();
}

bool IsSubset(const std::vector<std::string>& part, const std::vector<std::string>& whole) {
  return std::all_of(part.begin(), part.end(),
                     [&](const std::string& name) { return Holds(whole, name); });
}

class Reducer {
 public:
  Reducer(const FeatureExpr& expr, const FeatureOracle& oracle, const PrefixFunc& prefix)
      : expr_(expr), oracle_(oracle), prefix_(prefix) {}

  FeatureRest Rest(uint32_t index) const {
    FeatureRest rest;
    rest.state = StateOf(expr_, index, oracle_);
    if (rest.state != FeatureState::kUnknown) return rest;
    const FeatureNode& node = expr_.nodes[index];
    switch (node.op) {
      case FeatureOp::kFeature:
        rest.features.push_back(WrittenName(expr_, node, prefix_));
        return rest;
      case FeatureOp::kGroup:
        return Rest(node.operands[0]);
      case FeatureOp::kNot:
        return RestOfNot(node.operands[0]);
      default:
        return node.op == FeatureOp::kAnd ? RestOfAnd(node) : RestOfOr(node);
    }
  }

 private:
  FeatureRest RestOfNot(uint32_t operand) const {
    while (expr_.nodes[operand].op == FeatureOp::kGroup) operand = expr_.nodes[operand].operands[0];
    if (expr_.nodes[operand].op == FeatureOp::kNot) return Rest(expr_.nodes[operand].operands[0]);
    FeatureRest rest;
    rest.expressible = false;
    return rest;
  }

  FeatureRest RestOfAnd(const FeatureNode& node) const {
    FeatureRest all;
    for (const uint32_t operand : node.operands) {
      const FeatureRest rest = Rest(operand);
      if (rest.state == FeatureState::kOn) continue;
      all.expressible = all.expressible && rest.expressible;
      for (const std::string& name : rest.features) {
        if (!Holds(all.features, name)) all.features.push_back(name);
      }
    }
    if (!all.expressible) all.features.clear();
    return all;
  }

  // "a or a and b" is "a": one operand that all others imply.
  FeatureRest RestOfOr(const FeatureNode& node) const {
    std::vector<FeatureRest> left;
    for (const uint32_t operand : node.operands) {
      FeatureRest rest = Rest(operand);
      if (rest.state != FeatureState::kOff) left.push_back(std::move(rest));
    }
    for (const FeatureRest& candidate : left) {
      const bool implied = std::all_of(left.begin(), left.end(), [&](const FeatureRest& other) {
        return other.expressible && IsSubset(candidate.features, other.features);
      });
      if (implied) return candidate;
    }
    FeatureRest rest;
    rest.expressible = false;
    return rest;
  }

  const FeatureExpr& expr_;
  const FeatureOracle& oracle_;
  const PrefixFunc& prefix_;
};

}  // namespace

bool ParseIfFeature(std::string_view text, bool version11, FeatureExpr* out, XpathError* error) {
  *out = FeatureExpr{};
  *error = XpathError{};
  out->text = text;
  return Parser(version11, out, error).Run();
}

FeatureState Evaluate(const FeatureExpr& expr, const FeatureOracle& oracle) {
  return StateOf(expr, expr.root, oracle);
}

FeatureRest Reduce(const FeatureExpr& expr, const FeatureOracle& oracle, const PrefixFunc& prefix) {
  return Reducer(expr, oracle, prefix).Rest(expr.root);
}

std::string RenameFeatures(const FeatureExpr& expr, const PrefixFunc& prefix) {
  std::vector<const FeatureNode*> features;
  for (const FeatureNode& node : expr.nodes) {
    if (node.op == FeatureOp::kFeature) features.push_back(&node);
  }
  std::sort(features.begin(), features.end(), [](const FeatureNode* a, const FeatureNode* b) {
    return a->span.begin < b->span.begin;
  });
  std::string out;
  uint32_t copied = 0;
  for (const FeatureNode* node : features) {
    out.append(expr.text, copied, node->span.begin - copied);
    out += WrittenName(expr, *node, prefix);
    copied = node->span.end;
  }
  return out.append(expr.text, copied, std::string::npos);
}

}  // namespace compiler
