// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

QmsNode* QMS_MOD_GetNodeByXpath(QmsModule* module, QmsNode* startNode, const char* path);
const char* QMS_MOD_GetStartPathAndNode(QmsModule* module, QmsNode* startNode, const char* path,
                                        QmsNode** node, QmsModule** mod);
const char* QMS_MOD_GetRelativePathRealStartNode(QmsModule* module, QmsNode* startNode,
                                                 const char* path, QmsNode** node);
QmsNode* QMS_MOD_GetDataTreeNodeByNodeIdentifier(QmCtx* ctx, QmsModule** mod, QmsNode* parent,
                                                 const char* qualifier, const char* name);
uint32_t QMS_MOD_FindAugNodeTargetInSelfMod(QmsModule* module, QmsNode* augment, QmsNode** target);
const char* QMS_NODE_GetNextLeafrefPath(QmsNode* node);

QmsNode* QMS_MOD_GetNodeBySchemaNodeId(QmsModule* module, QmsNode* startNode, const char* path);
QmsNode* QMS_MOD_GetNodeUnderAugmentBySchemaNodeId(QmsModule* module, const char* augTargetPath,
                                                   const char* subPath, QmsNode** augment);

QM_END_INTERNAL_DECLS
