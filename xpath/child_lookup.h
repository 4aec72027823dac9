// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// Conditions name children ("../limit"), and each lookup goes through the
// siblings from the first one. A list whose 100,000 entries all ask their parent
// for one leaf would make a run quadratic, so a run keeps the answers of long
// searches, and the numbers that long texts stand for. They belong to the run and
// its thread; nothing outlives the run.

// One kept answer. A free slot has no parent.
struct QmdChildAnswer {
  const xmlNode* parent;
  xmlNode* child;           // NULL: there is no such child
  char name[kQmsNameSize];  // longer names are not kept
};

// The number of one element's text. A free slot has no element.
struct QmdKeptNumber {
  const xmlNode* element;
  double number;
};

// The answers of one run, the oldest replaced first. Their table grows with the
// number of children that conditions ask for; without memory it stays as it is.
class ChildLookup {
 public:
  ChildLookup();
  ~ChildLookup();
  ChildLookup(const ChildLookup&) = delete;
  ChildLookup& operator=(const ChildLookup&) = delete;

  // The kept answer, or NULL when there is none.
  const QmdChildAnswer* Find(const xmlNode* parent, const char* name) const;
  void Keep(const xmlNode* parent, const char* name, xmlNode* child);
  // The same for numbers.
  const QmdKeptNumber* FindNumber(const xmlNode* element) const;
  void KeepNumber(const xmlNode* element, double number);
  // `child` was added under its parent, or is about to leave it for good.
  void ChildAdded(const xmlNode* child);
  void ChildLeaves(const xmlNode* child);

 private:
  static constexpr size_t kFirstSlots = 128;
  static constexpr size_t kMaxSlots = 1024;
  static constexpr size_t kNumberSlots = 128;
  bool Grow();
  void NumbersLeave(const xmlNode* child);

  QmdChildAnswer firstAnswers_[kFirstSlots];
  QmdChildAnswer* answers_;  // firstAnswers_, or a block of its own
  size_t capacity_;
  size_t used_;
  size_t oldest_;  // once the table is full
  QmdKeptNumber numbers_[kNumberSlots];
  size_t usedNumbers_;
  size_t oldestNumber_;
  ChildLookup* outer_;  // of a run that this one interrupts
};

// The lookup of the run that the calling thread is in; NULL outside of one.
ChildLookup* ActiveChildLookup();
// Tell it, if there is one.
void NoteChildAdded(const xmlNode* child);
void NoteChildLeaves(const xmlNode* child);

// A run keeps the numbers that long texts stand for: a hundred thousand entries may
// all compare themselves with one leaf of megabytes. False when none is kept; outside
// of a run none is.
bool FindKeptNumber(const xmlNode* element, double* number);
void KeepNumber(const xmlNode* element, double number);

QM_BEGIN_INTERNAL_DECLS

// The first child of an element or a document that has that name, prefixes and namespaces
// not looked at; NULL when there is none, and for any other node.
xmlNode* QMD_PAS_FindChildDataNode(const xmlNode* element, const char* name);

QM_END_INTERNAL_DECLS
