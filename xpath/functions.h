// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"
#include "xpath/records.h"

// A function takes its arguments from the top of the operand stack and pushes its
// result there.
using QmXpathFunc = uint32_t (*)(QmXpathEvalCtx* ctx);

// The function of that name, or NULL.
QmXpathFunc FindXpathFunction(const char* name, uint32_t length);

// The value of a bound element as a new text: an identity with its module's name
// in front. *out is NULL, with 0, for an element without text and for an identity
// whose prefix leads nowhere. 12 without memory.
uint32_t CopyBoundValue(xmlNode* node, QmsNode* schemaNode, char** out);

// The text of a node operand, as QM_XPATH_FuncStringInner() would copy it, when it is
// so long that it should not be copied; else NULL.
const char* LongTextOf(const QmXpathObject* object);

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_XPATH_FuncNot(QmXpathEvalCtx* ctx);
uint32_t QM_XPATH_FuncDerivedFrom(QmXpathEvalCtx* ctx);
uint32_t QM_XPATH_FuncDerivedFromOfSelf(QmXpathEvalCtx* ctx);

// Conversions of one operand in place; the string that it held is freed. 12 when
// a text cannot be copied, with the operand unchanged.
uint32_t QM_XPATH_FuncStringInner(QmXpathObject* object);
uint32_t QM_XPATH_FuncNumberInner(QmXpathObject* object);
uint32_t QM_XPATH_FuncBooleanInner(QmXpathObject* object);
uint32_t QM_XPATH_FuncNotInner(QmXpathObject* object);

// Conversions of plain values. A new text is the caller's; NULL without memory.
char* QM_XPATH_ConvertBooleanToString(uint32_t value);
double QM_XPATH_ConvertBooleanToNumber(uint32_t value);
double QM_XPATH_ConvertStringToNumber(const char* text);
double QM_XPATH_ConvertNodeToNumber(const xmlNode* node);
uint32_t QM_XPATH_ConvertStringToBoolean(const char* text);
uint32_t QM_XPATH_ConvertNumberToBoolean(double value);
char* QM_XPATH_CopyElementNodeContent(xmlNode* node);

QM_END_INTERNAL_DECLS
