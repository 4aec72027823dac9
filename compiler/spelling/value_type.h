// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Which type decides on a value: that at the end of leafrefs, and of a union the first
// member that takes the value (RFC 7950, sections 9.9 and 9.12).
#include <string_view>

#include "compiler/spelling/compile.h"

namespace compiler {

// A type as it was read, and the leaf that relative paths in it start from (without node:
// it stands in a typedef).
struct LeafType {
  const xmlNode* type = nullptr;  // NULL: it is not known
  FoundNode leaf;
};

// The type, or where it is a leafref the type that its values have.
LeafType ReferredType(Compilation* all, const LeafType& one);

// The type of what has a default: a leaf, leaf-list, typedef or deviate.
LeafType TypeWithDefault(Output* out, const xmlNode* parent);

LeafType TypeOfLeaf(const FoundNode& leaf);

// True when the type that decides on the argument of a statement that was read is identityref.
bool NamesIdentity(Compilation* all, const LeafType& one, const xmlNode* origin);

// The type that decides on a value which `at` holds. A type that is no union is not asked
// whether the value fits. NULL: it is not known, or no member takes the value.
const xmlNode* DecidingType(Compilation* all, const LeafType& one, std::string_view value,
                            const xmlNode* at);

// False: the value, written at `at`, is none of the type when every feature is on.
bool TakesValue(Compilation* all, const LeafType& one, std::string_view value, const xmlNode* at);

}  // namespace compiler
