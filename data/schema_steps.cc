// SPDX-License-Identifier: BSD-3-Clause
// What interests a walk is asked once for each child, when the walk first comes below its
// parent. For a container that is missing it would take an element in its place to go on
// with; so what lies below is looked at once, and when there is nothing to add or to miss
// anywhere, no element is made. The look is short: a schema of many nodes is walked.
#include "data/schema_steps.h"

#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/schema_children.h"
#include "data/schema_query.h"
#include "schema/node.h"
#include "schema/node_walk.h"

constexpr uint32_t kNodesLookedAt = 64;

bool MaySkip(const QmCheckAux* aux) {
  return aux->nesting + 2 * kNodesLookedAt < kQmdMaxNesting;
}

const char* DefaultOf(QmdChild* child) {
  if ((child->flags & QMD_CHILD_DEFAULT) == 0) {
    child->defaultValue = QM_NODE_GetDefaultValueStr(child->node);
    child->flags |= QMD_CHILD_DEFAULT;
  }
  return child->defaultValue;
}

QmsNode* DefaultBranchOf(QmdChoice* choice) {
  if (!choice->isDefaultKnown) {
    choice->defaultBranch = QMD_MDL_GetChoiceDefaultChildNode(choice->node);
    choice->isDefaultKnown = true;
  }
  return choice->defaultBranch;
}

QmdStep StepTo(const QmdParent* holder, QmsNode* node) {
  QmdStep step = {node, nullptr, nullptr};
  if (node->kind == QMS_NODE_CHOICE) step.choice = FindChoiceOfNode(holder, node);
  if (IsDataTreeNode(node)) step.child = FindChildOfNode(holder, node);
  return step;
}

static bool IsMandatoryWalk(uint32_t phase) {
  return phase == QMD_PHASE_MANDATORY;
}

static bool IsLeafOfInterest(const QmsNode* leaf, uint32_t phase) {
  if (IsMandatoryWalk(phase)) return QM_NODE_IsMandatory(leaf) != 0;
  return leaf->payload == nullptr || QM_NODE_GetDefaultValueStr(leaf) != nullptr;
}

// Whether the walk has anything to do with a child. Kinds that few schemas have at such a
// place are left to the walk.
static bool IsOfInterest(const QmsNode* node, uint32_t phase) {
  if (node->kind < QMS_NODE_KIND_COUNT && QM_NODE_IsEnabled(node) == 0) return false;
  switch (node->kind) {
    case QMS_NODE_LEAF:
      return IsLeafOfInterest(node, phase);
    case QMS_NODE_ANYDATA:
    case QMS_NODE_ANYXML:
      return IsMandatoryWalk(phase) && QM_NODE_IsMandatory(node) != 0;
    case QMS_NODE_CONTAINER:
    case QMS_NODE_LIST:
      return QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(node) == 0;
    case QMS_NODE_LEAF_LIST:
    case QMS_NODE_OUTPUT:
      return false;
    default:
      return true;
  }
}

// The place for all children is taken, and what is not needed of it given back.
static void FindSteps(QmdRunIndex* index, QmdParent* parent, uint32_t phase) {
  QmdSteps* found = &parent->steps[phase];
  uint32_t most = 0;
  for (const QmsNode* node = parent->node->firstChild; node != nullptr; node = node->next) ++most;
  auto* steps = static_cast<QmdStep*>(IndexBytes(index, most * sizeof(QmdStep)));
  if (steps == nullptr) return;
  for (QmsNode* node = parent->node->firstChild; node != nullptr; node = node->next) {
    if (IsOfInterest(node, phase)) steps[found->count++] = StepTo(parent->holder, node);
  }
  GiveBackBytes(index, steps, most * sizeof(QmdStep), found->count * sizeof(QmdStep));
  found->steps = steps;
  found->isKnown = true;
}

// The elements of a case or input are those of the nearest node above that has one. A
// small parent is gone over without the index when it is met for the first time.
static QmdParent* HolderOf(QmdRunIndex* index, uint32_t phase, QmdParent* parent) {
  if (parent->holder != nullptr) return parent->holder;
  const bool isData = IsDataTreeNode(parent->node);
  QmsNode* node = isData ? parent->node : QMS_NODE_GetParentDataTreeNode(parent->node);
  QmdParent* holder = node == nullptr ? nullptr : MakeParent(index, node);
  if (holder == nullptr) return nullptr;
  if (!holder->isBuilt) {
    const bool isFirst = (holder->walkedIn >> phase & 1) == 0;
    if (isData) holder->walkedIn |= static_cast<uint8_t>(1u << phase);
    if ((isFirst || !isData) && IsSmall(holder)) return nullptr;
  }
  if (IndexedParent(index, node) != nullptr) parent->holder = holder;
  return parent->holder;
}

