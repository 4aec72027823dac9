// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "context/records.h"
#include "schema/records.h"

// Modules, nodes and types made by hand, for tests that need no YIN text.
namespace module_builder {

// A module record as the loader makes it: it has its context, its name and a
// namespace, and is in no tree. To be freed with QMS_MOD_Free(). NULL without memory.
QmsModule* NewModule(QmCtx* ctx, const char* name);

// A node without parent; NULL without memory.
QmsNode* NewNode(QmsModule* module, uint32_t kind, const char* name);

// A node at the end of a top-level list, or of a node's children; NULL without memory.
QmsNode* AddTop(QmsModule* module, uint32_t kind, const char* name);
QmsNode* AddChild(QmsNode* parent, uint32_t kind, const char* name);

// Turns a zero-filled type into one that names a typedef. False without memory.
bool MakeDerived(QmDict* dict, QmtType* type, const char* moduleName, const char* typedefName);

// Where the derived entry of `type` points to; NULL while it is not resolved.
const QmtType* ResolvedOf(const QmtType* type);

// The type of a leaf.
QmtType* TypeOfLeaf(QmsNode* leaf);

// References that the dictionary counts for `text`; 0 when it does not hold it.
uint32_t References(const QmDict* dict, const char* text);

// The names of a list of siblings in order, each with its children in
// parentheses: "a (x y) b".
std::string ListText(const QmsNode* first);

// The load errors recorded for a module, oldest first.
std::vector<std::string> Messages(QmCtx* ctx, const char* moduleName);

}  // namespace module_builder
