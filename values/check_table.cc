// SPDX-License-Identifier: BSD-3-Clause
// The tables of checks: by kind of constraint, and by built-in type for what runs at the
// bottom of every chain of typedefs. Types without a check of their own are checked by
// their constraint entries.
#include "values/check_table.h"

#include <iterator>

#include "context/table.h"
#include "values/decimal64.h"
#include "values/identityref.h"
#include "values/indirect.h"
#include "values/range_check.h"
#include "values/text.h"

namespace {
struct KindRow {
  uint32_t kind;
  QmtConsValidateFunc validate;
  QmtConsScanNameValueFunc scanNameValue;  // NULL: the kind has no named values
  QmtConsScanStartEndFunc scanStartEnd;    // NULL: the kind has no segments
};

struct BuiltInRow {
  uint32_t id;
  QmtBaseRestrictCheckFunc check;
};
}  // namespace

constexpr KindRow kKinds[] = {
    {QMT_CONS_DERIVED, QMT_CONS_ValidateValueNodeAgainstDataDerived, nullptr, nullptr},
    {QMT_CONS_BASE, QMT_CONS_ValidateValueNodeAgainstDataBase, nullptr, nullptr},
    {QMT_CONS_BIT, QMT_CONS_ValidateValueNodeAgainstDataBit, ScanBits, nullptr},
    {QMT_CONS_ENUM, QMT_CONS_ValidateValueNodeAgainstDataEnum, ScanEnums, nullptr},
    {QMT_CONS_FRACTION, QMT_CONS_ValidateValueNodeAgainstDataFraction, nullptr, nullptr},
    {QMT_CONS_LENGTH, QMT_CONS_ValidateValueNodeAgainstDataLength, nullptr,
     QMT_CONS_ScanStartEndPairsWithLength},
    {QMT_CONS_PATH, QMT_CONS_ValidateValueNodeAgainstDataPath, nullptr, nullptr},
    {QMT_CONS_PATTERN, QMT_CONS_ValidateValueNodeAgainstDataPattern, nullptr, nullptr},
    {QMT_CONS_RANGE, QMT_CONS_ValidateValueNodeAgainstDataRange, nullptr,
     QMT_CONS_ScanStartEndPairsWithRange},
    {QMT_CONS_UNION, QMT_CONS_ValidateValueNodeAgainstDataUnion, nullptr, nullptr},
};

static_assert(std::size(kKinds) == QMT_CONS_COUNT, "one row per constraint kind");
static_assert(RowsStandAtTheir<&KindRow::kind>(kKinds), "a row's index is its constraint kind");

// The operation of a kind, NULL for a kind that is none.
template <auto Operation>
static auto OperationOf(uint32_t kind) {
  return kind < QMT_CONS_COUNT ? kKinds[kind].*Operation : nullptr;
}

constexpr BuiltInRow kBuiltIns[] = {
    {QMT_BASE_TYPEDEF, nullptr},
    {QMT_BASE_BINARY, QMT_CONS_CheckValStrAgainstDefRestrictBinary},
    {QMT_BASE_BITS, nullptr},
    {QMT_BASE_BOOLEAN, QMT_CONS_CheckValStrAgainstDefRestrictBoolean},
    {QMT_BASE_DECIMAL64, QMT_CONS_CheckValStrAgainstDefRestrictDecimal64},
    {QMT_BASE_EMPTY, QMT_CONS_CheckValStrAgainstDefRestrictEmpty},
    {QMT_BASE_ENUMERATION, nullptr},
    {QMT_BASE_IDENTITYREF, nullptr},
    {QMT_BASE_INSTANCE_IDENTIFIER, nullptr},
    {QMT_BASE_INT8, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_INT16, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_INT32, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_INT64, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_LEAFREF, nullptr},
    {QMT_BASE_STRING, QMT_CONS_CheckValStrAgainstDefRestrictLength},
    {QMT_BASE_UINT8, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_UINT16, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_UINT32, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_UINT64, QMT_CONS_CheckValStrAgainstDefRestrictRange},
    {QMT_BASE_UNION, nullptr},
};

static_assert(std::size(kBuiltIns) == QMT_BASE_COUNT, "one row per built-in type");
static_assert(RowsStandAtTheir<&BuiltInRow::id>(kBuiltIns), "a row's index is its built-in type");

QmtConsValidateFunc QMT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind) {
  return OperationOf<&KindRow::validate>(kind);
}

QmtConsScanNameValueFunc QMT_CONS_GetConsDataScanNameValueFunc(uint32_t kind) {
  return OperationOf<&KindRow::scanNameValue>(kind);
}

QmtConsScanStartEndFunc QMT_CONS_GetConsDataScanStartEndFunc(uint32_t kind) {
  return OperationOf<&KindRow::scanStartEnd>(kind);
}

QmtBaseRestrictCheckFunc QMT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType) {
  return baseType < QMT_BASE_COUNT ? kBuiltIns[baseType].check : nullptr;
}