const QmdSteps* StepsBelow(QmCheckAux* aux, uint32_t phase, QmsNode* node,
                           const xmlNode* dataParent, QmdParent** holder) {
  if (aux->index == nullptr || !MaySkip(aux)) return nullptr;
  QmdParent* parent = MakeParent(aux->index, node);
  *holder = parent == nullptr ? nullptr : HolderOf(aux->index, phase, parent);
  if (*holder == nullptr || BoundSchema(dataParent) != (*holder)->node) return nullptr;
  if (!parent->steps[phase].isKnown) FindSteps(aux->index, parent, phase);
  const QmdSteps* steps = &parent->steps[phase];
  if (!steps->isKnown) return nullptr;
  if (steps->count != 0 && !EnsureInstance(aux->index, *holder, dataParent)) return nullptr;
  return steps;
}

namespace {
// How the look below a missing container goes on at a node.
enum class Look { kOver, kInto, kBusy };
}  // namespace

static Look LookAtChoice(const QmsNode* choice, uint32_t phase) {
  if (IsMandatoryWalk(phase) && QM_NODE_IsMandatory(choice) != 0) return Look::kBusy;
  const auto* payload = static_cast<const QmsChoice*>(choice->payload);
  return payload == nullptr || payload->defaultCase == nullptr ? Look::kOver : Look::kInto;
}

// The mandatory check asks the conditions of missing containers.
static Look LookAtContainer(const QmsNode* container, uint32_t phase) {
  if (QM_NODE_IsPresenceContainer(container) != 0 ||
      QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(container) != 0) {
    return Look::kOver;
  }
  return IsMandatoryWalk(phase) && container->when != nullptr ? Look::kBusy : Look::kInto;
}

static Look LookAt(const QmsNode* node, uint32_t phase) {
  if (node->kind >= QMS_NODE_KIND_COUNT) return Look::kBusy;
  if (QM_NODE_IsEnabled(node) == 0) return Look::kOver;
  switch (node->kind) {
    case QMS_NODE_LEAF:
    case QMS_NODE_ANYDATA:
    case QMS_NODE_ANYXML:
      return IsOfInterest(node, phase) ? Look::kBusy : Look::kOver;
    case QMS_NODE_LEAF_LIST:
    case QMS_NODE_LIST:
      return Look::kOver;
    case QMS_NODE_CONTAINER:
      return LookAtContainer(node, phase);
    case QMS_NODE_CHOICE:
      return node->when != nullptr ? Look::kBusy : LookAtChoice(node, phase);
    case QMS_NODE_CASE:
      return node->when != nullptr ? Look::kBusy : Look::kInto;
    default:
      return Look::kBusy;
  }
}

static bool IsIdleBelow(QmsNode* container, uint32_t phase) {
  uint32_t travType = QMS_TRAV_TOP;
  QmsNode* node = QMS_NODE_GetTreeNodeNextNode(container, container, &travType);
  for (uint32_t steps = 0; node != nullptr; ++steps) {
    if (steps == kNodesLookedAt) return false;
    const Look look = travType == QMS_TRAV_PARENT ? Look::kOver : LookAt(node, phase);
    if (look == Look::kBusy) return false;
    node = look == Look::kInto ? QMS_NODE_GetTreeNodeNextNode(container, node, &travType)
                               : QMS_NODE_GetTreeNodeSibOrParent(container, node, &travType);
  }
  return true;
}

// A walk that made an element goes on below it at first: a look at each level of a nest
// of missing containers would cost the square of its depth.
bool IsIdleWhenMissing(const QmCheckAux* aux, uint32_t phase, const QmdParent* holder,
                       QmdChild* child) {
  if (child == nullptr || !MaySkip(aux)) return false;
  const uint32_t idle = uint32_t{QMD_CHILD_IDLE} << phase;
  const uint32_t busy = uint32_t{QMD_CHILD_BUSY} << phase;
  if ((child->flags & (idle | busy)) == 0) {
    const uint32_t missed = uint32_t{QMD_CHILD_MISSED} << phase;
    const bool isFirst = holder->isMade && (child->flags & missed) == 0;
    child->flags |= missed;
    if (isFirst) return false;
    const bool hasWhen = IsMandatoryWalk(phase) && (child->flags & QMD_CHILD_WHEN) != 0;
    child->flags |= !hasWhen && IsIdleBelow(child->node, phase) ? idle : busy;
  }
  return (child->flags & idle) != 0;
}
