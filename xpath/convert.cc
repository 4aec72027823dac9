// SPDX-License-Identifier: BSD-3-Clause
//
// The conversions between the four types of operands, XPath 1.0 section 4, as far as
// conditions need them. An operand is converted in place; the string that it held is
// freed.
#include "xpath/convert.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/memory.h"
#include "context/string.h"
#include "platform/string.h"
#include "schema/records.h"
#include "xpath/bound_value.h"
#include "xpath/child_lookup.h"

static_assert(DBL_EPSILON == 2.220446049250313e-16, "numbers below it count as zero");

char* QM_XPATH_ConvertBooleanToString(uint32_t value) {
  return QM_UTL_StrDup(value != 0 ? "true" : "false");
}

double QM_XPATH_ConvertBooleanToNumber(uint32_t value) {
  return value != 0 ? 1.0 : 0.0;
}

double QM_XPATH_ConvertStringToNumber(const char* text) {
  double number = 0.0;
  if (text == nullptr || RTK_StrToFloat(text, &number) != QM_OK) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  return number;
}

constexpr size_t kLongText = 1024;

static bool IsLong(const char* text) {
  return text != nullptr && RTK_StrNLen(text, kLongText) == kLongText;
}

// Deliberate: a node without text is 0, not NaN.
double QM_XPATH_ConvertNodeToNumber(const xmlNode* node) {
  const char* text = RawText(node);
  double number = 0.0;
  if (text == nullptr || FindKeptNumber(node, &number)) return number;
  number = QM_XPATH_ConvertStringToNumber(text);
  if (IsLong(text)) KeepNumber(node, number);
  return number;
}

const char* LongTextOf(const QmXpathObject* object) {
  if (object->type != QM_XPATH_OBJECT_NODE) return nullptr;
  const xmlNode* node = object->value.node;
  const char* text = RawText(node);
  if (!IsLong(text) || node->_private == nullptr) return nullptr;
  return QMD_MDL_IsIdentityref(static_cast<QmsNode*>(node->_private)) == 0 ? text : nullptr;
}

uint32_t QM_XPATH_ConvertStringToBoolean(const char* text) {
  return text != nullptr && *text != '\0' ? 1 : 0;
}

uint32_t QM_XPATH_ConvertNumberToBoolean(double value) {
  return !std::isnan(value) && std::fabs(value) >= DBL_EPSILON ? 1 : 0;
}

// NULL only without memory. No text, or an identity whose prefix leads nowhere,
// counts as empty.
char* QM_XPATH_CopyElementNodeContent(xmlNode* node) {
  if (RawText(node) == nullptr || node->_private == nullptr) return QM_UTL_CreateEmptyString();
  char* content = nullptr;
  if (CopyBoundValue(node, static_cast<QmsNode*>(node->_private), &content) != QM_OK) {
    return nullptr;
  }
  return content != nullptr ? content : QM_UTL_CreateEmptyString();
}

static char* CopyAsString(const QmXpathObject* object) {
  return object->type == QM_XPATH_OBJECT_BOOLEAN
             ? QM_XPATH_ConvertBooleanToString(object->value.boolean)
             : QM_XPATH_CopyElementNodeContent(object->value.node);
}

uint32_t QM_XPATH_FuncStringInner(QmXpathObject* object) {
  if (object->type == QM_XPATH_OBJECT_STRING) return QM_OK;
  // No comparison asks for the text of a number.
  if (object->type == QM_XPATH_OBJECT_NUMBER) return QM_INVALID;
  char* text = CopyAsString(object);
  if (text == nullptr) return QM_NO_MEMORY;
  object->type = QM_XPATH_OBJECT_STRING;
  object->value.string = text;
  return QM_OK;
}

static double NumberOf(const QmXpathObject* object) {
  switch (object->type) {
    case QM_XPATH_OBJECT_BOOLEAN:
      return QM_XPATH_ConvertBooleanToNumber(object->value.boolean);
    case QM_XPATH_OBJECT_STRING:
      return QM_XPATH_ConvertStringToNumber(object->value.string);
    case QM_XPATH_OBJECT_NODE:
      return QM_XPATH_ConvertNodeToNumber(object->value.node);
    default:
      return object->value.number;
  }
}

static uint32_t BooleanOf(const QmXpathObject* object) {
  switch (object->type) {
    case QM_XPATH_OBJECT_STRING:
      return QM_XPATH_ConvertStringToBoolean(object->value.string);
    case QM_XPATH_OBJECT_NODE:
      return object->value.node != nullptr ? 1 : 0;
    case QM_XPATH_OBJECT_NUMBER:
      return QM_XPATH_ConvertNumberToBoolean(object->value.number);
    default:
      return object->value.boolean;
  }
}

static void DropString(QmXpathObject* object) {
  if (object->type == QM_XPATH_OBJECT_STRING) FreeAndNull(&object->value.string);
}

uint32_t QM_XPATH_FuncNumberInner(QmXpathObject* object) {
  const double number = NumberOf(object);
  DropString(object);
  object->type = QM_XPATH_OBJECT_NUMBER;
  object->value.number = number;
  return QM_OK;
}

uint32_t QM_XPATH_FuncBooleanInner(QmXpathObject* object) {
  const uint32_t boolean = BooleanOf(object);
  DropString(object);
  object->type = QM_XPATH_OBJECT_BOOLEAN;
  object->value.boolean = boolean;
  return QM_OK;
}

uint32_t QM_XPATH_FuncNotInner(QmXpathObject* object) {
  const uint32_t ret = QM_XPATH_FuncBooleanInner(object);
  if (ret == QM_OK) object->value.boolean = object->value.boolean != 0 ? 0 : 1;
  return ret;
}
