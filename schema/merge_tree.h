// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// How two nodes at the same position differ.
enum QmsDiffReason : uint32_t {
  QMS_DIFF_NONE = 0,
  QMS_DIFF_EXTENSION = 1,  // only the source has extension instances
  QMS_DIFF_NAME = 2,
  QMS_DIFF_OTHER = 4  // flags or kind, or extension instances in different numbers
};

// Lists are given by their heads, which move on as nodes leave them; `parent` is
// the destination node above a list, NULL at the top level. `how` is the
// QmsTravType from the target to the moved nodes: its children or its siblings.
// Nothing is rolled back after a failure; the Record functions report one.

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
