// SPDX-License-Identifier: BSD-3-Clause
//
// Children by name for the evaluator. The first long search among the children of an
// element only notes that it was long; the second makes a table of their names. The walk
// over a tree goes depth first, so only the elements above the present one are of interest
// at one moment: when there are many tables, all are dropped, and those that are still
// asked are made again. Whoever edits the tree during a run tells the tables, which stay
// right; dropping one at each removal would bring back the quadratic cost where removals
// are many.
#include "xpath/child_lookup.h"

#include "context/memory.h"
#include "context/xml_tree.h"
#include "xpath/named_children.h"

namespace {
constexpr uint32_t kLongSearch = 64;  // shorter ones cost less than a table
constexpr uint32_t kMostParents = 256;
constinit thread_local ChildLookup* t_active = nullptr;
}  // namespace

ChildLookup::ChildLookup() : outer_(t_active) {
  t_active = this;
}

ChildLookup::~ChildLookup() {
  DropParents();
  t_active = outer_;
}

ChildLookup* ActiveChildLookup() {
  return t_active;
}

void NoteChildAdded(xmlNode* child) {
  if (t_active != nullptr) t_active->ChildAdded(child);
}

void NoteChildLeaves(xmlNode* child) {
  if (t_active != nullptr) t_active->ChildLeaves(child);
}

// The table of an entry; NULL when there is none.
static QmdNamedChildren* TableOf(const QmPointerEntry* entry) {
  return entry == nullptr ? nullptr : static_cast<QmdNamedChildren*>(entry->value);
}

static void DropTable(QmPointerEntry* entry) {
  FreeNamedChildren(TableOf(entry));
  if (entry != nullptr) entry->value = nullptr;
}

void ChildLookup::DropParents() {
  for (uint32_t i = 0; i < parents_.capacity; ++i) DropTable(&parents_.slots[i]);
  FreePointerMap(&parents_);
}

bool ChildLookup::Knows(const xmlNode* parent) const {
  return TableOf(FindPointer(&parents_, parent)) != nullptr;
}

xmlNode* ChildLookup::SearchAndNote(const xmlNode* parent, const char* name) {
  uint32_t passed = 0;
  xmlNode* child = SearchSiblings(parent->children, name, UINT32_MAX, &passed);
  if (passed < kLongSearch) return child;
  if (parents_.count >= kMostParents) DropParents();
  static_cast<void>(AddPointer(&parents_, parent, nullptr));  // or the next search is as long
  return child;
}

xmlNode* ChildLookup::FindChild(const xmlNode* parent, const char* name) {
  QmPointerEntry* entry = FindPointer(&parents_, parent);
  if (entry == nullptr) return SearchAndNote(parent, name);
  xmlNode* child = nullptr;
  if (entry->value != nullptr && FindNamedChild(TableOf(entry), name, &child)) return child;
  DropTable(entry);
  entry->value = NewNamedChildren(parent);
  if (entry->value != nullptr && FindNamedChild(TableOf(entry), name, &child)) return child;
  uint32_t passed = 0;
  return SearchSiblings(parent->children, name, UINT32_MAX, &passed);
}

void ChildLookup::ChildAdded(xmlNode* child) {
  QmPointerEntry* entry = FindPointer(&parents_, child->parent);
  if (TableOf(entry) != nullptr && !NoteNamedChildAdded(TableOf(entry), child)) DropTable(entry);
}

// Tables of what goes with the child are dropped, since another element may get its place
// in memory.
void ChildLookup::ChildLeaves(xmlNode* child) {
  NumbersLeave(child);
  if (parents_.count == 0) return;
  QmdNamedChildren* table = TableOf(FindPointer(&parents_, child->parent));
  if (table != nullptr) NoteNamedChildLeaves(table, child);
  for (xmlNode* node = child; node != nullptr; node = NextElement(child, node)) {
    DropTable(FindPointer(&parents_, node));
  }
}

xmlNode* QMD_PAS_FindChildDataNode(const xmlNode* element, const char* name) {
  if (element == nullptr || name == nullptr) return nullptr;
  if (element->type != XML_ELEMENT_NODE && element->type != XML_DOCUMENT_NODE) return nullptr;
  if (t_active != nullptr) return t_active->FindChild(element, name);
  uint32_t passed = 0;
  return SearchSiblings(element->children, name, UINT32_MAX, &passed);
}

// The numbers, the oldest replaced first.

const QmdKeptNumber* ChildLookup::FindNumber(const xmlNode* element) const {
  for (size_t i = 0; i < usedNumbers_; ++i) {
    if (numbers_[i].element == element) return &numbers_[i];
  }
  return nullptr;
}

void ChildLookup::KeepNumber(const xmlNode* element, double number) {
  if (usedNumbers_ < kNumberSlots) {
    numbers_[usedNumbers_++] = {element, number};
    return;
  }
  numbers_[oldestNumber_] = {element, number};
  oldestNumber_ = oldestNumber_ + 1 < kNumberSlots ? oldestNumber_ + 1 : 0;
}

bool FindKeptNumber(const xmlNode* element, double* number) {
  const QmdKeptNumber* kept = t_active == nullptr ? nullptr : t_active->FindNumber(element);
  if (kept != nullptr) *number = kept->number;
  return kept != nullptr;
}

void KeepNumber(const xmlNode* element, double number) {
  if (t_active != nullptr) t_active->KeepNumber(element, number);
}

static bool LiesIn(const xmlNode* node, const xmlNode* ancestor) {
  while (node != nullptr && node != ancestor) node = node->parent;
  return node != nullptr;
}

void ChildLookup::NumbersLeave(const xmlNode* child) {
  for (size_t i = 0; i < usedNumbers_; ++i) {
    if (LiesIn(numbers_[i].element, child)) numbers_[i].element = nullptr;
  }
}
