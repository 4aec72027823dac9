// SPDX-License-Identifier: BSD-3-Clause
// What clients list of a schema node. Scans take no NULL.
#include <iterator>

#include <qmodel/error.h>
#include <qmodel/inspect.h>

#include "schema/node.h"
#include "schema/node_path.h"
#include "schema/node_walk.h"

QmsNode* QM_NODE_GetNextChild(const QmsNode* parent, const QmsNode* child) noexcept {
  if (parent == nullptr) return nullptr;
  return child == nullptr ? parent->firstChild : NextChild(parent, child);
}

QmsNode* QM_MOD_GetNextTopNode(const QmsModule* mod, const QmsNode* node) noexcept {
  if (mod == nullptr) return nullptr;
  if (node != nullptr && node->next != nullptr) return node->next;
  // The list whose end was reached is told by the kind of its nodes.
  uint32_t list = 0;
  if (node != nullptr) list = node->kind == QMS_NODE_NOTIFICATION ? 3 : IsOperation(node) ? 2 : 1;
  QmsNode* const heads[] = {mod->dataNodes, mod->rpcNodes, mod->notifNodes};
  while (list < std::size(heads) && heads[list] == nullptr) ++list;
  return list < std::size(heads) ? heads[list] : nullptr;
}

uint32_t QM_NODE_ScanMust(const QmsNode* node, QmMustScanFunc cb, void* arg) noexcept {
  if (node == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; node->musts != nullptr && i < node->mustCount; ++i) {
    const QmsMust* must = &node->musts[i];
    const uint32_t ret = cb(must->condition, must->errorMessage, must->errorAppTag, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static QmsNode* KeyAt(const QmsNode* list, uint32_t index) {
  for (QmsNode* child = list->firstChild; child != nullptr; child = child->next) {
    if (QM_NODE_IsKey(child) != 0 && child->keyIndex == index) return child;
  }
  return nullptr;
}

uint32_t QM_NODE_ScanKey(const QmsNode* list, QmNodeScanFunc cb, void* arg) noexcept {
  if (list == nullptr || list->kind != QMS_NODE_LIST || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; i < list->keyCount; ++i) {
    QmsNode* key = KeyAt(list, i);
    const uint32_t ret = key == nullptr ? uint32_t{QM_OK} : cb(key, QMS_TRAV_CHILD, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static uint32_t ScanText(const char* text, QmTextScanFunc cb, void* arg) {
  return text == nullptr ? uint32_t{QM_OK} : cb(text, arg);
}

static uint32_t ScanLeafListDefaults(const QmsLeafList* leafList, QmTextScanFunc cb, void* arg) {
  for (uint32_t i = 0; leafList->defaults != nullptr && i < leafList->defaultCount; ++i) {
    const uint32_t ret = ScanText(leafList->defaults[i], cb, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_NODE_ScanDefault(const QmsNode* node, QmTextScanFunc cb, void* arg) noexcept {
  if (node == nullptr || cb == nullptr) return QM_INVALID;
  if (node->payload == nullptr) return QM_OK;
  if (node->kind == QMS_NODE_CHOICE) {
    return ScanText(static_cast<const QmsChoice*>(node->payload)->defaultCase, cb, arg);
  }
  if (node->kind == QMS_NODE_LEAF_LIST) {
    return ScanLeafListDefaults(static_cast<const QmsLeafList*>(node->payload), cb, arg);
  }
  return ScanText(QM_NODE_GetDefaultValueStr(node), cb, arg);
}

uint32_t QM_NODE_GetStatus(const QmsNode* node) noexcept {
  if (node == nullptr) return QM_STATUS_CURRENT;
  if (HasFlag(node, QMS_NODE_OBSOLETE)) return QM_STATUS_OBSOLETE;
  return HasFlag(node, QMS_NODE_DEPRECATED) ? QM_STATUS_DEPRECATED : QM_STATUS_CURRENT;
}

uint32_t QM_NODE_GetPath(const QmsNode* node, char* buffer, uint32_t size) noexcept {
  if (node == nullptr || buffer == nullptr) return QM_INVALID;
  if (size == 0) return QM_NO_MEMORY;
  buffer[0] = '\0';
  uint32_t length = 0;
  // The printer only reads; that it takes a node that may be changed is of an older age.
  return QMS_NODE_PrintJsonPathRecursive(const_cast<QmsNode*>(node), buffer, size, &length);
}
