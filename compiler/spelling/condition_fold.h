// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Conditions of which some parts are known: paths that can lead to no node any more, and
// calls that are false.
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>

#include "compiler/words/xpath.h"

namespace compiler {

// By their indexes in the expression.
struct KnownParts {
  std::unordered_set<uint32_t> emptyPaths;
  std::unordered_set<uint32_t> falseCalls;
};

struct FoldedCondition {
  std::optional<bool> value;  // that it has whatever the data are
  std::string text;           // what is left, with the same answer; the author's if unchanged
};

FoldedCondition FoldCondition(const Xpath& xpath, const KnownParts& known);

}  // namespace compiler
