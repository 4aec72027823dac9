// SPDX-License-Identifier: BSD-3-Clause
//
// The conditions that a run has met, found by the address of their text, which is the
// same for all elements of a schema node. What cannot be kept is evaluated as if nothing
// ever were.
#include "xpath/kept_conditions.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/array.h"
#include "context/memory.h"
#include "xpath/bound_value.h"
#include "xpath/condition_run.h"

namespace {
constexpr uint32_t kFirstCapacity = 16;
}  // namespace

// Texts are blocks of their own, so the low bits say little.
static uint32_t HashOf(const void* address) {
  const auto bits = reinterpret_cast<uintptr_t>(address);
  return static_cast<uint32_t>((bits >> 4) * 0x9E3779B97F4A7C15u >> 32);
}

// The slot of a condition, or the free one where it belongs. The table is never full.
static QmConditionPlan** FindSlot(QmConditionPlan** plans, uint32_t capacity,
                                  const char* condition) {
  uint32_t slot = HashOf(condition) & (capacity - 1);
  while (plans[slot] != nullptr && plans[slot]->condition != condition) {
    slot = (slot + 1) & (capacity - 1);
  }
  return &plans[slot];
}

static bool MakeRoom(QmKeptConditions* kept) {
  if (kept->count < kept->capacity / 2) return true;
  const uint32_t capacity = kept->capacity == 0 ? kFirstCapacity : kept->capacity * 2;
  QmConditionPlan** plans = nullptr;
  if (capacity > UINT32_MAX / 4 || NewArrayOf(&plans, capacity) != QM_OK) return false;
  for (uint32_t i = 0; i < kept->capacity; ++i) {
    if (kept->plans[i] != nullptr) {
      *FindSlot(plans, capacity, kept->plans[i]->condition) = kept->plans[i];
    }
  }
  g_qmMemFreeFunc(kept->plans);
  kept->plans = plans;
  kept->capacity = capacity;
  return true;
}

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
  if (!MakeRoom(kept)) return nullptr;
  QmConditionPlan* plan = PlanCondition(condition);
  if (plan == nullptr || !MakeRoomForOperands(kept, plan->height)) {
    g_qmMemFreeFunc(plan);
    return nullptr;
  }
  *FindSlot(kept->plans, kept->capacity, condition) = plan;
  ++kept->count;
  return plan;
}

static const QmConditionPlan* FindPlan(QmKeptConditions* kept, const char* condition) {
  const QmConditionPlan* plan =
      kept->count == 0 ? nullptr : *FindSlot(kept->plans, kept->capacity, condition);
  return plan != nullptr ? plan : KeepPlan(kept, condition);
}

void FreeKeptConditions(QmKeptConditions* kept) {
  for (uint32_t i = 0; i < kept->capacity; ++i) g_qmMemFreeFunc(kept->plans[i]);
  g_qmMemFreeFunc(kept->plans);
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
  QmKeptType& type = kept->types[HashOf(schemaNode) % std::size(kept->types)];
  if (type.node != schemaNode) type = {schemaNode, QMD_MDL_IsIdentityref(schemaNode)};
  return type.isIdentityref != 0;
}
