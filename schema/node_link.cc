// SPDX-License-Identifier: BSD-3-Clause
// Linking of schema nodes. A node hangs either in the child list of a parent,
// whose first and last child are kept, or in one of the four top-level lists of
// its module, of which only the head is kept.
#include "schema/node_link.h"

#include <qmodel/error.h>

#include "schema/module_nodes.h"
#include "schema/node.h"
#include "schema/node_walk.h"

static void SetLinks(QmsNode* node, QmsNode* parent, QmsNode* prev, QmsNode* next) {
  node->parent = parent;
  node->prev = prev;
  node->next = next;
}

uint32_t QMS_NODE_AddChild(QmsNode* parent, QmsNode* node) {
  if (parent == nullptr || node == nullptr) return QM_INVALID;
  if (IsCoupledAugment(parent)) return QM_INVALID;
  QmsNode* last = parent->lastChild;
  SetLinks(node, parent, last, nullptr);
  if (last == nullptr) {
    parent->firstChild = node;
  } else {
    last->next = node;
  }
  parent->lastChild = node;
  return QM_OK;
}

uint32_t QMS_NODE_AddAsFirstChild(QmsNode* parent, QmsNode* node) {
  if (parent == nullptr || node == nullptr) return QM_INVALID;
  if (IsCoupledAugment(parent)) return QM_INVALID;
  QmsNode* first = parent->firstChild;
  SetLinks(node, parent, nullptr, first);
  if (first == nullptr) {
    parent->lastChild = node;
  } else {
    first->prev = node;
  }
  parent->firstChild = node;
  return QM_OK;
}

uint32_t QMS_NODE_AddSibling(QmsNode* node, QmsNode* newNode) {
  if (node == nullptr || newNode == nullptr) return QM_INVALID;
  QmsNode* last = QMS_NODE_GetLastSibling(node);
  SetLinks(newNode, node->parent, last, nullptr);
  last->next = newNode;
  if (node->parent != nullptr) node->parent->lastChild = newNode;
  return QM_OK;
}

uint32_t QMS_NODE_LinkTreeNode(QmsNode* a, QmsNode* node, uint32_t how) {
  if (how == QMS_TRAV_CHILD) return QMS_NODE_AddChild(a, node);
  if (how == QMS_TRAV_SIBLING) return QMS_NODE_AddSibling(a, node);
  return QM_INVALID;
}

uint32_t QMS_NODE_Unlink(QmsNode* node) {
  if (node == nullptr) return QM_INVALID;
  QmsNode* parent = node->parent;
  if (parent == nullptr) {
    QM_NODE_CalibrateTopNodeAddress(node, node->next);
  } else {
    if (parent->firstChild == node) parent->firstChild = node->next;
    if (parent->lastChild == node) parent->lastChild = node->prev;
  }
  if (node->prev != nullptr) node->prev->next = node->next;
  if (node->next != nullptr) node->next->prev = node->prev;
  SetLinks(node, nullptr, nullptr, nullptr);
  return QM_OK;
}

void QM_NODE_CalibrateTopNodeAddress(QmsNode* node, QmsNode* next) {
  if (node == nullptr || node->module == nullptr) return;
  QmsModule* module = node->module;
  for (const QmsTopList& list : kTopLists) {
    if (module->*list.head == node) module->*list.head = next;
    if (module->*list.tail == node) module->*list.tail = node->prev;
  }
}

QmsNode* QMS_NODE_GetLastSibling(QmsNode* node) {
  if (node == nullptr) return nullptr;
  if (node->parent != nullptr && node->parent->lastChild != nullptr) return node->parent->lastChild;
  while (node->next != nullptr) node = node->next;
  return node;
}

uint32_t QMS_NODE_IsChildNode(const QmsNode* parent, const QmsNode* node) {
  if (parent == nullptr || node == nullptr) return 0;
  const QmsNode* child = parent->firstChild;
  while (child != nullptr && child != node) child = NextChild(parent, child);
  return child != nullptr ? 1 : 0;
}
