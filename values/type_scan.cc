// SPDX-License-Identifier: BSD-3-Clause
// What clients learn about a type: its named values, bounds, members, bases, patterns
// and the typedefs it derives from. Each scan hands the items to a callback in stored
// order and stops at the first result that is not 0.
#include <qmodel/context.h>
#include <qmodel/schema.h>

#include "types/constraint.h"
#include "types/type.h"
#include "values/check_table.h"

uint32_t QM_TYPE_ScanNameValuePair(QmtType* type, QmNameValueScanFunc cb, void* arg) noexcept {
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; type->cons != nullptr && i < type->consCount; ++i) {
    const QmtConsScanNameValueFunc scan = QMT_CONS_GetConsDataScanNameValueFunc(type->cons[i].kind);
    if (scan == nullptr || type->cons[i].body == nullptr) continue;
    const uint32_t ret = scan(type->cons[i].body, cb, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_TYPE_ScanStartEndPair(QmtType* type, QmStartEndScanFunc cb, void* arg) noexcept {
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; type->cons != nullptr && i < type->consCount; ++i) {
    const QmtConsScanStartEndFunc scan = QMT_CONS_GetConsDataScanStartEndFunc(type->cons[i].kind);
    if (scan == nullptr || type->cons[i].body == nullptr) continue;
    const uint32_t ret = scan(type->cons[i].body, type->baseType, cb, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_TYPE_ScanUnionSubType(QmtType* type, QmDerivedTypeScanFunc cb, void* arg) noexcept {
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  const auto* body =
      static_cast<const QmtConsUnion*>(QMT_TYPE_GetTypeConsDataByConsType(type, QMT_CONS_UNION));
  if (body == nullptr || body->members == nullptr) return QM_OK;
  for (uint32_t i = 0; i < body->count; ++i) {
    const uint32_t ret = cb(nullptr, nullptr, &body->members[i], arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_TYPE_ScanIdentRefBase(QmtType* type, QmIdentBaseScanFunc cb, void* arg) noexcept {
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  const auto* body =
      static_cast<const QmtConsBase*>(QMT_TYPE_GetTypeConsDataByConsType(type, QMT_CONS_BASE));
  if (body == nullptr || body->items == nullptr) return QM_OK;
  for (uint32_t i = 0; i < body->count; ++i) {
    const uint32_t ret = cb(body->items[i].moduleName, body->items[i].identityName, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_TYPE_ScanPatternInvertMatch(QmtType* type, QmPatternScanFunc cb, void* arg) noexcept {
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  const auto* body = static_cast<const QmtConsPattern*>(
      QMT_TYPE_GetTypeConsDataByConsType(type, QMT_CONS_PATTERN));
  if (body == nullptr || body->items == nullptr) return QM_OK;
  for (uint32_t i = 0; i < body->count; ++i) {
    const uint32_t inverted = body->items[i].invertMatch != 0 ? 1 : 0;
    const uint32_t ret = cb(body->items[i].pattern, inverted, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
