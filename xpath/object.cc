// SPDX-License-Identifier: BSD-3-Clause
//
// The operands of an evaluation. Each is a small block of its own that the operand
// stack refers to; a string belongs to its operand, a node to its tree.
#include "xpath/object.h"

#include <cstring>

#include <qmodel/error.h>

#include "context/memory.h"

void QM_XPATH_FreeObject(QmXpathObject* object) {
  if (object == nullptr) return;
  if (object->type == QM_XPATH_OBJECT_STRING) g_qmMemFreeFunc(object->value.string);
  g_qmMemFreeFunc(object);
}

// Takes `object` over, whatever the result.
static uint32_t PushObject(RtkStack* stack, QmXpathObject* object) {
  if (RTK_Push(stack, object) == QM_OK) return QM_OK;
  QM_XPATH_FreeObject(object);
  return QM_NO_MEMORY;
}

static QmXpathObject* NewObject(uint32_t type) {
  auto* object = NewRecord<QmXpathObject>();
  if (object != nullptr) object->type = type;
  return object;
}

uint32_t QM_XPATH_PushBooleanToObjStack(RtkStack* stack, uint32_t value) {
  QmXpathObject* object = NewObject(QM_XPATH_OBJECT_BOOLEAN);
  if (object == nullptr) return QM_NO_MEMORY;
  object->value.boolean = value;
  return PushObject(stack, object);
}

uint32_t QM_XPATH_PushNodeToObjStack(RtkStack* stack, xmlNode* node) {
  QmXpathObject* object = NewObject(QM_XPATH_OBJECT_NODE);
  if (object == nullptr) return QM_NO_MEMORY;
  object->value.node = node;
  return PushObject(stack, object);
}

uint32_t QM_XPATH_PushNumberToObjStack(RtkStack* stack, double value) {
  QmXpathObject* object = NewObject(QM_XPATH_OBJECT_NUMBER);
  if (object == nullptr) return QM_NO_MEMORY;
  object->value.number = value;
  return PushObject(stack, object);
}

uint32_t QM_XPATH_PushStringToObjStack(RtkStack* stack, const char* text, uint32_t length) {
  char* copy = static_cast<char*>(AllocZeroed(static_cast<size_t>(length) + 1));
  if (copy == nullptr) return QM_NO_MEMORY;
  std::memcpy(copy, text, length);
  QmXpathObject* object = NewObject(QM_XPATH_OBJECT_STRING);
  if (object == nullptr) {
    g_qmMemFreeFunc(copy);
    return QM_NO_MEMORY;
  }
  object->value.string = copy;
  return PushObject(stack, object);
}

static QmXpathObject* TopNodeObject(const RtkStack* stack) {
  auto* object = static_cast<QmXpathObject*>(RTK_Peep(stack));
  return object != nullptr && object->type == QM_XPATH_OBJECT_NODE ? object : nullptr;
}

uint32_t QM_XPATH_ReplaceNodeToTopElemInObjStack(RtkStack* stack, xmlNode* node) {
  QmXpathObject* object = TopNodeObject(stack);
  if (object == nullptr) return QM_INVALID;
  object->value.node = node;
  return QM_OK;
}

xmlNode* QM_XPATH_GetStackTopObjNode(RtkStack* stack) {
  const QmXpathObject* object = TopNodeObject(stack);
  return object == nullptr ? nullptr : object->value.node;
}

QmXpathObject* QM_XPATH_GetArgumentByType(RtkStack* stack, uint32_t type) {
  const auto* object = static_cast<const QmXpathObject*>(RTK_Peep(stack));
  if (object == nullptr || object->type != type) return nullptr;
  return static_cast<QmXpathObject*>(RTK_Pop(stack));
}
