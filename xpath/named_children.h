// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

// The first child of each name of one element, for elements that many conditions look
// for children in. Names are compared as they are written, without prefix.

struct QmdNamedChild {
  uint32_t hash;     // of the name
  uint32_t isTaken;  // 0: a free slot
  xmlNode* first;    // NULL: edits leave it open
};

struct QmdNamedChildren {
  QmdNamedChild* slots;  // a hash table, owned
  uint32_t capacity;     // a power of two
  uint32_t count;
};

// From `node` on, the first sibling of that name; counts the siblings passed. Ends with
// NULL after `most` of them.
xmlNode* SearchSiblings(xmlNode* node, const char* name, uint32_t most, uint32_t* passed);

// All names of the children of `parent`; NULL without memory.
QmdNamedChildren* NewNamedChildren(const xmlNode* parent);
// NULL is accepted.
void FreeNamedChildren(QmdNamedChildren* children);

// Sets *child to the first of that name, NULL when there is none. False when it is not
// known any more: the record is to be made anew.
bool FindNamedChild(const QmdNamedChildren* children, const char* name, xmlNode** child);

// A child was added; false when it cannot be noted, and the record is of no more use. A
// child is about to leave.
bool NoteNamedChildAdded(QmdNamedChildren* children, xmlNode* child);
void NoteNamedChildLeaves(QmdNamedChildren* children, const xmlNode* child);
