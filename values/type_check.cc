// SPDX-License-Identifier: BSD-3-Clause
// The check of a value against a type and everything it derives from.
//
// The derived entry is the first of a record, so the chain is checked from its built-in
// type upwards: bottom check, then the restrictions of each typedef, then those of the
// type itself. On the way down each level notes whether it states a concrete range; the
// outermost one that does has level 1, and ranges below it are not looked at. A range
// with "min" or "max" asks the levels below it to record their limits instead.
#include "values/type_check.h"

#include <libxml/tree.h>
#include <qmodel/schema.h>

#include "context/xml_tree.h"
#include "schema/node.h"
#include "schema/node_value.h"
#include "types/type.h"
#include "values/check_table.h"

const char* QMT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void* input) {
  if (input == nullptr) return nullptr;
  if (inputKind == QMT_INPUT_STRING) return static_cast<const char*>(input);
  if (inputKind != QMT_INPUT_ELEMENT) return nullptr;
  return QM_XML_GetElemNodeContent(static_cast<const xmlNode*>(input));
}

static void EnterRangeLevel(const QmtType* type, QmtCheckCtx* checkCtx) {
  if (checkCtx->explicitRangeLevel != 0) {
    ++checkCtx->explicitRangeLevel;
  } else if ((type->rangeFlags & QMT_RANGE_CONCRETE) != 0) {
    checkCtx->explicitRangeLevel = 1;
  } else if ((type->rangeFlags & QMT_RANGE_MIN_MAX) != 0) {
    checkCtx->minMaxPending = 1;
  }
}

// The bottom of the chain: what the types above need to know, and the built-in check.
static uint32_t CheckBuiltIn(const QmtType* type, uint32_t inputKind, const void* input,
                             QmtCheckCtx* checkCtx) {
  checkCtx->baseType = type->baseType;
  checkCtx->fractionDigits = static_cast<uint16_t>(QMT_TYPE_GetTypeConsDataFractionVal(type));
  const QmtBaseRestrictCheckFunc check = QMT_CONS_GetBaseTypeDefRestrictCheckFunc(type->baseType);
  if (check == nullptr) return QM_OK;
  return check(type->baseType, QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input), checkCtx);
}

static uint32_t CheckConstraints(const QmtType* type, uint32_t inputKind, const void* input,
                                 QmtCheckCtx* checkCtx) {
  const QmtConstraint* entry = type->cons;
  for (; entry != nullptr && entry < type->cons + type->consCount; ++entry) {
    if (entry->body == nullptr) return QM_VALUE_NO_BODY;
    const QmtConsValidateFunc validate =
        QMT_CONS_GetConsDataValueRestricationCheckFunc(entry->kind);
    const uint32_t ret =
        validate == nullptr ? QM_OK : validate(entry->body, inputKind, input, checkCtx);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Of a failure the context keeps all but the count of levels: the failure ends the whole
// check that the context serves, or that of one member of a union.
static uint32_t CheckOneType(QmtType* type, uint32_t inputKind, const void* input,
                             QmtCheckCtx* checkCtx) {
  if (checkCtx->typeLevels >= kMaxTypeLevels) return QM_VALUE_BAD_UNION;
  ++checkCtx->typeLevels;
  EnterRangeLevel(type, checkCtx);
  QmtType* const outerType = checkCtx->currentType;
  checkCtx->currentType = type;
  uint32_t ret = QM_OK;
  if (type->baseType != QMT_BASE_TYPEDEF) ret = CheckBuiltIn(type, inputKind, input, checkCtx);
  if (ret == QM_OK) ret = CheckConstraints(type, inputKind, input, checkCtx);
  --checkCtx->typeLevels;
  if (ret != QM_OK) return ret;
  checkCtx->currentType = outerType;
  if (checkCtx->explicitRangeLevel != 0) --checkCtx->explicitRangeLevel;
  return QM_OK;
}

// The outermost call owns the budget that all contexts below it share. Not inlined, since
// the calls below the outermost one would carry its place on the stack.
[[gnu::noinline]] static uint32_t CheckOutermostType(QmtType* type, uint32_t inputKind,
                                                     const void* input, QmtCheckCtx* checkCtx) {
  uint32_t budget = kMaxMemberChecks;
  checkCtx->memberBudget = &budget;
  const uint32_t ret = CheckOneType(type, inputKind, input, checkCtx);
  checkCtx->memberBudget = nullptr;
  return ret;
}

uint32_t QMT_TYPE_ValidateValueNodeAgainstRealType(QmtType* type, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx) {
  if (type == nullptr || checkCtx == nullptr) return QM_INVALID;
  return checkCtx->memberBudget == nullptr ? CheckOutermostType(type, inputKind, input, checkCtx)
                                           : CheckOneType(type, inputKind, input, checkCtx);
}

// The check of a leaf's value, and the type of a union that takes it.

static QmtCheckCtx CheckCtxOf(QmsNode* node) {
  QmtCheckCtx check{};
  check.ctx = NodeCtx(node);
  check.schemaNode = node;
  return check;
}

uint32_t ValidateValue(QmsNode* node, uint32_t inputKind, const void* input,
                       QmPointerMap* targets) {
  QmtType* type = UsableType(node);
  if (type == nullptr) return QM_INVALID;
  QmtCheckCtx check = CheckCtxOf(node);
  check.targets = targets;
  return QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, &check);
}

uint32_t QM_NODE_ValidateValue(QmsNode* node, uint32_t inputKind, const void* input) noexcept {
  return ValidateValue(node, inputKind, input, nullptr);
}

QmtType* QM_NODE_FindRealTypeMatchedValue(QmsNode* node, uint32_t inputKind,
                                          const void* input) noexcept {
  QmtType* type = UsableType(node);
  if (type == nullptr) return nullptr;
  QmtCheckCtx check = CheckCtxOf(node);
  if (QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, &check) != QM_OK) {
    return nullptr;
  }
  return check.matchedType != nullptr ? check.matchedType : type;
}
