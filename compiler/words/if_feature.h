// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The arguments of if-feature (RFC 7950, sections 7.20.2 and 14): in version 1.1 an
// expression of features with not, and, or and parentheses; in version 1 one feature.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/words/xpath.h"

namespace compiler {

enum class FeatureOp : uint8_t { kFeature, kNot, kAnd, kOr, kGroup };

struct FeatureNode {
  FeatureOp op = FeatureOp::kFeature;
  TextSpan span;
  TextSpan prefix;  // of a feature; empty: none
  TextSpan name;
  std::vector<uint32_t> operands;
};

struct FeatureExpr {
  std::string text;
  std::vector<FeatureNode> nodes;
  uint32_t root = 0;
  std::vector<XpathError> slips;  // what the grammar forbids though the meaning is plain: a
                                  // blank missing next to a parenthesis

  std::string_view Of(TextSpan span) const noexcept {
    return std::string_view(text).substr(span.begin, span.end - span.begin);
  }
};

// False with the first mistake in `error`.
bool ParseIfFeature(std::string_view text, bool version11, FeatureExpr* out, XpathError* error);

enum class FeatureState : uint8_t { kOff, kOn, kUnknown };

using FeatureOracle = std::function<FeatureState(std::string_view prefix, std::string_view name)>;

// Whether the expression holds: known as soon as the features that are known decide it.
FeatureState Evaluate(const FeatureExpr& expr, const FeatureOracle& oracle);

// What is left to be decided when features that are known are put in: a conjunction of
// features, each to be written as a statement of its own.
struct FeatureRest {
  FeatureState state = FeatureState::kUnknown;  // kOn, kOff: decided
  std::vector<std::string> features;            // "prefix:name", each once, in their order
  bool expressible = true;                      // false: more than a conjunction is left
};

// `prefix` gives the prefix to write for one that was written (nullopt: it stays).
FeatureRest Reduce(const FeatureExpr& expr, const FeatureOracle& oracle,
                   const std::function<std::optional<std::string>(std::string_view)>& prefix);

// The expression with other prefixes, otherwise as it was written.
std::string RenameFeatures(
    const FeatureExpr& expr,
    const std::function<std::optional<std::string>(std::string_view)>& prefix);

}  // namespace compiler
