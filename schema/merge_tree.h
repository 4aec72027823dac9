// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

const char* QMS_NODE_GetDiffReasonName(uint32_t reason);
uint32_t QMS_NODE_CompareTwoTreeNodeSelfData(const QmsNode* dst, const QmsNode* src);
uint32_t QMS_MOD_MergeTreeNodeData(QmsModule* dst, QmsModule* src);
uint32_t QMS_NODE_MergeTreeNodeFromRootStart(QmsNode** dstList, QmsNode** srcList, QmsNode* parent,
                                             QmsModule* dstModule);
uint32_t QMS_NODE_CompareAndMergeNodeList(QmsNode** dstList, QmsNode** srcList, QmsNode* parent,
                                          QmsModule* dstModule);
uint32_t QMS_NODE_MergeNodeListWithDiffReason(QmsNode* dst, QmsNode* src, QmsModule* dstModule,
                                              uint32_t reason, uint32_t* goOn);
uint32_t QMS_NODE_MergeNodeListToTgtWithTravType(QmsNode* target, QmsNode* first, uint32_t how);
uint32_t QMS_NODE_MoveExtraNodeList(QmsNode** dstList, QmsNode* first, QmsNode* parent,
                                    QmsModule* dstModule);
uint32_t QMS_NODE_MergeDstNodeWithMimExtInst(QmsNode* dst, const QmsNode* src);
uint32_t QMS_NODE_CheckPostSiblingNodeUnique(const QmsNode* dst, const QmsNode* src);
uint32_t QMS_NODE_RefreshNodeTreeToQmMod(QmsNode* root, QmsModule* module);
void QMS_NODE_RecordNodeListMergeError(QmsModule* dstModule, const QmsNode* dst,
                                       const QmsNode* parent, uint32_t reason);
void QMS_NODE_RecordExtraNodeListMergeError(QmsModule* dstModule, const QmsNode* first,
                                            const QmsNode* parent);

QM_END_INTERNAL_DECLS
