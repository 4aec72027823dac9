// SPDX-License-Identifier: BSD-3-Clause
// The four top-level lists of a module: data nodes, rpcs, notifications and
// augments. Each is a chain of siblings without a parent, headed by the module.
#include <qmodel/schema.h>

#include <iterator>

#include "context/table.h"
#include "platform/string.h"
#include "schema/module_nodes.h"
#include "schema/node.h"
#include "schema/node_link.h"

namespace {
// The list that takes the nodes of a kind; NULL for kinds that always have a parent.
struct KindList {
  uint32_t kind;
  const QmsTopList* list;
};
}  // namespace

constexpr KindList kListOfKind[] = {
    {QMS_NODE_NONE, nullptr},          {QMS_NODE_CONTAINER, &kDataList},
    {QMS_NODE_LEAF, &kDataList},       {QMS_NODE_LEAF_LIST, &kDataList},
    {QMS_NODE_LIST, &kDataList},       {QMS_NODE_CHOICE, &kDataList},
    {QMS_NODE_CASE, nullptr},          {QMS_NODE_ANYDATA, &kDataList},
    {QMS_NODE_ANYXML, &kDataList},     {QMS_NODE_ACTION, nullptr},
    {QMS_NODE_RPC, &kRpcList},         {QMS_NODE_NOTIFICATION, &kNotifList},
    {QMS_NODE_INPUT, nullptr},         {QMS_NODE_OUTPUT, nullptr},
    {QMS_NODE_AUGMENT, &kAugmentList},
};

static_assert(std::size(kListOfKind) == QMS_NODE_KIND_COUNT, "one row per node kind");
static_assert(RowsStandAtTheir<&KindList::kind>(kListOfKind), "a row's index is its node kind");

// What a client sees as the contents of a module, in the order of scans.
constexpr QmsNode* QmsModule::*kOwnLists[] = {&QmsModule::dataNodes, &QmsModule::rpcNodes,
                                              &QmsModule::notifNodes};

// From the head on, each append would cost the length of the list.
uint32_t QMS_MOD_AddTopNodeToSchemaTree(QmsModule* mod, QmsNode* node) {
  if (mod == nullptr || node == nullptr || node->kind >= std::size(kListOfKind)) return QM_INVALID;
  const QmsTopList* list = kListOfKind[node->kind].list;
  if (list == nullptr) return QM_INVALID;
  if (mod->*list->head == nullptr) {
    mod->*list->head = node;
  } else {
    QmsNode* start = mod->*list->tail != nullptr ? mod->*list->tail : mod->*list->head;
    const uint32_t ret = QMS_NODE_AddSibling(start, node);
    if (ret != QM_OK) return ret;
  }
  mod->*list->tail = node;
  return QM_OK;
}

QmsNode* FindTopNode(const QmsModule* mod, TextSpan name) {
  for (QmsNode* QmsModule::*head : kOwnLists) {
    for (QmsNode* node = mod->*head; node != nullptr; node = node->next) {
      if (node->name != nullptr && TextIs(node->name, name)) return node;
    }
  }
  return nullptr;
}

QmsNode* QMS_MOD_FindTopLevelSchemaNode(QmsModule* mod, const char* name) {
  return mod == nullptr || name == nullptr ? nullptr : FindTopNode(mod, WholeText(name));
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
  for (QmsNode* QmsModule::*head : kOwnLists) {
    const uint32_t ret = ScanList(mod->*head, cb, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_IterScanAugmentNode(QmsModule* mod, QmNodeScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  return ScanList(mod->augmentNodes, cb, arg);
}
