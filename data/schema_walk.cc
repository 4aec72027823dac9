// SPDX-License-Identifier: BSD-3-Clause
// The levels of a walk are a stack of records: the top one says which child comes next.
// A node that is entered may put a level of its own on top; a level without a next child
// is closed, and a failure closes them all. So each function of a kind runs once on the
// way down and each level is settled once on the way up, as by recursion.
#include "data/schema_walk.h"

#include <cstring>
#include <type_traits>

#include "context/memory.h"
#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/data_node.h"
#include "data/schema_query.h"
#include "data/schema_steps.h"

static_assert(std::is_trivially_copyable_v<QmdLevel>, "the levels move when their block grows");

void InitSchemaWalk(QmdWalk* walk, QmCheckAux* aux, uint32_t phase, const QmdOpenFunc* openByKind,
                    QmdCloseFunc close, uint32_t* outAdded) {
  walk->aux = aux;
  walk->phase = phase;
  walk->openByKind = openByKind;
  walk->close = close;
  walk->outAdded = outAdded;
  walk->step = QmdStep{};
  walk->holder = nullptr;
  walk->levels = walk->inPlace;
  walk->count = 0;
  walk->capacity = kQmdLevelsInPlace;
}

static void FreeLevels(QmdWalk* walk) {
  if (walk->levels != walk->inPlace) g_qmMemFreeFunc(walk->levels);
}

static bool HasRoom(QmdWalk* walk) {
  if (walk->count < walk->capacity) return true;
  const size_t size = walk->capacity * sizeof(QmdLevel);
  auto* levels = static_cast<QmdLevel*>(TakeBlock(size * 2));
  if (levels == nullptr) return false;
  std::memcpy(levels, walk->levels, size);
  FreeLevels(walk);
  walk->levels = levels;
  walk->capacity *= 2;
  return true;
}

static QmdLevel* TopLevel(QmdWalk* walk) {
  return &walk->levels[walk->count - 1];
}

void NoteAdded(QmdWalk* walk) {
  if (walk->count == 0) {
    *walk->outAdded = 1;
  } else {
    TopLevel(walk)->added = true;
  }
}

static void OpenIn(QmdWalk* walk, QmdLevel* level, QmsNode* schemaNode, xmlNode* dataParent) {
  *level = QmdLevel{};
  level->schemaNode = schemaNode;
  level->next = schemaNode->firstChild;
  level->dataParent = dataParent;
  level->self = walk->step;
  level->around = walk->holder;
  level->steps = StepsBelow(walk->aux, walk->phase, schemaNode, dataParent, &level->holder);
}

void OpenChildren(QmdWalk* walk, QmdLevel* level, QmsNode* schemaNode, xmlNode* dataParent) {
  OpenIn(walk, level, schemaNode, dataParent);
  if (level->steps != nullptr && level->steps->count == 0) level->schemaNode = nullptr;
}

void OpenMade(QmdWalk* walk, QmdLevel* level, QmsNode* schemaNode, xmlNode* made) {
  OpenIn(walk, level, schemaNode, made);
  level->made = made;
  if (level->steps != nullptr) level->holder->isMade = true;
}

void ForgetMade(const QmdLevel* level) {
  if (level->steps != nullptr) level->holder->instance = nullptr;
}

uint32_t OpenChildrenInParent(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level) {
  OpenChildren(walk, level, schemaNode, dataParent);
  return QM_OK;
}

// The first element of the node that is being opened.
static xmlNode* FirstElementOf(const QmdWalk* walk, xmlNode* dataParent, const QmsNode* node) {
  if (walk->step.child != nullptr) return FirstOfChild(walk->holder, walk->step.child);
  return QMD_NODE_GetChildNodeWithSpecifyMdl(dataParent, node);
}

bool OpenExisting(QmdWalk* walk, QmdLevel* level, QmsNode* container, xmlNode* dataParent) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(container) != 0) return true;
  xmlNode* existing = FirstElementOf(walk, dataParent, container);
  if (existing != nullptr) OpenChildren(walk, level, container, existing);
  return existing != nullptr;
}

static QmsNode* FindBranch(const QmdWalk* walk, QmsNode* choice, const xmlNode* dataParent) {
  QmdChoice* known = walk->step.choice;
  if (known != nullptr) {
    return known->stamp == walk->holder->stamp ? known->branch : DefaultBranchOf(known);
  }
  QmsNode* branch = QMD_NODE_GetChoiceInstanceCaseBranch(dataParent, choice);
  return branch != nullptr ? branch : QMD_MDL_GetChoiceDefaultChildNode(choice);
}

