// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

#include "context/internal.h"
#include "context/pointer_map.h"

// Conditions name children ("../limit"), and each lookup goes through the
// siblings from the first one. A list whose 100,000 entries all ask their parent
// for one leaf would make a run quadratic, so a run keeps the names of the children
// that long searches went through, and the numbers that long texts stand for. They
// belong to the run and its thread; nothing outlives the run.

// The number of one element's text. A free slot has no element.
struct QmdKeptNumber {
  const xmlNode* element;
  double number;
};

// What one run keeps. Without memory it searches.
class ChildLookup {
 public:
  ChildLookup();
  ~ChildLookup();
  ChildLookup(const ChildLookup&) = delete;
  ChildLookup& operator=(const ChildLookup&) = delete;

  // The first child of that name, or NULL.
  xmlNode* FindChild(const xmlNode* parent, const char* name);
  // Whether that is answered without a search.
  bool Knows(const xmlNode* parent) const;
  // The number of an element's text, or NULL when none is kept.
  const QmdKeptNumber* FindNumber(const xmlNode* element) const;
  void KeepNumber(const xmlNode* element, double number);
  // `child` was added under its parent, or is about to leave it for good.
  void ChildAdded(xmlNode* child);
  void ChildLeaves(xmlNode* child);

 private:
  static constexpr size_t kNumberSlots = 128;
  xmlNode* SearchAndNote(const xmlNode* parent, const char* name);
  void DropParents();
  void NumbersLeave(const xmlNode* child);

  QmPointerMap parents_ = {};  // QmdNamedChildren by parent, owned; NULL: searched once so far
  QmdKeptNumber numbers_[kNumberSlots];
  size_t usedNumbers_ = 0;
  size_t oldestNumber_ = 0;  // once there are that many
  ChildLookup* outer_;       // of a run that this one interrupts
};

// The lookup of the run that the calling thread is in; NULL outside of one.
ChildLookup* ActiveChildLookup();
// Tell it, if there is one.
void NoteChildAdded(xmlNode* child);
void NoteChildLeaves(xmlNode* child);

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
