// SPDX-License-Identifier: BSD-3-Clause
// The elements that a run added as defaults. They are marked in libxml2's line
// number, so that the mark costs nothing and is seen by whoever walks the tree;
// the price is that an element which a parser found on that line reads as added
// too. Such an element is treated like a default, but nothing is freed twice for
// it: only listed elements have an entry, and an entry goes with its element.
// Listed are the topmost added elements; what hangs below them goes with them.
#include "data/default_list.h"

#include <functional>

#include "context/memory.h"
#include "context/xml_tree.h"

static int32_t CompareNodes(const void* a, const void* b) {
  if (a == b) return 0;
  return std::less<const void*>{}(a, b) ? -1 : 1;
}

constexpr RtkAvl3TreeInfo kDefaultIndexInfo = {CompareNodes, offsetof(QmDefaultNodeEntry, node),
                                               offsetof(QmDefaultNodeEntry, link)};

void InitDefaultNodeList(QmDefaultNodeEntry* head) {
  head->next = head;
  head->prev = head;
  head->node = nullptr;
}

// The ring alone tells whether there are entries, and the index is made with the first
// one: a sentinel that is zeroed and linked to itself is an empty list too.
static bool IsEmpty(const QmDefaultNodeEntry* head) {
  return head->next == head;
}

uint32_t QMD_PAS_IsDefaultAddNode(const xmlNode* node) {
  return IsElement(node) && node->line == kQmdDefaultLine ? 1 : 0;
}

void QMD_PAS_ClearDefaultNodeTreeFlag(xmlNode* node) {
  xmlNode* cur = node;
  while (cur != nullptr) {
    cur->line = 0;
    if (IsElement(cur) && cur->children != nullptr) {
      cur = cur->children;
      continue;
    }
    while (cur != node && cur->next == nullptr) cur = cur->parent;
    cur = cur == node ? nullptr : cur->next;
  }
}

uint32_t QMD_PAS_AddDefaultNodeToList(QmDefaultNodeEntry* head, xmlNode* node) {
  if (QMD_PAS_IsDefaultAddNode(node) == 0 || QMD_PAS_IsDefaultAddNode(node->parent) != 0) {
    return QM_OK;
  }
  auto* entry = NewRecord<QmDefaultNodeEntry>();
  if (entry == nullptr) return QM_NO_MEMORY;
  entry->node = node;
  if (IsEmpty(head)) RTK_AVL3_Init(&head->index, &kDefaultIndexInfo);
  RTK_AVL3_InitLink(&entry->link);
  static_cast<void>(RTK_AVL3_Insert_Or_Find(&head->index, entry, nullptr));
  entry->next = head->next;
  entry->prev = head;
  head->next->prev = entry;
  head->next = entry;
  return QM_OK;
}

// Takes an entry out and frees it; gives its element.
static xmlNode* DropEntry(QmDefaultNodeEntry* head, QmDefaultNodeEntry* entry) {
  xmlNode* node = entry->node;
  RTK_AVL3_Delete(&head->index, entry);
  entry->prev->next = entry->next;
  entry->next->prev = entry->prev;
  g_qmMemFreeFunc(entry);
  return node;
}

void QMD_PAS_RemoveDefaultNodeFromList(QmDefaultNodeEntry* head, xmlNode* node) {
  if (IsEmpty(head)) return;
  void* entry = RTK_AVL3_Find(&head->index, node);
  if (entry != nullptr) static_cast<void>(DropEntry(head, static_cast<QmDefaultNodeEntry*>(entry)));
}

// Below an element that only reads as added there may be listed ones, whose
// parent is the client's; all entries of the subtree go before it is freed.
void QMD_PAS_DeleteDefaultAddNode(QmCheckAux* aux, xmlNode* node) {
  for (xmlNode* cur = node; cur != nullptr; cur = NextElement(node, cur)) {
    QMD_PAS_RemoveDefaultNodeFromList(&aux->defaultList, cur);
  }
  RemoveNode(node);
}

void QMD_PAS_ClearDefaultNodeList(QmCheckAux* aux, uint32_t keep) {
  QmDefaultNodeEntry* head = &aux->defaultList;
  while (!IsEmpty(head)) {
    xmlNode* node = DropEntry(head, head->next);
    if (keep != 1) {
      RemoveNode(node);
      continue;
    }
    QMD_PAS_ClearDefaultNodeTreeFlag(node);
    if (aux->defaultNodeCallback != nullptr) aux->defaultNodeCallback(node, aux->callbackArg);
  }
}
