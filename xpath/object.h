// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_XPATH_PushBooleanToObjStack(RtkStack* stack, uint32_t value);
uint32_t QM_XPATH_PushNodeToObjStack(RtkStack* stack, xmlNode* node);
uint32_t QM_XPATH_PushStringToObjStack(RtkStack* stack, const char* text, uint32_t length);
uint32_t QM_XPATH_PushNumberToObjStack(RtkStack* stack, double value);
void QM_XPATH_FreeObject(QmXpathObject* object);
uint32_t QM_XPATH_ReplaceNodeToTopElemInObjStack(RtkStack* stack, xmlNode* node);
xmlNode* QM_XPATH_GetStackTopObjNode(RtkStack* stack);
QmXpathObject* QM_XPATH_GetArgumentByType(RtkStack* stack, uint32_t type);

QM_END_INTERNAL_DECLS
