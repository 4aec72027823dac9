// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "xpath/records.h"

// What evaluating a condition does, step by step.
enum QmPlanStepKind : uint32_t {
  QM_PLAN_STRING,           // pushes `text`
  QM_PLAN_NUMBER,           // pushes `number`
  QM_PLAN_ROOT,             // pushes the root
  QM_PLAN_SELF,             // the steps of a path lead on from the node on top, or, when
  QM_PLAN_PARENT,           // `detail` is 1, from the current node, which they push
  QM_PLAN_CHILD,            // by the name `text`
  QM_PLAN_NOWHERE,          // to no node: a name that none can have
  QM_PLAN_AND,              // the operators replace the two operands on top by their
  QM_PLAN_OR,               // result
  QM_PLAN_EQUALITY,         // `detail` is the operation
  QM_PLAN_RELATIONAL,       // the same
  QM_PLAN_NOT,              // replaces the operand on top
  QM_PLAN_DERIVED,          // replaces the two on top
  QM_PLAN_DERIVED_OR_SELF,  // the same
};

struct QmPlanStep {
  uint32_t kind;  // QmPlanStepKind
  uint32_t detail;
  union {
    const char* text;  // in the plan's own block
    double number;
  };
};

// A condition whose tokens were read once. Since no operator and no step ever passes
// another by, whatever the data is, its evaluation is always the same sequence.
struct QmConditionPlan {
  uint32_t count;   // 0: the condition cannot be planned
  uint32_t height;  // operands at one moment
  QmPlanStep* steps;
};

// The plan of a condition, one block of the memory hooks. A condition that fails wherever
// it is evaluated has a plan without steps. NULL without memory.
QmConditionPlan* PlanCondition(const char* condition);