bool OpenBranch(QmdWalk* walk, QmdLevel* level, QmsNode* choice, xmlNode* dataParent) {
  QmsNode* branch = FindBranch(walk, choice, dataParent);
  if (branch == nullptr) return false;
  *level = QmdLevel{};
  level->schemaNode = choice;
  level->next = branch;
  level->dataParent = dataParent;
  level->isBranch = true;
  if (walk->step.choice != nullptr) level->holder = walk->holder;
  return true;
}

uint32_t OpenEntries(QmdWalk* walk, xmlNode* dataParent, QmsNode* list, QmdLevel* level) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(list) != 0) return QM_OK;
  const QmdChild* child = walk->step.child;
  xmlNode* entry = FirstElementOf(walk, dataParent, list);
  if (entry == nullptr) return QM_OK;
  OpenChildren(walk, level, list, entry);
  level->isList = true;
  level->entriesLeft = child == nullptr ? UINT32_MAX : child->count - 1;
  return QM_OK;
}

// Before its level is on the stack, a node's function speaks for the level above.
static uint32_t OpenLevel(QmdWalk* walk, QmdOpenFunc open, xmlNode* dataParent, QmsNode* schemaNode,
                          bool isCounted) {
  if (!HasRoom(walk)) return QM_NO_MEMORY;
  QmdLevel* level = &walk->levels[walk->count];
  level->schemaNode = nullptr;
  const uint32_t ret = open(walk, dataParent, schemaNode, level);
  if (level->schemaNode == nullptr) return ret;
  level->isCounted = isCounted;
  ++walk->count;
  if (isCounted) ++walk->aux->nesting;
  return ret;
}

static uint32_t EnterNode(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode) {
  if (dataParent == nullptr || walk->outAdded == nullptr) return QM_INVALID;
  if (schemaNode->kind >= QMS_NODE_KIND_COUNT) return QM_INVALID;
  if (QM_NODE_IsEnabled(schemaNode) == 0) return QM_OK;
  const QmdOpenFunc open = walk->openByKind[schemaNode->kind];
  if (open == nullptr) return QM_OK;
  if (walk->aux->nesting >= kQmdMaxNesting) return QM_INVALID;
  return OpenLevel(walk, open, dataParent, schemaNode, true);
}

// The next entry may be of a form that the index does not know, as the first one was not.
static bool StepToNextEntry(const QmdWalk* walk, QmdLevel* level) {
  if (level->entriesLeft == 0) return false;
  xmlNode* entry = NextBoundSibling(level->dataParent->next, level->schemaNode);
  if (entry == nullptr) return false;
  --level->entriesLeft;
  level->dataParent = entry;
  level->next = level->schemaNode->firstChild;
  level->at = 0;
  level->steps = StepsBelow(walk->aux, walk->phase, level->schemaNode, entry, &level->holder);
  return true;
}

static uint32_t LeaveTopLevel(QmdWalk* walk, uint32_t ret) {
  QmdLevel* top = TopLevel(walk);
  if (ret == QM_OK && top->isList && StepToNextEntry(walk, top)) return QM_OK;
  const QmdLevel left = *top;
  --walk->count;
  if (left.isCounted) --walk->aux->nesting;
  return walk->close(walk, &left, ret);
}

// The next child of a level; NULL after the last one. What the index knows of it goes
// into the walk.
static QmsNode* TakeChild(QmdWalk* walk, QmdLevel* level) {
  walk->holder = level->holder;
  if (level->steps != nullptr) {
    if (level->at == level->steps->count) return nullptr;
    walk->step = level->steps->steps[level->at++];
    return walk->step.node;
  }
  QmsNode* child = level->next;
  if (child == nullptr) return nullptr;
  walk->step = {child, nullptr, nullptr};
  if (level->isBranch && level->holder != nullptr) walk->step = StepTo(level->holder, child);
  level->next = level->isBranch ? nullptr : child->next;
  return child;
}

// A failure leaves all levels, each of which takes back what it made.
static uint32_t GoOn(QmdWalk* walk, uint32_t ret) {
  while (walk->count > 0) {
    QmdLevel* top = TopLevel(walk);
    QmsNode* child = ret == QM_OK ? TakeChild(walk, top) : nullptr;
    ret = child == nullptr ? LeaveTopLevel(walk, ret) : EnterNode(walk, top->dataParent, child);
  }
  FreeLevels(walk);
  return ret;
}

uint32_t WalkSchemaNode(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode) {
  return GoOn(walk, EnterNode(walk, dataParent, schemaNode));
}

uint32_t WalkSchemaNodeAs(QmdWalk* walk, QmdOpenFunc open, xmlNode* dataParent,
                          QmsNode* schemaNode) {
  return GoOn(walk, OpenLevel(walk, open, dataParent, schemaNode, false));
}
