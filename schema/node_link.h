// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// Linking, 0 when done. All refuse a NULL argument with 22. The children of a coupled
// augment lie in another node's list, so nothing can be added to it: 22.
uint32_t QMS_NODE_AddChild(QmsNode* parent, QmsNode* node);
uint32_t QMS_NODE_AddAsFirstChild(QmsNode* parent, QmsNode* node);
uint32_t QMS_NODE_AddSibling(QmsNode* node, QmsNode* newNode);
// `how`: 0 as last child of `a`, 1 as last sibling of `a`.
uint32_t QMS_NODE_LinkTreeNode(QmsNode* a, QmsNode* node, uint32_t how);

// Takes a node with its subtree out of its list; the node is the caller's then. 0; 22 for
// NULL.
uint32_t QMS_NODE_Unlink(QmsNode* node);
// Where `node` heads a top-level list of its module, `next` becomes the head; where
// a list is appended to from `node` on, that begins with the node before it.
void QM_NODE_CalibrateTopNodeAddress(QmsNode* node, QmsNode* next);

// The end of the list that holds `node`.
QmsNode* QMS_NODE_GetLastSibling(QmsNode* node);
// 1 when `node` is in the child list of `parent`, else 0. Compares addresses only; `node`
// may point to a freed node.
uint32_t QMS_NODE_IsChildNode(const QmsNode* parent, const QmsNode* node);

QM_END_INTERNAL_DECLS
