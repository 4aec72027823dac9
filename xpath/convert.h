// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

// The text of a node operand, as QM_XPATH_FuncStringInner() would copy it, when it is
// so long that it should not be copied; else NULL.
const char* LongTextOf(const QmXpathObject* object);

QM_BEGIN_INTERNAL_DECLS

// Conversions of one operand in place; the string that it held is freed. 12 when a text
// cannot be copied and 22 for the text of a number, with the operand unchanged. The last
// makes a boolean and negates it.
uint32_t QM_XPATH_FuncStringInner(QmXpathObject* object);
uint32_t QM_XPATH_FuncNumberInner(QmXpathObject* object);
uint32_t QM_XPATH_FuncBooleanInner(QmXpathObject* object);
uint32_t QM_XPATH_FuncNotInner(QmXpathObject* object);

// Conversions of plain values: "true" or "false" as a new text, NULL without memory; NaN
// for a text that is no number, 0 for a node without text; 1 for a text that is not empty,
// and for a number that is not NaN and not nearly 0.
char* QM_XPATH_ConvertBooleanToString(uint32_t value);
double QM_XPATH_ConvertBooleanToNumber(uint32_t value);
double QM_XPATH_ConvertStringToNumber(const char* text);
double QM_XPATH_ConvertNodeToNumber(const xmlNode* node);
uint32_t QM_XPATH_ConvertStringToBoolean(const char* text);
uint32_t QM_XPATH_ConvertNumberToBoolean(double value);

// The value of a node as a new text, "" when it has none or is not bound; NULL only
// without memory.
char* QM_XPATH_CopyElementNodeContent(xmlNode* node);

QM_END_INTERNAL_DECLS
