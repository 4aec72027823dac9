// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "platform/string.h"
#include "schema/records.h"

// The child after `child`, or NULL. It also ends at the parent's last child: the
// children of a coupled augment are a run inside a longer list.
inline QmsNode* NextChild(const QmsNode* parent, const QmsNode* child) {
  return child == parent->lastChild ? nullptr : child->next;
}

// The first schema child of that name; an empty module name fits all.
QmsNode* FindChildNode(QmsNode* parent, TextSpan moduleName, TextSpan name);

QM_BEGIN_INTERNAL_DECLS

// The first schema child of that name; an empty or NULL `moduleName` fits all.
QmsNode* QMS_NODE_FindChildNodeByName(QmsNode* parent, const char* moduleName, const char* name);

// Steps of a pre-order walk of the subtree of `root`, which reports each inner
// node again on the way up. *travType holds the last step and receives the new
// one; NULL when the walk comes back to `root`. For an augment as root the nodes of
// its run count as its children, whether or not it is marked as coupled already.
QmsNode* QMS_NODE_GetTreeNodeNextNode(QmsNode* root, QmsNode* cur, uint32_t* travType);
QmsNode* QMS_NODE_GetTreeNodeSibOrParent(QmsNode* root, QmsNode* cur, uint32_t* travType);

// Steps of the data tree, which look through choice, case, input, output and
// augment; NULL when they lead nowhere.
//
// The nearest node above `node` that names an element.
QmsNode* QMS_NODE_GetParentDataTreeNode(QmsNode* node);
// `node` itself, or else the first after it in document order, and the first after `node`,
// below the same node of the data tree and below `stop`.
QmsNode* QMS_NODE_GetFirstSlibingDataTreeNode(QmsNode* node, QmsNode* stop);
QmsNode* QMS_NODE_GetNextDataTreeNode(QmsNode* node, QmsNode* stop);
// The child of that name and module; an empty or NULL `moduleName` is that of `node`. In an
// operation the input comes before the output.
QmsNode* QMS_NODE_FindChildDataTreeNodeByName(QmsNode* node, const char* moduleName,
                                              const char* name);

QM_END_INTERNAL_DECLS
