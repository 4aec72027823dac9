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
// Statuses: 0; 22 for a NULL argument and for what the source must not have; 12
// when memory runs out. Nothing is rolled back after a failure.

QM_BEGIN_INTERNAL_DECLS

// Merges the four top-level lists of `src` into those of `dst`: data nodes, rpcs,
// notifications, augments.
uint32_t QMS_MOD_MergeTreeNodeData(QmsModule* dst, QmsModule* src);

// Merges two lists and then, pair by pair, the children of the nodes that stand at
// the same position.
uint32_t QMS_NODE_MergeTreeNodeFromRootStart(QmsNode** dstList, QmsNode** srcList, QmsNode* parent,
                                             QmsModule* dstModule);

// Merges two lists without their children; a failure is recorded for `dstModule`.
// The head of the source is NULL once all its nodes have moved.
uint32_t QMS_NODE_CompareAndMergeNodeList(QmsNode** dstList, QmsNode** srcList, QmsNode* parent,
                                          QmsModule* dstModule);

// The QmsDiffReason of two nodes; QMS_DIFF_OTHER when one is NULL.
uint32_t QMS_NODE_CompareTwoTreeNodeSelfData(const QmsNode* dst, const QmsNode* src);
// The word for a reason in messages, "unknown" for a number that is none.
const char* QMS_NODE_GetDiffReasonName(uint32_t reason);

// Does what the reason demands at one position; 22 for QMS_DIFF_OTHER, and for a
// node outside of `dstModule`. QMS_DIFF_NAME, which moves `src` and all nodes behind
// it, sets *goOn to 0: no position is left to compare; the other reasons to 1.
uint32_t QMS_NODE_MergeNodeListWithDiffReason(QmsNode* dst, QmsNode* src, QmsModule* dstModule,
                                              uint32_t reason, uint32_t* goOn);

// Copies the extension instances of `src`; 22 when `dst` has some.
uint32_t QMS_NODE_MergeDstNodeWithMimExtInst(QmsNode* dst, const QmsNode* src);

// 22 when `src` or a sibling behind it has the name of `dst` or of one behind that;
// else 0, for empty lists as well.
uint32_t QMS_NODE_CheckPostSiblingNodeUnique(const QmsNode* dst, const QmsNode* src);

// Moves `first` and its following siblings, in their order, to the target's module
// and behind its last child or sibling. 22, before anything moves, for another
// `how`, for a target without a module, and below a coupled augment.
uint32_t QMS_NODE_MergeNodeListToTgtWithTravType(QmsNode* target, QmsNode* first, uint32_t how);

// Moves the source nodes at the end of a list that the destination has no more
// nodes for: below `parent`, or into an empty list of the top level. Deliberate: at
// the top level of a list that has nodes they stay where they are, and 0 is given.
uint32_t QMS_NODE_MoveExtraNodeList(QmsNode** dstList, QmsNode* first, QmsNode* parent,
                                    QmsModule* dstModule);

// Gives a subtree to `module`, where its types look for their typedefs from then
// on. The links of `root` stay as they are. 0; 22 for NULL.
uint32_t QMS_NODE_RefreshNodeTreeToQmMod(QmsNode* root, QmsModule* module);

// Record for `dstModule` that a node, or the nodes from `first` on, could not be
// merged. Nothing for a NULL module or node.
void QMS_NODE_RecordNodeListMergeError(QmsModule* dstModule, const QmsNode* dst,
                                       const QmsNode* parent, uint32_t reason);
void QMS_NODE_RecordExtraNodeListMergeError(QmsModule* dstModule, const QmsNode* first,
                                            const QmsNode* parent);

QM_END_INTERNAL_DECLS
