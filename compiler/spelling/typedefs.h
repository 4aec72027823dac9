// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Types by name (RFC 7950, sections 5.5, 7.3 and 9.9.2): the loader knows typedefs at the
// level of modules only, and of each module one revision.
#include "compiler/spelling/compile.h"

namespace compiler {

// The type at the end of a chain of typedefs.
struct BottomType {
  const xmlNode* type = nullptr;       // its statement, as it was read; NULL: a name is not found
  const xmlNode* byDefault = nullptr;  // the `default` that comes first on the way; NULL: none
  const xmlNode* units = nullptr;      // likewise
  bool direct = true;                  // there is no typedef between
};
BottomType FindBottomType(const xmlNode* type);

// The same, where a leafref of a typedef has lost its target that which has taken its place.
BottomType FindWrittenBottom(const Compilation* all, const xmlNode* type);

// True for the name of a built-in type.
bool IsBuiltInType(std::string_view name) noexcept;

// Puts the written name into a `type` statement of the tree, and what it names at the
// level of a module. Typedefs that move are appended to the root. Gives the statement
// that now stands there: a leaf whose typedef is a path in the words of its user gets
// the path itself.
xmlNode* RewriteType(Output* out, xmlNode* type);

// True for a path that leads elsewhere from another leaf, or from one of another module.
bool DependsOnLeaf(const xmlNode* leafref);

// The leaf whose type a deviation replaces by the type, or by one that the type is part of.
FoundNode DeviatedLeaf(Output* out, const xmlNode* type);

// Counts what a member of a union is to become. False: that is more than a module may have,
// which stops it.
bool MayGrowUnion(Output* out, const xmlNode* member, const xmlNode* added);

// The type of another leaf takes the place of one: its values, not its default. A leaf
// keeps what it had from its typedef. Paths in it go on to begin at the other leaf. Gives
// the statement that now stands there.
xmlNode* PutTypeOf(Output* out, xmlNode* type, const xmlNode* other, const FoundNode& leaf);

// Notes the names of the module's own typedefs, which others must not clash with.
void NoteTypedefNames(Output* out);

}  // namespace compiler
