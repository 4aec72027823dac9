// SPDX-License-Identifier: BSD-3-Clause
//
// The conditions that a run has met, found by the address of their text, which is the
// same for all elements of a schema node. What cannot be kept is evaluated as if nothing
// ever were.
#include "xpath/kept_conditions.h"

#include <cstddef>
#include <iterator>

#include <qmodel/error.h>

#include "context/array.h"
#include "context/guard.h"
#include "context/memory.h"
#include "xpath/bound_value.h"
#include "xpath/condition_run.h"

static bool MakeRoomForOperands(QmKeptConditions* kept, uint32_t height) {
  if (height <= kept->height) return true;
  QmXpathObject* operands = nullptr;
  if (NewArrayOf(&operands, height + 1) != QM_OK) return false;
  g_qmMemFreeFunc(kept->operands);
  kept->operands = operands;
  kept->height = height;
  return true;
}

static const QmConditionPlan* KeepPlan(QmKeptConditions* kept, const char* condition) {
  QmHeld<QmConditionPlan> plan(PlanCondition(condition));
  if (!plan || !MakeRoomForOperands(kept, plan->height)) return nullptr;
  return AddPointer(&kept->plans, condition, plan.Get()) ? plan.Release() : nullptr;
}

static const QmConditionPlan* FindPlan(QmKeptConditions* kept, const char* condition) {
  const QmPointerEntry* entry = FindPointer(&kept->plans, condition);
  return entry != nullptr ? static_cast<const QmConditionPlan*>(entry->value)
                          : KeepPlan(kept, condition);
}

void FreeKeptConditions(QmKeptConditions* kept) {
  for (uint32_t i = 0; i < kept->plans.capacity; ++i) g_qmMemFreeFunc(kept->plans.slots[i].value);
  FreePointerMap(&kept->plans);
  g_qmMemFreeFunc(kept->operands);
}

uint32_t EvalKeptCondition(QmKeptConditions* kept, xmlNode* rootNode, xmlNode* currentNode,
                           const char* condition) {
  if (kept != nullptr && rootNode != nullptr && currentNode != nullptr && condition != nullptr) {
    const QmConditionPlan* plan = FindPlan(kept, condition);
    if (plan != nullptr && plan->count != 0) {
      return RunConditionPlan(kept, plan, rootNode, currentNode);
    }
  }
  return QM_XPATH_EvalCondition(rootNode, currentNode, condition);
}

bool IsIdentityrefKept(QmKeptConditions* kept, QmsNode* schemaNode) {
  const uintptr_t number = reinterpret_cast<uintptr_t>(schemaNode) / alignof(std::max_align_t);
  QmKeptType& type = kept->types[number % std::size(kept->types)];
  if (type.node != schemaNode) type = {schemaNode, QMD_MDL_IsIdentityref(schemaNode)};
  return type.isIdentityref != 0;
}
