// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "xpath/kept_conditions.h"

// Evaluates a plan with steps, one that was made for `kept`: 0, QM_XPATH_FALSE, or what a
// function that it calls fails with.
uint32_t RunConditionPlan(QmKeptConditions* kept, const QmConditionPlan* plan, xmlNode* rootNode,
                          xmlNode* currentNode);
