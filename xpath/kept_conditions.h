// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/pointer_map.h"
#include "schema/records.h"
#include "xpath/condition_plan.h"
#include "xpath/records.h"

// Whether a node is an identityref.
struct QmKeptType {
  const QmsNode* node;
  uint32_t isIdentityref;
};

// What a run keeps of the conditions that it evaluates: a condition stands on each of a
// hundred thousand entries, and its tokens are the same for all. It belongs to the run
// and its thread. Zero-filled it is empty.
struct QmKeptConditions {
  QmPointerMap plans;       // of QmConditionPlan, owned, by the condition's address
  QmXpathObject* operands;  // one more than the highest plan has; none owns its string
  uint32_t height;
  QmKeptType types[16];  // what comparisons asked for last, by the node's address
};

// Frees what is kept; the record itself belongs to the caller.
void FreeKeptConditions(QmKeptConditions* kept);

// The same as QM_XPATH_EvalCondition(), with the same result. Nothing is kept when `kept`
// is NULL, nor what there is no memory for. The text must live as long as `kept`.
uint32_t EvalKeptCondition(QmKeptConditions* kept, xmlNode* rootNode, xmlNode* currentNode,
                           const char* condition);

// QMD_MDL_IsIdentityref(), with the answer kept.
bool IsIdentityrefKept(QmKeptConditions* kept, QmsNode* schemaNode);
