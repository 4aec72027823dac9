// SPDX-License-Identifier: BSD-3-Clause
// The life of schema nodes. What differs between the kinds of nodes stands in
// one table: the statement, the size of the payload and how it is released.
//
// Freeing goes over the subtree in a loop, since augments stack up to trees of
// any depth. Each child is taken out of its parent's list before it is freed, so
// that a client's hook never meets a freed node, and the parent link serves as
// the way back.
#include "schema/node.h"

#include <iterator>

#include "context/dict.h"
#include "context/memory.h"
#include "context/table.h"
#include "platform/string.h"
#include "schema/ext_inst.h"
#include "schema/node_array.h"
#include "schema/record_array.h"
#include "schema/statement.h"
#include "types/type.h"

using PayloadDestroyFunc = void (*)(QmDict* dict, void* payload);

namespace {
struct NodeKindRow {
  uint32_t kind;
  uint32_t stmt;
  uint32_t infoSize;
  PayloadDestroyFunc destroy;
};
}  // namespace

constexpr NodeKindRow kNodeKinds[] = {
    {QMS_NODE_NONE, QMS_STMT_UNKNOWN, 0, nullptr},
    {QMS_NODE_CONTAINER, QMS_STMT_CONTAINER, 0, nullptr},
    {QMS_NODE_LEAF, QMS_STMT_LEAF, sizeof(QmsLeaf), QMS_NODE_DestroySchemaLeaf},
    {QMS_NODE_LEAF_LIST, QMS_STMT_LEAF_LIST, sizeof(QmsLeafList), QMS_NODE_DestroySchemaLeaflist},
    {QMS_NODE_LIST, QMS_STMT_LIST, 0, nullptr},
    {QMS_NODE_CHOICE, QMS_STMT_CHOICE, sizeof(QmsChoice), QMS_NODE_DestroySchemaChoice},
    {QMS_NODE_CASE, QMS_STMT_CASE, 0, nullptr},
    {QMS_NODE_ANYDATA, QMS_STMT_ANYDATA, 0, nullptr},
    {QMS_NODE_ANYXML, QMS_STMT_ANYXML, 0, nullptr},
    {QMS_NODE_ACTION, QMS_STMT_ACTION, 0, nullptr},
    {QMS_NODE_RPC, QMS_STMT_RPC, 0, nullptr},
    {QMS_NODE_NOTIFICATION, QMS_STMT_NOTIFICATION, 0, nullptr},
    {QMS_NODE_INPUT, QMS_STMT_INPUT, 0, nullptr},
    {QMS_NODE_OUTPUT, QMS_STMT_OUTPUT, 0, nullptr},
    {QMS_NODE_AUGMENT, QMS_STMT_AUGMENT, 0, nullptr},
};

static_assert(std::size(kNodeKinds) == QMS_NODE_KIND_COUNT, "one row per kind");
static_assert(RowsStandAtTheir<&NodeKindRow::kind>(kNodeKinds), "a row's index is its kind");

static const NodeKindRow& KindRow(uint32_t kind) {
  return kNodeKinds[kind < std::size(kNodeKinds) ? kind : 0];
}

uint32_t QMS_NODE_GetStmtByNodeType(uint32_t kind) {
  return KindRow(kind).stmt;
}

uint32_t QMS_NODE_GetInfoSize(uint32_t kind) {
  return KindRow(kind).infoSize;
}

QmsNode* QMS_NODE_New(uint32_t kind) {
  QmsNode* node = NewRecord<QmsNode>();
  if (node == nullptr) return nullptr;
  node->kind = kind;
  const uint32_t infoSize = QMS_NODE_GetInfoSize(kind);
  if (infoSize == 0) return node;
  node->payload = AllocZeroed(infoSize);
  if (node->payload != nullptr) return node;
  g_qmMemFreeFunc(node);
  return nullptr;
}

void QMS_NODE_DestroySchemaLeaf(QmDict* dict, void* payload) {
  if (payload == nullptr) return;
  QmsLeaf* leaf = static_cast<QmsLeaf*>(payload);
  QMT_TYPE_DestroyQmtRealTypeInner(dict, &leaf->type);
  ReleaseText(dict, &leaf->defaultValue);
  ReleaseText(dict, &leaf->units);
  g_qmMemFreeFunc(leaf);
}

