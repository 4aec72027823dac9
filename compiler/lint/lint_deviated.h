// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The deviates of a module by the node that they change, for the checks of what they leave.
// Private to compiler/lint/lint_deviated*.
#include <map>
#include <vector>

#include "compiler/lint/lint_pass.h"

namespace compiler {

using Deviates = std::vector<const xmlNode*>;

// The deviates of each node, in the order of the files.
struct Deviated {
  std::vector<const SchemaNode*> targets;
  std::map<const SchemaNode*, Deviates> deviates;
};

struct Result {
  Lint* lint;
  const Deviated* all;
  const SchemaNode* node;
  const Deviates* deviates;
};

bool IsKind(const xmlNode* deviate, std::string_view kind);
bool IsOfDeviate(const xmlNode* property);
bool IsTrue(const xmlNode* property);
bool CanHave(const SchemaNode* node, Keyword property);

// The deviates of a node; NULL: it has none.
const Deviates* DeviatesOf(const Deviated& all, const SchemaNode* node);

// The property that is left in the end; NULL: none is.
const xmlNode* LeftOf(const SchemaNode* node, const Deviates& deviates, Keyword keyword);
const xmlNode* LeftOf(const Deviated& all, const SchemaNode* node, Keyword keyword);

bool IsGone(const Deviates& deviates);
// True when the node goes with one that it is or stands in; not asked of `top` and above.
bool IsGoneBelow(const Deviated& all, const SchemaNode* top, const SchemaNode* node);

// Whether it is config with all deviations.
bool IsConfigAfter(const Deviated& all, const SchemaNode* node);

// What becomes of nodes around the target: above it, below it, and those that name it.
void JudgeConfigAround(const Result& result);
void JudgeInDefaultCase(const Result& result);
void JudgeGone(const Result& result, const xmlNode* deviate);
void JudgeLostLeafrefs(Lint* lint, const Deviated& all);

}  // namespace compiler
