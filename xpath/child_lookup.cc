// SPDX-License-Identifier: BSD-3-Clause
//
// Children by name for the evaluator, with the answers of long searches kept for
// the time of a run. The walk over a tree goes depth first, so only the long
// sibling chains above the present element are of interest at one moment: a
// small table serves. Whoever edits the tree during a run tells the table, which
// keeps every answer that the edit cannot have changed; dropping them all at each
// removal would bring back the quadratic cost where removals are many.
#include "xpath/child_lookup.h"

#include <cstring>

#include "context/array.h"
#include "context/memory.h"
#include "context/xml_tree.h"
#include "platform/string.h"

namespace {
constexpr uint32_t kLongSearch = 64;  // shorter ones cost less than keeping them
constinit thread_local ChildLookup* t_active = nullptr;
}  // namespace

ChildLookup::ChildLookup()
    : answers_(firstAnswers_),
      capacity_(kFirstSlots),
      used_(0),
      oldest_(0),
      usedNumbers_(0),
      oldestNumber_(0),
      outer_(t_active) {
  t_active = this;
}

ChildLookup::~ChildLookup() {
  if (answers_ != firstAnswers_) g_qmMemFreeFunc(answers_);
  t_active = outer_;
}

ChildLookup* ActiveChildLookup() {
  return t_active;
}

void NoteChildAdded(const xmlNode* child) {
  if (t_active != nullptr) t_active->ChildAdded(child);
}

void NoteChildLeaves(const xmlNode* child) {
  if (t_active != nullptr) t_active->ChildLeaves(child);
}

const QmdChildAnswer* ChildLookup::Find(const xmlNode* parent, const char* name) const {
  for (size_t i = 0; i < used_; ++i) {
    const QmdChildAnswer& answer = answers_[i];
    if (answer.parent == parent && RTK_StrCmp(answer.name, name) == 0) return &answer;
  }
  return nullptr;
}

bool ChildLookup::Grow() {
  QmdChildAnswer* grown = nullptr;
  const size_t capacity = capacity_ * 2;
  if (capacity > kMaxSlots || NewArrayOf(&grown, static_cast<uint32_t>(capacity)) != QM_OK) {
    return false;
  }
  std::memcpy(grown, answers_, used_ * sizeof(QmdChildAnswer));
  if (answers_ != firstAnswers_) g_qmMemFreeFunc(answers_);
  answers_ = grown;
  capacity_ = capacity;
  return true;
}

// The slot to write to in a table of `capacity` slots.
static size_t TakeSlot(size_t capacity, size_t* used, size_t* oldest) {
  if (*used < capacity) return (*used)++;
  const size_t slot = *oldest;
  *oldest = slot + 1 < capacity ? slot + 1 : 0;
  return slot;
}

void ChildLookup::Keep(const xmlNode* parent, const char* name, xmlNode* child) {
  const size_t length = RTK_StrLen(name);
  if (length >= sizeof answers_[0].name) return;
  if (used_ == capacity_) static_cast<void>(Grow());
  QmdChildAnswer& answer = answers_[TakeSlot(capacity_, &used_, &oldest_)];
  answer.parent = parent;
  answer.child = child;
  std::memcpy(answer.name, name, length + 1);
}

const QmdKeptNumber* ChildLookup::FindNumber(const xmlNode* element) const {
  for (size_t i = 0; i < usedNumbers_; ++i) {
    if (numbers_[i].element == element) return &numbers_[i];
  }
  return nullptr;
}

void ChildLookup::KeepNumber(const xmlNode* element, double number) {
  numbers_[TakeSlot(kNumberSlots, &usedNumbers_, &oldestNumber_)] = {element, number};
}

bool FindKeptNumber(const xmlNode* element, double* number) {
  const QmdKeptNumber* kept = t_active == nullptr ? nullptr : t_active->FindNumber(element);
  if (kept != nullptr) *number = kept->number;
  return kept != nullptr;
}

void KeepNumber(const xmlNode* element, double number) {
  if (t_active != nullptr) t_active->KeepNumber(element, number);
}

void ChildLookup::ChildAdded(const xmlNode* child) {
  for (size_t i = 0; i < used_; ++i) {
    if (answers_[i].parent == child->parent &&
        RTK_StrCmp(answers_[i].name, ElementName(child)) == 0) {
      answers_[i].parent = nullptr;
    }
  }
}

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

// From `node` on, the first sibling of that name; counts the siblings passed.
static xmlNode* SearchSiblings(xmlNode* node, const char* name, uint32_t* passed) {
  while (node != nullptr && !(CanBeStep(node) && RTK_StrCmp(XmlText(node->name), name) == 0)) {
    node = node->next;
    ++*passed;
  }
  return node;
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

// The first child of its name is followed by the next one of that name, wherever
// it stands; answers about parents that go with it are dropped, since another
// element may get their place in memory.
void ChildLookup::ChildLeaves(const xmlNode* child) {
  uint32_t passed = 0;
  NumbersLeave(child);
  for (size_t i = 0; i < used_; ++i) {
    QmdChildAnswer& answer = answers_[i];
    if (answer.parent == nullptr) continue;
    if (answer.child == child) {
      answer.child = SearchSiblings(child->next, answer.name, &passed);
    } else if (LiesIn(answer.parent, child)) {
      answer.parent = nullptr;
    }
  }
}

xmlNode* QMD_PAS_FindChildDataNode(const xmlNode* element, const char* name) {
  if (element == nullptr || name == nullptr) return nullptr;
  if (element->type != XML_ELEMENT_NODE && element->type != XML_DOCUMENT_NODE) return nullptr;
  ChildLookup* lookup = ActiveChildLookup();
  const QmdChildAnswer* kept = lookup == nullptr ? nullptr : lookup->Find(element, name);
  if (kept != nullptr) return kept->child;
  uint32_t passed = 0;
  xmlNode* child = SearchSiblings(element->children, name, &passed);
  if (lookup != nullptr && passed >= kLongSearch) lookup->Keep(element, name, child);
  return child;
}
