// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The children of a node by name. A container with thousands of children is asked for each
// of them when thousands of augments, deviations or refinements lead into it, so what is
// asked for one among many is put in order once.
#include <string_view>

#include "compiler/spelling/compile.h"

namespace compiler {

// What names a node of a schema in a path; NULL: nothing does.
const char* SchemaName(const xmlNode* node) noexcept;

// The child of that name that is a schema node. NULL: there is none.
xmlNode* FindSchemaChild(Compilation* all, const xmlNode* parent, std::string_view name);

// A node was linked behind the other children.
void NoteChild(Compilation* all, const xmlNode* parent, xmlNode* child);

// A child has left, or another stands in its place.
void ForgetChildren(Compilation* all, const xmlNode* parent);

}  // namespace compiler
