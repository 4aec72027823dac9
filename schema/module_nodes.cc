// SPDX-License-Identifier: BSD-3-Clause
// The four top-level lists of a module: data nodes, rpcs, notifications and
// augments. Each is a chain of siblings without a parent, headed by the module.
#include <qmodel/schema.h>

#include <iterator>

#include "platform/string.h"
#include "schema/module.h"
#include "schema/node_link.h"

using ListHead = QmsNode* QmsModule::*;

namespace {
// The list that takes the nodes of a kind; NULL for kinds that always have a parent.
struct KindList {
  uint32_t kind;
  ListHead head;
};
}  // namespace

static constexpr KindList kListOfKind[] = {
    {QMS_NODE_NONE, nullptr},
    {QMS_NODE_CONTAINER, &QmsModule::dataNodes},
    {QMS_NODE_LEAF, &QmsModule::dataNodes},
    {QMS_NODE_LEAF_LIST, &QmsModule::dataNodes},
    {QMS_NODE_LIST, &QmsModule::dataNodes},
    {QMS_NODE_CHOICE, &QmsModule::dataNodes},
    {QMS_NODE_CASE, nullptr},
    {QMS_NODE_ANYDATA, &QmsModule::dataNodes},
    {QMS_NODE_ANYXML, &QmsModule::dataNodes},
    {QMS_NODE_ACTION, nullptr},
    {QMS_NODE_RPC, &QmsModule::rpcNodes},
    {QMS_NODE_NOTIFICATION, &QmsModule::notifNodes},
    {QMS_NODE_INPUT, nullptr},
    {QMS_NODE_OUTPUT, nullptr},
    {QMS_NODE_AUGMENT, &QmsModule::augmentNodes},
};

static consteval bool RowsStandAtTheirKind() {
  for (size_t i = 0; i < std::size(kListOfKind); ++i) {
    if (kListOfKind[i].kind != i) return false;
  }
  return true;
}
static_assert(std::size(kListOfKind) == QMS_NODE_KIND_COUNT, "one row per node kind");
static_assert(RowsStandAtTheirKind(), "a row's index is its node kind");

// What a client sees as the contents of a module, in the order of scans.
static constexpr ListHead kOwnLists[] = {&QmsModule::dataNodes, &QmsModule::rpcNodes,
                                         &QmsModule::notifNodes};

uint32_t QMS_MOD_AddTopNodeToSchemaTree(QmsModule* mod, QmsNode* node) {
  if (mod == nullptr || node == nullptr || node->kind >= std::size(kListOfKind)) return QM_INVALID;
  const ListHead head = kListOfKind[node->kind].head;
  if (head == nullptr) return QM_INVALID;
  if (mod->*head != nullptr) return QMS_NODE_AddSibling(mod->*head, node);
  mod->*head = node;
  return QM_OK;
}

QmsNode* QMS_MOD_FindTopLevelSchemaNode(QmsModule* mod, const char* name) {
  if (mod == nullptr || name == nullptr) return nullptr;
  for (const ListHead head : kOwnLists) {
    for (QmsNode* node = mod->*head; node != nullptr; node = node->next) {
      if (node->name != nullptr && RTK_StrCmp(node->name, name) == 0) return node;
    }
  }
  return nullptr;
}

// The next node is read first: the callback may take its node out of the list.
static uint32_t ScanList(QmsNode* list, QmNodeScanFunc cb, void* arg) {
  QmsNode* next = nullptr;
  for (QmsNode* node = list; node != nullptr; node = next) {
    next = node->next;
    const uint32_t ret = cb(node, QMS_TRAV_TOP, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_IterScanTopmostNode(QmsModule* mod, QmNodeScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  for (const ListHead head : kOwnLists) {
    const uint32_t ret = ScanList(mod->*head, cb, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_IterScanAugmentNode(QmsModule* mod, QmNodeScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  return ScanList(mod->augmentNodes, cb, arg);
}
