// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "data/run_index.h"

// The data children of one schema parent, as the index of a run keeps them.

// Fills the children of a parent that has none yet. Without memory, and for a schema that
// no loader made (nodes without module or name, cases outside of choices), it is left
// without, the second for good.
void IndexChildren(QmdRunIndex* index, QmdParent* parent);

// The conditions of a node: QMD_CHILD_WHEN, also of a choice or case around it, and _MUST.
uint32_t ConditionsOf(const QmsNode* node);

// The child of that module and name, or NULL; and the one of a schema node, NULL also for
// a node that another one of its module and name stands before.
QmdChild* FindChild(const QmdParent* parent, const char* moduleName, const char* name);
QmdChild* FindChildOfNode(const QmdParent* parent, const QmsNode* node);
// A choice among the children, by its node and the first child that lies in it; NULL when
// that is not found.
QmdChoice* FindChoiceOfNode(const QmdParent* parent, QmsNode* node);
