// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What the library makes of a condition, and how to write it so that it makes of it what
// XPath does.
//
// The library evaluates a subset of XPath: paths of names, "." and "..", each step taking
// the first child of that name; comparisons, and, or, not, derived-from and its kin. It
// takes a missing node for an empty text. Here a condition is rewritten where a form
// exists that is in this subset and has the same answer, in the library and in XPath
// alike, for every message that the rest of the schema allows; leaves are taken to be
// written in the canonical form of their type. What remains is told.
#include <string>
#include <string_view>
#include <vector>

#include "compiler/conditions/data_schema.h"
#include "compiler/words/xpath.h"

namespace compiler {

// Where a condition stands.
struct ConditionPlace {
  DataSchema* schema = nullptr;
  DataNode* context = nullptr;        // the context node; NULL: the root, or not known
  DataModule* words = nullptr;        // whose prefixes it uses, and whose names without
  bool isWhenOfContext = false;       // a when of the context node, which then stands for
                                      // itself without its value and children
  bool isWhen = false;                // any when
  const DataNode* decides = nullptr;  // the node that has it; NULL: not known
};

enum class ConditionIssue : uint8_t {
  kPredicate,  // predicates are passed over
  kSeveral,    // the first of several entries is taken for all
  kOutside,    // a path leads out of the message, where the library has nothing
  kFails,      // each request that has the node, or lacks another, is refused
  kInside,     // a when looks into what it decides on
  kUnwritten,  // XPath has the node where a message has none
  kOther,      // another difference
};

struct ConditionRemark {
  ConditionIssue issue = ConditionIssue::kOther;
  size_t offset = 0;    // in the text as it was given
  std::string message;  // what the library makes of it
};

struct ConditionResult {
  std::string text;  // the condition to write; the given one when there is nothing to gain
  std::vector<ConditionRemark> remarks;
  bool Fails() const;  // a remark says kFails
};

// The most characters that the library takes.
inline constexpr size_t kMaxCondition = 3096;

ConditionResult MakeExact(const Xpath& xpath, const ConditionPlace& place);

}  // namespace compiler
