// SPDX-License-Identifier: BSD-3-Clause
// Merging the schema tree of a module read from a second file into that of the
// first. Two lists of siblings are compared position by position, not by name.
// Nodes of one name must agree; from the first position where the names differ,
// the source's nodes move behind the destination's last sibling. Then the
// children of the nodes that stand at the same position are merged the same way.
//
// A node moves in three steps whose order matters: it is unlinked while it still
// names its old module, whose list head may have to move on; then its subtree is
// given to the new module; then it is linked there.
#include "schema/merge_tree.h"

#include <iterator>

#include <qmodel/schema.h>

#include "context/load_error.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "schema/node_value.h"
#include "schema/record_array.h"
#include "schema/typedef.h"
#include "types/type.h"

constexpr const char* kReasonNames[] = {
    "none",       // QMS_DIFF_NONE
    "extension",  // QMS_DIFF_EXTENSION
    "name",       // QMS_DIFF_NAME
    nullptr,
    "other",  // QMS_DIFF_OTHER
};
static_assert(std::size(kReasonNames) == QMS_DIFF_OTHER + 1, "one place per reason");

const char* QMS_NODE_GetDiffReasonName(uint32_t reason) {
  const char* name = reason < std::size(kReasonNames) ? kReasonNames[reason] : nullptr;
  return name == nullptr ? "unknown" : name;
}

// How two nodes at the same position of two trees differ. Deliberate: the extension
// instances are only counted, and conditions, if-features and payloads are not
// looked at; what the destination has is kept.
uint32_t QMS_NODE_CompareTwoTreeNodeSelfData(const QmsNode* dst, const QmsNode* src) {
  if (dst == nullptr || src == nullptr) return QMS_DIFF_OTHER;
  if (dst->name != src->name) return QMS_DIFF_NAME;
  if (dst->flags != src->flags || dst->kind != src->kind) return QMS_DIFF_OTHER;
  if (src->extInstCount == 0 || src->extInstCount == dst->extInstCount) return QMS_DIFF_NONE;
  return dst->extInstCount == 0 ? QMS_DIFF_EXTENSION : QMS_DIFF_OTHER;
}

static uint32_t GiveNodeToModule(QmsNode* node, uint32_t travType, void* arg) {
  if (travType == QMS_TRAV_PARENT) return QM_OK;
  auto* module = static_cast<QmsModule*>(arg);
  QmtType* type = QMS_NODE_GetLeafSchemaRealType(node);
  if (type != nullptr) {
    // It must not go on pointing into the typedefs of the module it leaves.
    if (node->module != nullptr) ClearResolvedInType(type, node->module->name);
    // A typedef that is not there (yet) is reported when the module is registered.
    static_cast<void>(QMT_TYPE_UpdateRealTypeDerivedFrom(type, module));
  }
  node->module = module;
  return QM_OK;
}

uint32_t QMS_NODE_RefreshNodeTreeToQmMod(QmsNode* root, QmsModule* module) {
  if (root == nullptr || module == nullptr) return QM_INVALID;
  return QM_NODE_TreeScanAllNode(root, GiveNodeToModule, module);
}