void QMS_NODE_DestroySchemaLeaflist(QmDict* dict, void* payload) {
  if (payload == nullptr) return;
  QmsLeafList* leafList = static_cast<QmsLeafList*>(payload);
  QMT_TYPE_DestroyQmtRealTypeInner(dict, &leafList->type);
  QMS_NODE_FreeDefaults(dict, leafList->defaults, leafList->defaultCount);
  ReleaseText(dict, &leafList->units);
  g_qmMemFreeFunc(leafList);
}

void QMS_NODE_DestroySchemaChoice(QmDict* dict, void* payload) {
  if (payload == nullptr) return;
  QmsChoice* choice = static_cast<QmsChoice*>(payload);
  ReleaseText(dict, &choice->defaultCase);
  g_qmMemFreeFunc(choice);
}

static void DestroyPayload(QmDict* dict, QmsNode* node) {
  const PayloadDestroyFunc destroy = KindRow(node->kind).destroy;
  if (destroy == nullptr) return;
  destroy(dict, node->payload);
  node->payload = nullptr;
}

void QMS_NODE_DestroySchemaInfo(QmsNode* node) {
  if (node == nullptr || NodeCtx(node) == nullptr) return;
  DestroyPayload(&NodeCtx(node)->dict, node);
}

void QMS_NODE_DestroyPrivateData(QmCtx* ctx, QmsNode* node) {
  if (ctx == nullptr || node == nullptr) return;
  if (node->privateData == nullptr || ctx->pridataFreeFunc == nullptr) return;
  ctx->pridataFreeFunc(node, node->privateData);
  node->privateData = nullptr;
}

// Releases all that a node owns but its children and its own block.
static void ReleaseContents(QmDict* dict, QmsNode* node) {
  ReleaseText(dict, &node->name);
  ReleaseText(dict, &node->description);
  ReleaseText(dict, &node->when);
  DropArrayOf(dict, &node->ifFeatures, &node->ifFeatureCount, QMS_NODE_FreeIfFeatures);
  DropArrayOf(dict, &node->musts, &node->mustCount, QMS_NODE_FreeMusts);
  DropArrayOf(dict, &node->extInsts, &node->extInstCount, QMS_EXT_FreeExtInsts);
  DestroyPayload(dict, node);
}

// Prepares a node for its end. False for a node that is to be left alone.
using BeginFreeFunc = bool (*)(QmsNode* node);

static bool BeginFree(QmsNode* node) {
  if (NodeCtx(node) == nullptr || IsCoupledAugment(node)) return false;
  QMS_NODE_DestroyPrivateData(NodeCtx(node), node);
  ReleaseContents(&NodeCtx(node)->dict, node);
  return true;
}

static bool BeginFreeWithoutTexts(QmsNode* node) {
  // The children of a coupled augment belong to the tree in which they lie.
  if (IsCoupledAugment(node)) node->firstChild = nullptr;
  // A dictionary without buckets holds nothing, so nothing is released.
  QmDict noTexts{};
  ReleaseContents(&noTexts, node);
  return true;
}

// Takes the first child that can be freed out of the list and begins its end.
static QmsNode* TakeChildToFree(QmsNode* parent, BeginFreeFunc begin) {
  while (parent->firstChild != nullptr) {
    QmsNode* child = parent->firstChild;
    parent->firstChild = child->next;
    if (!begin(child)) continue;
    child->parent = parent;
    return child;
  }
  return nullptr;
}

static void FreeSubtree(QmsNode* root, BeginFreeFunc begin) {
  if (!begin(root)) return;
  QmsNode* node = root;
  while (node != nullptr) {
    QmsNode* child = TakeChildToFree(node, begin);
    if (child != nullptr) {
      node = child;
      continue;
    }
    QmsNode* up = node == root ? nullptr : node->parent;
    g_qmMemFreeFunc(node);
    node = up;
  }
}

void QMS_NODE_Free(QmsNode* node) {
  if (node != nullptr) FreeSubtree(node, BeginFree);
}

void FreeNodesWithoutTexts(QmsNode* first) {
  while (first != nullptr) {
    QmsNode* next = first->next;
    FreeSubtree(first, BeginFreeWithoutTexts);
    first = next;
  }
}
