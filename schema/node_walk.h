// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

QmsNode* QMS_NODE_FindChildNodeByName(QmsNode* parent, const char* moduleName, const char* name);
QmsNode* QMS_NODE_GetTreeNodeNextNode(QmsNode* root, QmsNode* cur, uint32_t* travType);
QmsNode* QMS_NODE_GetTreeNodeSibOrParent(QmsNode* root, QmsNode* cur, uint32_t* travType);
QmsNode* QMS_NODE_GetParentDataTreeNode(QmsNode* node);
QmsNode* QMS_NODE_GetFirstSlibingDataTreeNode(QmsNode* node, QmsNode* stop);
QmsNode* QMS_NODE_GetNextDataTreeNode(QmsNode* node, QmsNode* stop);
QmsNode* QMS_NODE_FindChildDataTreeNodeByName(QmsNode* node, const char* moduleName,
                                              const char* name);

QM_END_INTERNAL_DECLS
