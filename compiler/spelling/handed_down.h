// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Conditions of `uses` and augments on the nodes that they are handed to (RFC 7950,
// sections 7.13, 7.17.2 and 7.21.5): the context node of a data node's `when` lies one
// level below that of a `uses`; that of a choice or case is the same.
#include <string_view>

#include "compiler/spelling/compile.h"

namespace compiler {

// Moves a condition that was handed down, in the words of the written module already, to
// its place. False, with the loss reported: it cannot be said there.
bool SettleHandedDown(Output* out, xmlNode* when);

// Makes one condition of those of a node: "(outer) and (inner)".
void JoinConditionsOf(Output* out, xmlNode* node);

// True when the library gives this condition of an augment to each child as it must.
bool LibraryHandsDown(const Output& out, const xmlNode* augment, std::string_view condition);

// Writes the conditions of augments of other modules on their children where the
// library's own handing down would go wrong.
void SpreadAugmentConditions(Output* out);

// Writes the features of augments of other modules on their actions and notifications,
// which the library's own handing down passes over.
void SpreadAugmentFeatures(Output* out);

}  // namespace compiler
