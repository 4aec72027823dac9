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
#include "data/data_node.h"
#include "data/schema_query.h"

static_assert(std::is_trivially_copyable_v<QmdLevel>, "the levels move when their block grows");

void InitSchemaWalk(QmdWalk* walk, QmCheckAux* aux, const QmdOpenFunc* openByKind,
                    QmdCloseFunc close, uint32_t* outAdded) {
  walk->aux = aux;
  walk->openByKind = openByKind;
  walk->close = close;
  walk->outAdded = outAdded;
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

void OpenChildren(QmdLevel* level, QmsNode* schemaNode, xmlNode* dataParent) {
  level->schemaNode = schemaNode;
  level->next = schemaNode->firstChild;
  level->dataParent = dataParent;
}

uint32_t OpenChildrenInParent(QmdWalk* /*walk*/, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level) {
  OpenChildren(level, schemaNode, dataParent);
  return QM_OK;
}

bool OpenExisting(QmdLevel* level, QmsNode* container, xmlNode* dataParent) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(container) != 0) return true;
  xmlNode* existing = QMD_NODE_GetChildNodeWithSpecifyMdl(dataParent, container);
  if (existing != nullptr) OpenChildren(level, container, existing);
  return existing != nullptr;
}

bool OpenBranch(QmdLevel* level, QmsNode* choice, xmlNode* dataParent) {
  QmsNode* branch = QMD_NODE_GetChoiceInstanceCaseBranch(dataParent, choice);
  if (branch == nullptr) branch = QMD_MDL_GetChoiceDefaultChildNode(choice);
  if (branch == nullptr) return false;
  level->schemaNode = choice;
  level->next = branch;
  level->dataParent = dataParent;
  level->isBranch = true;
  return true;
}

uint32_t OpenEntries(QmdWalk* /*walk*/, xmlNode* dataParent, QmsNode* list, QmdLevel* level) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(list) != 0) return QM_OK;
  xmlNode* entry = NextBoundSibling(dataParent->children, list);
  if (entry == nullptr) return QM_OK;
  OpenChildren(level, list, entry);
  level->isList = true;
  return QM_OK;
}

// Before its level is on the stack, a node's function speaks for the level above.
static uint32_t OpenLevel(QmdWalk* walk, QmdOpenFunc open, xmlNode* dataParent, QmsNode* schemaNode,
                          bool isCounted) {
  if (!HasRoom(walk)) return QM_NO_MEMORY;
  QmdLevel* level = &walk->levels[walk->count];
  *level = QmdLevel{};
  const uint32_t ret = open(walk, dataParent, schemaNode, level);
  if (level->schemaNode == nullptr) return ret;
  level->outer = walk->aux->place;
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

static bool StepToNextEntry(QmdLevel* level, const QmdPlace* place) {
  xmlNode* entry = NextBoundSibling(level->dataParent->next, level->schemaNode);
  if (entry == nullptr) return false;
  level->dataParent = entry;
  level->next = level->schemaNode->firstChild;
  level->outer = *place;
  return true;
}

// How far the defaults of a parent came is of no use for those of another one. What
// has no element, as a case, completes its caller's parent and passes it on.
static uint32_t LeaveTopLevel(QmdWalk* walk, uint32_t ret) {
  QmdLevel* top = TopLevel(walk);
  QmCheckAux* aux = walk->aux;
  if (!top->isBranch && QMD_MDL_IsSchemaNodeNeedSkipInDataTree(top->schemaNode) == 0) {
    aux->place = top->outer;
  }
  if (ret == QM_OK && top->isList && StepToNextEntry(top, &aux->place)) return QM_OK;
  const QmdLevel left = *top;
  --walk->count;
  if (left.isCounted) --aux->nesting;
  return walk->close(walk, &left, ret);
}

// A failure leaves all levels, each of which takes back what it made.
static uint32_t GoOn(QmdWalk* walk, uint32_t ret) {
  while (walk->count > 0) {
    QmdLevel* top = TopLevel(walk);
    QmsNode* child = ret == QM_OK ? top->next : nullptr;
    if (child == nullptr) {
      ret = LeaveTopLevel(walk, ret);
      continue;
    }
    top->next = top->isBranch ? nullptr : child->next;
    ret = EnterNode(walk, top->dataParent, child);
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
