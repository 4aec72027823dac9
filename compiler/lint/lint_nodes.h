// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What several checks ask about a node of the schema.
#include "compiler/lint/lint_pass.h"

namespace compiler {

enum class Config : uint8_t {
  kTrue,
  kFalse,
  kNone,  // in an operation or notification, where config says nothing
  kOpen,  // in a grouping, whose use decides
};

Config ConfigOf(const SchemaNode* node);

// True when data cannot be without the node: by its own statement, or, of a container
// without presence, by what stands in it.
bool IsMandatory(const SchemaNode* node);

// What a leaf of type leafref leads to; NULL: it is none, or that cannot be told.
const SchemaNode* LeafrefTarget(Lint* lint, const SchemaNode* leaf);

// Reports at `at` a default that a union with leafrefs, or the target of a leafref, cannot
// take for the node (the top of a module's tree for a typedef). What the type says by itself is
// told elsewhere.
void JudgeReferredDefault(Lint* lint, const SchemaNode* node, const xmlNode* type,
                          const xmlNode* byDefault, const xmlNode* at);

// Key and unique of a list.
void JudgeList(Lint* lint, const SchemaNode* list);
void JudgeUnique(Lint* lint, const SchemaNode* list, const xmlNode* at);

// That the default of a choice names a case that nobody must write.
void JudgeDefaultCase(Lint* lint, const SchemaNode* choice, const xmlNode* statement);

}  // namespace compiler