uint32_t QMS_NODE_MergeNodeListToTgtWithTravType(QmsNode* target, QmsNode* first, uint32_t how) {
  if (target == nullptr || first == nullptr || how > QMS_TRAV_SIBLING) return QM_INVALID;
  // All refusals come before the first unlinking: a node between two trees would be lost.
  if (target->module == nullptr) return QM_INVALID;
  if (how == QMS_TRAV_CHILD && IsCoupledAugment(target)) return QM_INVALID;
  QmsNode* next = nullptr;
  for (QmsNode* node = first; node != nullptr; node = next) {
    next = node->next;
    uint32_t ret = QMS_NODE_Unlink(node);
    if (ret == QM_OK) ret = QMS_NODE_RefreshNodeTreeToQmMod(node, target->module);
    if (ret == QM_OK) ret = QMS_NODE_LinkTreeNode(target, node, how);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_NODE_MergeDstNodeWithMimExtInst(QmsNode* dst, const QmsNode* src) {
  if (dst == nullptr || src == nullptr || NodeCtx(dst) == nullptr) return QM_INVALID;
  if (dst->extInstCount != 0) return QM_INVALID;
  const bool copied = CopyCounted(ModuleDict(dst->module), &dst->extInsts, &dst->extInstCount,
                                  src->extInsts, src->extInstCount, QMS_EXT_CopyExtInsts);
  return copied ? QM_OK : QM_NO_MEMORY;
}

static bool IsNameFromHereOn(const QmsNode* node, const char* name) {
  for (; node != nullptr; node = node->next) {
    if (node->name == name) return true;
  }
  return false;
}

uint32_t QMS_NODE_CheckPostSiblingNodeUnique(const QmsNode* dst, const QmsNode* src) {
  for (; src != nullptr; src = src->next) {
    if (IsNameFromHereOn(dst, src->name)) return QM_INVALID;
  }
  return QM_OK;
}

uint32_t QMS_NODE_MergeNodeListWithDiffReason(QmsNode* dst, QmsNode* src, QmsModule* dstModule,
                                              uint32_t reason, uint32_t* goOn) {
  if (dst == nullptr || src == nullptr || goOn == nullptr) return QM_INVALID;
  if (dst->module != dstModule) return QM_INVALID;
  *goOn = 1;
  if (reason == QMS_DIFF_NONE) return QM_OK;
  if (reason == QMS_DIFF_EXTENSION) return QMS_NODE_MergeDstNodeWithMimExtInst(dst, src);
  if (reason != QMS_DIFF_NAME) return QM_INVALID;
  *goOn = 0;
  const uint32_t ret = QMS_NODE_CheckPostSiblingNodeUnique(dst, src);
  return ret == QM_OK ? QMS_NODE_MergeNodeListToTgtWithTravType(dst, src, QMS_TRAV_SIBLING) : ret;
}

// The first of the extra nodes becomes the head of a list that was empty.
static uint32_t MoveToEmptyTopList(QmsNode** dstList, QmsNode* first, QmsModule* dstModule) {
  QmsNode* rest = first->next;
  uint32_t ret = QMS_NODE_Unlink(first);
  if (ret == QM_OK) ret = QMS_NODE_RefreshNodeTreeToQmMod(first, dstModule);
  if (ret != QM_OK) return ret;
  *dstList = first;
  if (rest == nullptr) return QM_OK;
  return QMS_NODE_MergeNodeListToTgtWithTravType(first, rest, QMS_TRAV_SIBLING);
}

uint32_t QMS_NODE_MoveExtraNodeList(QmsNode** dstList, QmsNode* first, QmsNode* parent,
                                    QmsModule* dstModule) {
  if (dstList == nullptr || first == nullptr || dstModule == nullptr) return QM_INVALID;
  if (parent != nullptr) {
    return QMS_NODE_MergeNodeListToTgtWithTravType(parent, first, QMS_TRAV_CHILD);
  }
  if (*dstList == nullptr) return MoveToEmptyTopList(dstList, first, dstModule);
  // Deliberate: surplus top-level nodes of the source stay where they are when
  // all nodes of the destination matched.
  return QM_OK;
}

void QMS_NODE_RecordNodeListMergeError(QmsModule* dstModule, const QmsNode* dst,
                                       const QmsNode* parent, uint32_t reason) {
  if (dstModule == nullptr || dst == nullptr) return;
  const char* reasonName = QMS_NODE_GetDiffReasonName(reason);
  if (parent == nullptr) {
    QM_CTX_AddModError(dstModule->ctx, dstModule->name,
                       "Failed to merge node \"%s\" with diff reason \"%s\".", dst->name,
                       reasonName);
  } else {
    QM_CTX_AddModError(dstModule->ctx, dstModule->name,
                       "Failed to merge node \"%s\" under \"%s\" with diff reason \"%s\".",
                       dst->name, parent->name, reasonName);
  }
}

void QMS_NODE_RecordExtraNodeListMergeError(QmsModule* dstModule, const QmsNode* first,
                                            const QmsNode* parent) {
  if (dstModule == nullptr || first == nullptr) return;
  if (parent == nullptr) {
    QM_CTX_AddModError(dstModule->ctx, dstModule->name, "Failed to merge extra node list \"%s\".",
                       first->name);
  } else {
    QM_CTX_AddModError(dstModule->ctx, dstModule->name,
                       "Failed to merge extra node list \"%s\" under \"%s\".", first->name,
                       parent->name);
  }
}

// The walk over both lists; from a move of source nodes on there is no pair left.
static uint32_t MergePositions(QmsNode** dstList, QmsNode* srcFirst, QmsNode* parent,
                               QmsModule* dstModule) {
  QmsNode* dst = *dstList;
  QmsNode* src = srcFirst;
  for (; dst != nullptr && src != nullptr; dst = dst->next, src = src->next) {
    const uint32_t reason = QMS_NODE_CompareTwoTreeNodeSelfData(dst, src);
    uint32_t goOn = 1;
    const uint32_t ret = QMS_NODE_MergeNodeListWithDiffReason(dst, src, dstModule, reason, &goOn);
    if (ret != QM_OK) QMS_NODE_RecordNodeListMergeError(dstModule, dst, parent, reason);
    if (ret != QM_OK || goOn == 0) return ret;
  }
  if (src == nullptr) return QM_OK;
  const uint32_t ret = QMS_NODE_MoveExtraNodeList(dstList, src, parent, dstModule);
  if (ret != QM_OK) QMS_NODE_RecordExtraNodeListMergeError(dstModule, src, parent);
  return ret;
}

uint32_t QMS_NODE_CompareAndMergeNodeList(QmsNode** dstList, QmsNode** srcList, QmsNode* parent,
                                          QmsModule* dstModule) {
  if (dstList == nullptr || srcList == nullptr || dstModule == nullptr) return QM_INVALID;
  QmsNode* const srcFirst = *srcList;
  if (srcFirst == nullptr) return QM_OK;
  const uint32_t ret = MergePositions(dstList, srcFirst, parent, dstModule);
  // Nodes move from some position on to the end: with the first, all have moved.
  if (ret == QM_OK && srcFirst->module == dstModule) *srcList = nullptr;
  return ret;
}

namespace {
// Two nodes at the same position of the two trees.
struct NodePair {
  QmsNode* dst;
  QmsNode* src;
};
}  // namespace

// The pair after `pair` in a walk over both trees at once, children first. Nodes
// that only one of the trees has at a position are left out with their subtrees.
static NodePair NextPair(NodePair pair, const QmsNode* top) {
  if (pair.dst->firstChild != nullptr && pair.src->firstChild != nullptr) {
    return {pair.dst->firstChild, pair.src->firstChild};
  }
  while (pair.dst->next == nullptr || pair.src->next == nullptr) {
    if (pair.dst->parent == top || pair.src->parent == nullptr) return {nullptr, nullptr};
    pair = {pair.dst->parent, pair.src->parent};
  }
  return {pair.dst->next, pair.src->next};
}

uint32_t QMS_NODE_MergeTreeNodeFromRootStart(QmsNode** dstList, QmsNode** srcList, QmsNode* parent,
                                             QmsModule* dstModule) {
  uint32_t ret = QMS_NODE_CompareAndMergeNodeList(dstList, srcList, parent, dstModule);
  if (ret != QM_OK || *dstList == nullptr || *srcList == nullptr) return ret;
  NodePair pair = {*dstList, *srcList};
  while (pair.dst != nullptr && ret == QM_OK) {
    ret = QMS_NODE_CompareAndMergeNodeList(&pair.dst->firstChild, &pair.src->firstChild, pair.dst,
                                           dstModule);
    pair = NextPair(pair, parent);
  }
  return ret;
}

uint32_t QMS_MOD_MergeTreeNodeData(QmsModule* dst, QmsModule* src) {
  if (dst == nullptr || src == nullptr) return QM_INVALID;
  static constexpr QmsNode* QmsModule::*kLists[] = {&QmsModule::dataNodes, &QmsModule::rpcNodes,
                                                    &QmsModule::notifNodes,
                                                    &QmsModule::augmentNodes};
  for (QmsNode* QmsModule::*list : kLists) {
    const uint32_t ret =
        QMS_NODE_MergeTreeNodeFromRootStart(&(dst->*list), &(src->*list), nullptr, dst);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
