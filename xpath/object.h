// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

QM_BEGIN_INTERNAL_DECLS

// Push one new operand: 0 or 12. The string is copied.
uint32_t QM_XPATH_PushBooleanToObjStack(RtkStack* stack, uint32_t value);
uint32_t QM_XPATH_PushNodeToObjStack(RtkStack* stack, xmlNode* node);
uint32_t QM_XPATH_PushStringToObjStack(RtkStack* stack, const char* text, uint32_t length);
uint32_t QM_XPATH_PushNumberToObjStack(RtkStack* stack, double value);

// Frees an operand that was taken off its stack. NULL is accepted.
void QM_XPATH_FreeObject(QmXpathObject* object);

// The operand on top, while a path is evaluated: 22 or NULL when it is no node.
uint32_t QM_XPATH_ReplaceNodeToTopElemInObjStack(RtkStack* stack, xmlNode* node);
xmlNode* QM_XPATH_GetStackTopObjNode(RtkStack* stack);

// Takes the operand on top off when it has that type, else NULL. The caller frees it.
QmXpathObject* QM_XPATH_GetArgumentByType(RtkStack* stack, uint32_t type);

QM_END_INTERNAL_DECLS
