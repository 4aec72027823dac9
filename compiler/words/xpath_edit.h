// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Changes to conditions and paths that keep the rest of the text as it was written:
// other prefixes, another context node, two conditions joined.
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/words/xpath.h"

namespace compiler {

// The prefix to write for the one that was written, "" meaning none on either side.
// nullopt: that prefix is not known; it stays, and is told.
using PrefixRule = std::function<std::optional<std::string>(std::string_view prefix)>;

struct NameRules {
  PrefixRule nodes;       // of the node tests in paths
  PrefixRule identities;  // of identities in literals
  // Whether a literal that is compared with a path names an identity, by that path (an
  // index of `xpath`). Not set: what looks like "prefix:name" does, what has no prefix
  // does not. Literals of derived-from and its kin always do, and are not asked about.
  std::function<bool(const Xpath& xpath, uint32_t path, std::string_view literal)> isIdentity;
  // Told of each identity that a literal names; may be empty.
  std::function<void(std::string_view prefix, std::string_view name)> onIdentity;
};

struct UnknownPrefix {
  size_t offset = 0;  // in the text as it was given
  std::string prefix;
};

// The expression with other prefixes.
std::string RenamePrefixes(const Xpath& xpath, const NameRules& rules,
                           std::vector<UnknownPrefix>* unknown);

// The condition as it is to be written for a context node one level down: each path that
// starts at the context node, current() and "." among them, gets one ".." more in
// front; absolute paths stay. Paths in predicates start elsewhere, but current() there
// does not. nullopt: position() or last() speak of the context itself.
std::optional<std::string> ShiftOneDown(const Xpath& xpath);

// The same for a condition whose context node is the root (of a `uses` at the top of a
// module, say): relative paths become absolute. nullopt: one climbs above the root, or
// position() or last() are called.
std::optional<std::string> ShiftToRoot(const Xpath& xpath);

// "(a) and (b)"; an empty one is left out. Equal ones are written once.
std::string JoinConditions(std::string_view a, std::string_view b);

// What the library makes of an augment's condition for the children of its target;
// nullopt when it makes none. It is right when it means what ShiftOneDown() gives.
std::optional<std::string> LibraryShiftOneDown(std::string_view condition);

// True when the library hands the condition of an augment down to children that are
// data nodes as it must be.
bool LibraryShiftsRightly(const Xpath& xpath);

}  // namespace compiler
