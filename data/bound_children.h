// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include "data/run_index.h"

// What is known of the child elements of one element, the present instance of its schema
// node: the first of each schema node, how many there are, the branch of each choice and
// what stands behind what. The children are visited once, while they are bound or at the
// start of a walk, and each check reads what it needs. The record is that of the schema
// parent, used again for each of its elements: a stamp tells what is of the present one.

// Begins with an element that has no children yet.
void OpenInstance(QmdRunIndex* index, QmdParent* parent, const xmlNode* element);
// Begins with an element whose children are bound, unless it is the present one already.
// False when one of them is bound to something that the index does not have.
bool EnsureInstance(QmdRunIndex* index, QmdParent* parent, const xmlNode* element);

// What is known is of an earlier phase from here on: elements may have gone since.
void ForgetInstances(QmdRunIndex* index);

// The child whose elements are the next to expect after the last one.
inline QmdChild* ExpectedChild(const QmdParent* parent) {
  return parent->last == nullptr ? parent->firstFollower : parent->last->follower;
}
// Notes that `child` came after the last one, when something else was expected.
inline void LearnFollower(QmdParent* parent, QmdChild* child) {
  (parent->last == nullptr ? parent->firstFollower : parent->last->follower) = child;
}

// The element is the next child of the instance; or was added somewhere.
void NoteBoundChild(QmdRunIndex* index, QmdParent* parent, QmdChild* child, xmlNode* element);
void NoteAddedChild(QmdRunIndex* index, QmdParent* parent, QmdChild* child, xmlNode* element);

// The questions, all about the present instance.
inline bool HasElement(const QmdParent* parent, const QmdChild* child) {
  return child->stamp == parent->stamp;
}
inline xmlNode* FirstOfChild(const QmdParent* parent, const QmdChild* child) {
  return HasElement(parent, child) ? child->first : nullptr;
}
inline bool HasNamesake(const QmdParent* parent, const QmdChild* child) {
  return child->namesake->nameStamp == parent->stamp;
}
// Whether the elements that there are leave an element of the child without complaint: it
// is the only one where only one may be, does not precede what stands before it, and is
// of the case that has data.
bool IsAlone(const QmdParent* parent, const QmdChild* child);
bool IsInOrder(const QmdParent* parent, const QmdChild* child);
bool IsInTheCase(const QmdParent* parent, const QmdChild* child);
// The first element that follows the child in the schema; NULL when none does. To be
// asked in the order of the schema.
xmlNode* FirstThatFollows(const QmdParent* parent, const QmdChild* child);

// An element of the schema node is bound or added that is no child of an indexed parent.
void NoteUnindexed(QmdRunIndex* index, QmsNode* schemaNode);

// Whether an element below one that is bound to the schema node can have a condition of
// that kind, QMD_CHILD_WHEN or QMD_CHILD_MUST; true also where that is not known.
bool MayHaveBelow(const QmCheckAux* aux, const QmsNode* schemaNode, uint32_t condition);
