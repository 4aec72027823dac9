// SPDX-License-Identifier: BSD-3-Clause
//
// A table by the hash of the name. The name itself is read from the child that is first,
// so a slot whose child is gone, and the next of whose name is not near, only tells that
// some name of that hash was there: who asks for it starts again with a new table. That
// is rare, since what is removed is mostly one entry after the other.
#include "xpath/named_children.h"

#include <qmodel/error.h>

#include "context/array.h"
#include "context/memory.h"
#include "context/xml_tree.h"
#include "platform/string.h"

constexpr uint32_t kFirstSlots = 64;
constexpr uint32_t kMostSlots = 1u << 28;
constexpr uint32_t kNearSiblings = 64;

// Only what evaluation may step to: declarations of a document have no names in
// the sense of a condition, and another layout.
static bool CanBeStep(const xmlNode* node) {
  switch (node->type) {
    case XML_ELEMENT_NODE:
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
      return node->name != nullptr;
    default:
      return false;
  }
}

// Most names differ in the first character already.
static bool IsNamed(const xmlNode* node, const char* name) {
  return CanBeStep(node) && *XmlText(node->name) == *name &&
         RTK_StrCmp(XmlText(node->name), name) == 0;
}

xmlNode* SearchSiblings(xmlNode* node, const char* name, uint32_t most, uint32_t* passed) {
  *passed = 0;
  while (node != nullptr && !IsNamed(node, name)) {
    if (++*passed == most) return nullptr;
    node = node->next;
  }
  return node;
}

static uint32_t HashOf(const char* name) {
  uint32_t hash = 2166136261u;
  for (; *name != '\0'; ++name) hash = (hash ^ static_cast<unsigned char>(*name)) * 16777619u;
  return hash;
}

static uint32_t SlotAfter(const QmdNamedChildren* children, uint32_t slot) {
  return (slot + 1) & (children->capacity - 1);
}

// The slot of a name, the one that it may have been in, or the free one where it belongs.
static QmdNamedChild* SlotOf(const QmdNamedChildren* children, uint32_t hash, const char* name) {
  uint32_t slot = hash & (children->capacity - 1);
  for (;; slot = SlotAfter(children, slot)) {
    QmdNamedChild* own = &children->slots[slot];
    if (own->isTaken == 0) return own;
    if (own->hash == hash && (own->first == nullptr || IsNamed(own->first, name))) return own;
  }
}

static bool MakeRoom(QmdNamedChildren* children) {
  if (children->count < children->capacity / 2) return true;
  QmdNamedChildren grown = {nullptr, children->capacity * 2, children->count};
  if (grown.capacity > kMostSlots || NewArrayOf(&grown.slots, grown.capacity) != QM_OK) {
    return false;
  }
  for (uint32_t i = 0; i < children->capacity; ++i) {
    const QmdNamedChild own = children->slots[i];
    if (own.isTaken == 0) continue;
    uint32_t slot = own.hash & (grown.capacity - 1);
    while (grown.slots[slot].isTaken != 0) slot = SlotAfter(&grown, slot);
    grown.slots[slot] = own;
  }
  g_qmMemFreeFunc(children->slots);
  *children = grown;
  return true;
}

static bool AddName(QmdNamedChildren* children, xmlNode* child) {
  const char* name = XmlText(child->name);
  const uint32_t hash = HashOf(name);
  if (!MakeRoom(children)) return false;
  QmdNamedChild* slot = SlotOf(children, hash, name);
  if (slot->isTaken != 0) return true;
  *slot = {hash, 1, child};
  ++children->count;
  return true;
}

// Entries of a list follow each other, mostly with one copy of their name.
static bool AddNames(QmdNamedChildren* children, const xmlNode* parent) {
  const xmlChar* before = nullptr;
  for (xmlNode* child = parent->children; child != nullptr; child = child->next) {
    if (!CanBeStep(child) || child->name == before) continue;
    before = child->name;
    if (!AddName(children, child)) return false;
  }
  return true;
}

QmdNamedChildren* NewNamedChildren(const xmlNode* parent) {
  auto* children = NewRecord<QmdNamedChildren>();
  if (children == nullptr) return nullptr;
  children->capacity = kFirstSlots;
  if (NewArrayOf(&children->slots, kFirstSlots) == QM_OK && AddNames(children, parent)) {
    return children;
  }
  FreeNamedChildren(children);
  return nullptr;
}

void FreeNamedChildren(QmdNamedChildren* children) {
  if (children == nullptr) return;
  g_qmMemFreeFunc(children->slots);
  g_qmMemFreeFunc(children);
}

bool FindNamedChild(const QmdNamedChildren* children, const char* name, xmlNode** child) {
  const QmdNamedChild* slot = SlotOf(children, HashOf(name), name);
  *child = slot->first;
  return slot->isTaken == 0 || slot->first != nullptr;
}

// It may stand before the first one.
bool NoteNamedChildAdded(QmdNamedChildren* children, xmlNode* child) {
  const char* name = XmlText(child->name);
  QmdNamedChild* slot = SlotOf(children, HashOf(name), name);
  if (slot->isTaken == 0) return AddName(children, child);
  slot->first = nullptr;
  return true;
}

// By the child and not by its name, since other names may have the same hash.
void NoteNamedChildLeaves(QmdNamedChildren* children, const xmlNode* child) {
  const char* name = XmlText(child->name);
  uint32_t passed = 0;
  uint32_t slot = HashOf(name) & (children->capacity - 1);
  for (; children->slots[slot].isTaken != 0; slot = SlotAfter(children, slot)) {
    xmlNode** first = &children->slots[slot].first;
    if (*first == child) *first = SearchSiblings(child->next, name, kNearSiblings, &passed);
  }
}
