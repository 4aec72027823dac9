// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>

// Conditions name children ("../limit"), and each lookup goes through the
// siblings from the first one. A list whose 100,000 entries all ask their parent
// for one leaf would make a run quadratic, so a run keeps the answers of long
// searches. They belong to the run and its thread; nothing outlives the run.

// One kept answer. A free slot has no parent.
struct QmdChildAnswer {
  const xmlNode* parent;
  xmlNode* child;  // NULL: there is no such child
  char name[65];   // longer names are not kept
};

// The answers of one run, the oldest replaced first.
class ChildLookup {
 public:
  ChildLookup();
  ~ChildLookup();
  ChildLookup(const ChildLookup&) = delete;
  ChildLookup& operator=(const ChildLookup&) = delete;

  // The kept answer, or NULL when there is none.
  const QmdChildAnswer* Find(const xmlNode* parent, const char* name) const;
  void Keep(const xmlNode* parent, const char* name, xmlNode* child);
  // `child` was added under its parent, or is about to leave it for good.
  void ChildAdded(const xmlNode* child);
  void ChildLeaves(const xmlNode* child);

 private:
  static constexpr size_t kSlots = 128;
  QmdChildAnswer answers_[kSlots];
  size_t used_;
  size_t next_;
  ChildLookup* outer_;  // of a run that this one interrupts
};

// The lookup of the run that the calling thread is in; NULL outside of one.
ChildLookup* ActiveChildLookup();
// Tell it, if there is one.
void NoteChildAdded(const xmlNode* child);
void NoteChildLeaves(const xmlNode* child);
