// SPDX-License-Identifier: BSD-3-Clause
// The elements that a run added as defaults. They are marked in libxml2's line
// number, so that the mark costs nothing and is seen by whoever walks the tree;
// the price is that an element which a parser found on that line reads as added
// too. Such an element is treated like a default, but nothing is freed twice for
// it: only listed elements have an entry, and an entry goes with its element.
// Listed are the topmost added elements; what hangs below them goes with them.
#include "data/default_list.h"

#include "context/memory.h"
#include "context/xml_tree.h"

struct QmdDefaultTable {
  uint32_t mask;
  QmDefaultNodeEntry* places[1];  // mask + 1 of them, the latest entry first in each
};

// As many entries are searched.
constexpr uint32_t kShortList = 16;
constexpr uint32_t kMostPlaces = 1u << 24;

void InitDefaultNodeList(QmDefaultNodeEntry* head) {
  head->next = head;
  head->prev = head;
  head->node = nullptr;
  head->table = nullptr;
}

static QmDefaultNodeEntry** PlaceOf(QmdDefaultTable* table, const xmlNode* node) {
  const auto number = reinterpret_cast<uintptr_t>(node) >> 4;
  return &table->places[static_cast<uint32_t>(number ^ number >> 15) & table->mask];
}

static void PutIntoTable(QmdDefaultTable* table, QmDefaultNodeEntry* entry) {
  QmDefaultNodeEntry** place = PlaceOf(table, entry->node);
  entry->chain = *place;
  *place = entry;
}

static void DropTable(QmDefaultNodeEntry* head) {
  g_qmMemFreeFunc(head->table);
  head->table = nullptr;
}

// Without memory there is none.
static void MakeTable(QmDefaultNodeEntry* head) {
  size_t count = 0;
  for (const QmDefaultNodeEntry* entry = head->next; entry != head; entry = entry->next) ++count;
  uint32_t places = kShortList;
  while (places < count && places < kMostPlaces) places *= 2;
  const size_t size = sizeof(QmdDefaultTable) + (places - 1) * sizeof(QmDefaultNodeEntry*);
  head->table = static_cast<QmdDefaultTable*>(AllocZeroed(size));
  if (head->table == nullptr) return;
  head->table->mask = places - 1;
  for (QmDefaultNodeEntry* entry = head->prev; entry != head; entry = entry->prev) {
    PutIntoTable(head->table, entry);
  }
}

static QmDefaultNodeEntry* SearchRing(QmDefaultNodeEntry* head, const xmlNode* node, uint32_t most,
                                      bool* isWhole) {
  QmDefaultNodeEntry* entry = head->next;
  while (entry != head && entry->node != node && most-- > 0) entry = entry->next;
  *isWhole = entry == head;
  return entry->node == node ? entry : nullptr;
}

static QmDefaultNodeEntry* FindEntry(QmDefaultNodeEntry* head, const xmlNode* node) {
  if (head->table == nullptr) {
    bool isWhole = false;
    QmDefaultNodeEntry* entry = SearchRing(head, node, kShortList, &isWhole);
    if (entry != nullptr || isWhole) return entry;
    MakeTable(head);
    if (head->table == nullptr) return SearchRing(head, node, UINT32_MAX, &isWhole);
  }
  QmDefaultNodeEntry* entry = *PlaceOf(head->table, node);
  while (entry != nullptr && entry->node != node) entry = entry->chain;
  return entry;
}

static void TakeOutOfTable(QmdDefaultTable* table, const QmDefaultNodeEntry* entry) {
  QmDefaultNodeEntry** place = PlaceOf(table, entry->node);
  while (*place != entry) place = &(*place)->chain;
  *place = entry->chain;
}

// The ring alone tells whether there are entries: a sentinel that is zeroed and linked
// to itself is an empty list too.
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
  if (head->table != nullptr) PutIntoTable(head->table, entry);
  entry->next = head->next;
  entry->prev = head;
  head->next->prev = entry;
  head->next = entry;
  return QM_OK;
}

// Takes an entry out and frees it; gives its element.
static xmlNode* DropEntry(QmDefaultNodeEntry* head, QmDefaultNodeEntry* entry) {
  xmlNode* node = entry->node;
  if (head->table != nullptr) TakeOutOfTable(head->table, entry);
  entry->prev->next = entry->next;
  entry->next->prev = entry->prev;
  g_qmMemFreeFunc(entry);
  if (IsEmpty(head)) DropTable(head);
  return node;
}

void QMD_PAS_RemoveDefaultNodeFromList(QmDefaultNodeEntry* head, xmlNode* node) {
  if (IsEmpty(head)) return;
  QmDefaultNodeEntry* entry = FindEntry(head, node);
  if (entry != nullptr) static_cast<void>(DropEntry(head, entry));
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
  DropTable(head);
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
