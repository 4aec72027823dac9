// SPDX-License-Identifier: BSD-3-Clause
// Type records: their entries, their copies, and look-ups in one record.
//
// A record is a built-in type or the name of a typedef, with the restrictions that its
// statement adds. Chains of typedefs are not flattened: a derived entry, always the
// first, leads to the typedef's own record. Union members are records inside the record,
// as deep as the document they were read from; the recursion here follows that depth.
#include "types/type.h"

#include <qmodel/schema.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "types/constraint.h"

uint32_t QMT_TYPE_ExpandConstraintArray(QmtType* type, uint32_t n) {
  if (type == nullptr || type->cons != nullptr) return QM_INVALID;
  return NewArrayOf(&type->cons, n);
}

void QMT_TYPE_DestroyTypeConstraintArray(QmDict* dict, QmtType* type) {
  if (type == nullptr) return;
  for (uint32_t i = 0; type->cons != nullptr && i < type->consCount; ++i) {
    const QmtConsDestroyFunc destroy = QMT_CONS_GetConsDataDestroyBodyFunc(type->cons[i].kind);
    if (destroy != nullptr) destroy(dict, type->cons[i].body);
    type->cons[i].body = nullptr;
  }
  type->consCount = 0;
  FreeAndNull(&type->cons);
}

void QMT_TYPE_DestroyQmtRealTypeInner(QmDict* dict, QmtType* type) {
  if (type == nullptr) return;
  QMT_TYPE_DestroyTypeConstraintArray(dict, type);
  type->baseType = QMT_BASE_TYPEDEF;
}

void QMT_TYPE_DestroyQmtRealType(QmDict* dict, QmtType* type) {
  if (type == nullptr) return;
  QMT_TYPE_DestroyQmtRealTypeInner(dict, type);
  g_qmMemFreeFunc(type);
}

void QMS_TYPE_DestroyTypDefInner(QmDict* dict, QmsTypedef* td) {
  if (td == nullptr) return;
  ReleaseText(dict, &td->name);
  ReleaseText(dict, &td->defaultValue);
  ReleaseText(dict, &td->units);
  QMT_TYPE_DestroyQmtRealTypeInner(dict, &td->type);
  td->type = QmtType{};
}

static bool CopyConstraint(QmDict* dict, QmtConstraint* dst, const QmtConstraint* src) {
  const QmtConsCopyFunc copy = QMT_CONS_GetConsDataCopyBodyFunc(src->kind);
  if (copy == nullptr || src->body == nullptr) return false;
  dst->kind = src->kind;
  dst->body = copy(dict, src->body);
  return dst->body != nullptr;
}

static bool CopyConstraints(QmDict* dict, QmtType* dst, const QmtType* src) {
  if (src->cons == nullptr || NewArrayOf(&dst->cons, src->consCount) != QM_OK) return false;
  for (uint32_t i = 0; i < src->consCount; ++i) {
    if (!CopyConstraint(dict, &dst->cons[i], &src->cons[i])) return false;
    ++dst->consCount;
  }
  return true;
}

uint32_t QMT_TYPE_CopyQmtRealTypeInner(QmDict* dict, QmtType* dst, const QmtType* src) {
  if (dict == nullptr || dst == nullptr || src == nullptr) return QM_INVALID;
  dst->baseType = src->baseType;
  // Deliberate: without entries the flags stay behind, they say nothing then.
  if (src->consCount == 0) return QM_OK;
  dst->rangeFlags = src->rangeFlags;
  if (CopyConstraints(dict, dst, src)) return QM_OK;
  QMT_TYPE_DestroyQmtRealTypeInner(dict, dst);
  dst->rangeFlags = 0;
  return QM_NO_MEMORY;
}

QmtType* QMT_TYPE_CopyQmtRealType(QmDict* dict, const QmtType* src) {
  QmHeld<QmtType> copy(NewRecord<QmtType>());
  if (!copy || QMT_TYPE_CopyQmtRealTypeInner(dict, copy.Get(), src) != QM_OK) return nullptr;
  return copy.Release();
}

void* QMT_TYPE_GetTypeConsDataByConsType(const QmtType* type, uint32_t kind) {
  if (type == nullptr || type->cons == nullptr) return nullptr;
  for (uint32_t i = 0; i < type->consCount; ++i) {
    if (type->cons[i].kind == kind) return type->cons[i].body;
  }
  return nullptr;
}

QmtConsDerived* QMT_TYPE_GetTypeConsDataDerived(const QmtType* type) {
  if (type == nullptr || type->cons == nullptr || type->consCount == 0) return nullptr;
  if (type->cons[0].kind != QMT_CONS_DERIVED) return nullptr;
  return static_cast<QmtConsDerived*>(type->cons[0].body);
}

uint32_t QMT_TYPE_GetTypeConsDataFractionVal(const QmtType* type) {
  const auto* fraction = static_cast<const QmtConsFraction*>(
      QMT_TYPE_GetTypeConsDataByConsType(type, QMT_CONS_FRACTION));
  return fraction == nullptr ? 0 : fraction->digits;
}

uint32_t QM_TYPE_GetDecimal64Fraction(const QmtType* type) noexcept {
  return QMT_TYPE_GetTypeConsDataFractionVal(type);
}

const char* QM_TYPE_GetTypeConsDataLeafrefPath(const QmtType* type) noexcept {
  const auto* path =
      static_cast<const QmtConsPath*>(QMT_TYPE_GetTypeConsDataByConsType(type, QMT_CONS_PATH));
  return path == nullptr ? nullptr : path->path;
}

const char* QMT_TYPE_GetInheritedTypDefName(const QmtType* type, const char** moduleName) {
  const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(type);
  if (moduleName != nullptr) *moduleName = derived == nullptr ? nullptr : derived->moduleName;
  return derived == nullptr ? nullptr : derived->typedefName;
}

uint32_t QM_TYPE_GetBuiltInBaseType(const QmtType* type) noexcept {
  return type == nullptr ? uint32_t{QMT_BASE_NONE} : type->baseType;
}

uint32_t QMT_TYPE_IsTypeWithIdentref(const QmtType* type) {
  return QM_TYPE_GetBuiltInBaseType(type) == QMT_BASE_IDENTITYREF ? 1 : 0;
}

uint32_t QMT_TYPE_IsInvalidType(const QmtType* type) {
  if (type == nullptr || type->baseType == QMT_BASE_NONE) return 1;
  return type->baseType == QMT_BASE_TYPEDEF && type->consCount == 0 ? 1 : 0;
}

void ClearResolvedInType(QmtType* type, const char* moduleName) {
  QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(type);
  // Interned names: equal texts have equal addresses.
  if (derived != nullptr && derived->moduleName == moduleName) derived->resolved = nullptr;
  const auto* members =
      static_cast<const QmtConsUnion*>(QMT_TYPE_GetTypeConsDataByConsType(type, QMT_CONS_UNION));
  if (members == nullptr || members->members == nullptr) return;
  for (uint32_t i = 0; i < members->count; ++i) {
    ClearResolvedInType(&members->members[i], moduleName);
  }
}
