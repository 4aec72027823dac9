// SPDX-License-Identifier: BSD-3-Clause
// The built-in types (RFC 7950 section 4.2.4): their names and limits.
#include "types/builtin.h"

#include <iterator>

#include "context/table.h"

namespace {
struct BuiltInRow {
  uint32_t id;
  const char* name;
  QmtLimits limits;
};
}  // namespace

// The limits travel as 64 bits whatever their sign.
static consteval QmtLimits SignedLimits(int64_t min, int64_t max) {
  return {static_cast<uint64_t>(min), static_cast<uint64_t>(max), QMT_SIGN_SIGNED};
}

static consteval QmtLimits UnsignedLimits(uint64_t max) {
  return {0, max, QMT_SIGN_UNSIGNED};
}

constexpr QmtLimits kNoLimits = {0, 0, QMT_SIGN_NONE};

constexpr BuiltInRow kBuiltIns[] = {
    {QMT_BASE_TYPEDEF, nullptr, kNoLimits},
    {QMT_BASE_BINARY, "binary", kNoLimits},
    {QMT_BASE_BITS, "bits", kNoLimits},
    {QMT_BASE_BOOLEAN, "boolean", kNoLimits},
    {QMT_BASE_DECIMAL64, "decimal64", SignedLimits(INT64_MIN, INT64_MAX)},
    {QMT_BASE_EMPTY, "empty", kNoLimits},
    {QMT_BASE_ENUMERATION, "enumeration", kNoLimits},
    {QMT_BASE_IDENTITYREF, "identityref", kNoLimits},
    {QMT_BASE_INSTANCE_IDENTIFIER, "instance-identifier", kNoLimits},
    {QMT_BASE_INT8, "int8", SignedLimits(INT8_MIN, INT8_MAX)},
    {QMT_BASE_INT16, "int16", SignedLimits(INT16_MIN, INT16_MAX)},
    {QMT_BASE_INT32, "int32", SignedLimits(INT32_MIN, INT32_MAX)},
    {QMT_BASE_INT64, "int64", SignedLimits(INT64_MIN, INT64_MAX)},
    {QMT_BASE_LEAFREF, "leafref", kNoLimits},
    {QMT_BASE_STRING, "string", kNoLimits},
    {QMT_BASE_UINT8, "uint8", UnsignedLimits(UINT8_MAX)},
    {QMT_BASE_UINT16, "uint16", UnsignedLimits(UINT16_MAX)},
    {QMT_BASE_UINT32, "uint32", UnsignedLimits(UINT32_MAX)},
    {QMT_BASE_UINT64, "uint64", UnsignedLimits(UINT64_MAX)},
    {QMT_BASE_UNION, "union", kNoLimits},
};

static_assert(std::size(kBuiltIns) == QMT_BASE_COUNT, "one row per built-in type");
static_assert(RowsStandAtTheir<&BuiltInRow::id>(kBuiltIns), "a row's index is its built-in type");

const char* BuiltInTypeName(uint32_t baseType) {
  return baseType < QMT_BASE_COUNT ? kBuiltIns[baseType].name : nullptr;
}

const QmtLimits* IntegerLimits(uint32_t baseType) {
  if (baseType >= QMT_BASE_COUNT || baseType == QMT_BASE_DECIMAL64) return nullptr;
  const QmtLimits* limits = &kBuiltIns[baseType].limits;
  return limits->signKind == QMT_SIGN_NONE ? nullptr : limits;
}

uint32_t QMT_CONS_GetBasedIntegerMinMaxVal(uint32_t baseType, QmtLimits* out) {
  if (baseType >= QMT_BASE_COUNT || out == nullptr) return QM_INVALID;
  *out = kBuiltIns[baseType].limits;
  return QM_OK;
}
