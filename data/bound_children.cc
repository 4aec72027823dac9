// SPDX-License-Identifier: BSD-3-Clause
// One visit of the elements of a parent gathers all that its checks ask. The elements of
// each track that follow everything before them form a chain, whose order in the document
// is that of the schema: the first one that follows a given child of the track is the
// first of the chain that does. Children are asked for in the order of the schema, so the
// chain is gone through once for all of them.
#include "data/bound_children.h"

#include "context/xml_tree.h"
#include "data/schema_children.h"
#include "schema/node.h"
#include "schema/node_walk.h"

void OpenInstance(QmdRunIndex* index, QmdParent* parent, const xmlNode* element) {
  parent->instance = element;
  parent->stamp = ++index->stamp;
  parent->last = nullptr;
  parent->isMade = false;
}

void ForgetInstances(QmdRunIndex* index) {
  index->phaseStart = index->stamp;
}

static void NoteInTrack(const QmdParent* parent, QmdChild* child) {
  QmdTrack* track = child->track;
  if ((child->flags & QMD_CHILD_ENABLED) == 0) return;
  if (track->stamp != parent->stamp) {
    track->stamp = parent->stamp;
    track->ahead = child;
  } else if (child->order > track->last->order) {
    if (track->ahead == nullptr) track->ahead = child;
    track->last->ahead = child;
  } else {
    return;
  }
  child->ahead = nullptr;
  track->last = child;
}

static void NoteInChoices(const QmdParent* parent, const QmdChild* child) {
  QmsNode* branch = child->branch;
  for (QmdChoice* choice = child->choice; choice != nullptr; choice = choice->outer) {
    if (choice->stamp != parent->stamp) {
      choice->stamp = parent->stamp;
      choice->branch = branch;
      choice->isMixed = false;
    } else if (choice->branch != branch) {
      choice->isMixed = true;
    }
    branch = choice->outerBranch;
  }
}

// Conditions are looked for only where elements are bound that have some.
static void NoteConditions(QmdRunIndex* index, QmsNode* parentNode, uint32_t conditions) {
  while (parentNode != nullptr) {
    QmdParent* parent = MakeParent(index, parentNode);
    if (parent == nullptr) index->isPartial = true;
    if (parent == nullptr || (conditions & ~parent->below) == 0) return;
    parent->below |= conditions;
    parentNode = QMS_NODE_GetParentDataTreeNode(parentNode);
  }
}

void NoteUnindexed(QmdRunIndex* index, QmsNode* schemaNode) {
  const uint32_t conditions = ConditionsOf(schemaNode);
  if (conditions == 0) return;
  NoteConditions(index, QMS_NODE_GetParentDataTreeNode(schemaNode), conditions);
}

void NoteAddedChild(QmdRunIndex* index, QmdParent* parent, QmdChild* child, xmlNode* element) {
  if (child->stamp == parent->stamp) {
    ++child->count;
    return;
  }
  child->stamp = parent->stamp;
  child->namesake->nameStamp = parent->stamp;
  child->first = element;
  child->count = 1;
  NoteInTrack(parent, child);
  if (child->choice != nullptr) NoteInChoices(parent, child);
  const uint32_t conditions = child->flags & (QMD_CHILD_WHEN | QMD_CHILD_MUST);
  if (conditions != 0) NoteConditions(index, parent->node, conditions);
}

void NoteBoundChild(QmdRunIndex* index, QmdParent* parent, QmdChild* child, xmlNode* element) {
  NoteAddedChild(index, parent, child, element);
  parent->last = child;
}

static QmdChild* ChildOfBound(QmdParent* parent, const QmsNode* schemaNode) {
  QmdChild* child = ExpectedChild(parent);
  if (child != nullptr && child->node == schemaNode) return child;
  child = FindChildOfNode(parent, schemaNode);
  if (child != nullptr) LearnFollower(parent, child);
  return child;
}

bool EnsureInstance(QmdRunIndex* index, QmdParent* parent, const xmlNode* element) {
  if (parent->instance == element && parent->stamp > index->phaseStart) return true;
  OpenInstance(index, parent, element);
  xmlNode* node = FirstElement(element->children);
  for (; node != nullptr; node = FirstElement(node->next)) {
    const QmsNode* schemaNode = BoundSchema(node);
    QmdChild* child = schemaNode == nullptr ? nullptr : ChildOfBound(parent, schemaNode);
    if (child == nullptr) {
      parent->instance = nullptr;
      return false;
    }
    NoteBoundChild(index, parent, child, node);
  }
  return true;
}

bool IsAlone(const QmdParent* parent, const QmdChild* child) {
  return (child->flags & QMD_CHILD_MANY) != 0 || !HasElement(parent, child);
}

bool IsInOrder(const QmdParent* parent, const QmdChild* child) {
  const QmdChild* last = parent->last;
  return last == nullptr || last->order <= child->order || last->track != child->track ||
         (last->flags & QMD_CHILD_ENABLED) == 0;
}

bool IsInTheCase(const QmdParent* parent, const QmdChild* child) {
  const QmdChoice* choice = child->choice;
  if (choice == nullptr || choice->stamp != parent->stamp) return true;
  return !choice->isMixed && choice->branch == child->branch;
}

xmlNode* FirstThatFollows(const QmdParent* parent, const QmdChild* child) {
  QmdTrack* track = child->track;
  if (track->stamp != parent->stamp) return nullptr;
  while (track->ahead != nullptr && track->ahead->order <= child->order) {
    track->ahead = track->ahead->ahead;
  }
  return track->ahead == nullptr ? nullptr : track->ahead->first;
}

bool MayHaveBelow(const QmCheckAux* aux, const QmsNode* schemaNode, uint32_t condition) {
  if (aux->index == nullptr || aux->index->isPartial) return true;
  if (IsLeafOrLeafList(schemaNode)) return false;
  const QmdParent* parent = FindParent(aux->index, schemaNode);
  return parent != nullptr && (parent->below & condition) != 0;
}
