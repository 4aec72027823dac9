// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Targets of augments and deviations: absolute schema node identifiers (RFC 7950,
// section 6.5), looked up in the expanded trees of all modules.
#include <string_view>
#include <vector>

#include "compiler/spelling/compile.h"

namespace compiler {

// The steps of the argument of an augment or deviation, in the words of its file.
// Empty: it is no absolute identifier.
std::vector<TargetStep> TargetSteps(const xmlNode* statement);

// The node that the steps name, wherever augments have put it. An input or output that
// an operation does not write is found, but stands in no tree.
FoundNode FindTarget(Compilation* all, const std::vector<TargetStep>& steps);

// True for such an input or output.
bool IsImplied(const FoundNode& node);

// The target of an augment of another module's nodes, looked up once.
FoundNode TargetOf(Compilation* all, WrittenAugment* augment);

// Takes augments that have left the tree off the list; nodes may have left others, too.
void ForgetAugments(Output* out, const std::unordered_set<const xmlNode*>& gone);

// Moves the children of augments into the module's own nodes there, in an order in which
// each target stands before it is augmented. What finds no target stops the module.
void FoldOwnAugments(Output* out);

// Makes `case` of shorthand cases that augments bring to choices of other modules, once:
// paths of others may lead through them.
void WrapForeignCases(Output* out);

}  // namespace compiler
