// SPDX-License-Identifier: BSD-3-Clause
// The built-in types (RFC 7950 section 4.2.4): names, limits, and the check that runs
// at the bottom of every chain of typedefs. Types without a check of their own are
// checked by their constraint entries.
#include <iterator>

#include "types/constraint.h"
#include "types/range.h"
#include "types/type.h"
#include "types/value_check.h"

namespace {
struct BuiltInRow {
  uint32_t id;
  const char* name;
  QmtBaseRestrictCheckFunc check;
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
constexpr QmtBaseRestrictCheckFunc kIntegerCheck = QMT_CONS_CheckValStrAgainstDefRestrictRange;

static constexpr BuiltInRow kBuiltIns[] = {
    {QMT_BASE_TYPEDEF, nullptr, nullptr, kNoLimits},
    {QMT_BASE_BINARY, "binary", QMT_CONS_CheckValStrAgainstDefRestrictBinary, kNoLimits},
    {QMT_BASE_BITS, "bits", nullptr, kNoLimits},
    {QMT_BASE_BOOLEAN, "boolean", QMT_CONS_CheckValStrAgainstDefRestrictBoolean, kNoLimits},
    {QMT_BASE_DECIMAL64, "decimal64", QMT_CONS_CheckValStrAgainstDefRestrictDecimal64,
     SignedLimits(INT64_MIN, INT64_MAX)},
    {QMT_BASE_EMPTY, "empty", QMT_CONS_CheckValStrAgainstDefRestrictEmpty, kNoLimits},
    {QMT_BASE_ENUMERATION, "enumeration", nullptr, kNoLimits},
    {QMT_BASE_IDENTITYREF, "identityref", nullptr, kNoLimits},
    {QMT_BASE_INSTANCE_IDENTIFIER, "instance-identifier", nullptr, kNoLimits},
    {QMT_BASE_INT8, "int8", kIntegerCheck, SignedLimits(INT8_MIN, INT8_MAX)},
    {QMT_BASE_INT16, "int16", kIntegerCheck, SignedLimits(INT16_MIN, INT16_MAX)},
    {QMT_BASE_INT32, "int32", kIntegerCheck, SignedLimits(INT32_MIN, INT32_MAX)},
    {QMT_BASE_INT64, "int64", kIntegerCheck, SignedLimits(INT64_MIN, INT64_MAX)},
    {QMT_BASE_LEAFREF, "leafref", nullptr, kNoLimits},
    {QMT_BASE_STRING, "string", QMT_CONS_CheckValStrAgainstDefRestrictLength, kNoLimits},
    {QMT_BASE_UINT8, "uint8", kIntegerCheck, UnsignedLimits(UINT8_MAX)},
    {QMT_BASE_UINT16, "uint16", kIntegerCheck, UnsignedLimits(UINT16_MAX)},
    {QMT_BASE_UINT32, "uint32", kIntegerCheck, UnsignedLimits(UINT32_MAX)},
    {QMT_BASE_UINT64, "uint64", kIntegerCheck, UnsignedLimits(UINT64_MAX)},
    {QMT_BASE_UNION, "union", nullptr, kNoLimits},
};

static consteval bool RowsStandAtTheirId() {
  for (uint32_t i = 0; i < std::size(kBuiltIns); ++i) {
    if (kBuiltIns[i].id != i) return false;
  }
  return true;
}
static_assert(std::size(kBuiltIns) == QMT_BASE_COUNT, "one row per built-in type");
static_assert(RowsStandAtTheirId(), "a row's index is its built-in type");

const char* BuiltInTypeName(uint32_t baseType) {
  return baseType < QMT_BASE_COUNT ? kBuiltIns[baseType].name : nullptr;
}

uint32_t QMT_CONS_GetBasedIntegerMinMaxVal(uint32_t baseType, QmtLimits* out) {
  if (baseType >= QMT_BASE_COUNT || out == nullptr) return QM_INVALID;
  *out = kBuiltIns[baseType].limits;
  return QM_OK;
}

QmtBaseRestrictCheckFunc QMT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType) {
  return baseType < QMT_BASE_COUNT ? kBuiltIns[baseType].check : nullptr;
}
