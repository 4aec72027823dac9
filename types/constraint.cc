// SPDX-License-Identifier: BSD-3-Clause
// The table of constraint kinds. Each kind keeps its operations in a record of its own
// file; here they get their place by kind, and the getters that guard the index.
#include "types/constraint.h"

#include <iterator>

#include "types/constraint_ops.h"

namespace {
struct KindRow {
  uint32_t kind;
  const QmtConsOps* ops;
};
}  // namespace

static constexpr KindRow kKinds[] = {
    {QMT_CONS_DERIVED, &g_qmtDerivedOps},   {QMT_CONS_BASE, &g_qmtBaseOps},
    {QMT_CONS_BIT, &g_qmtBitOps},           {QMT_CONS_ENUM, &g_qmtEnumOps},
    {QMT_CONS_FRACTION, &g_qmtFractionOps}, {QMT_CONS_LENGTH, &g_qmtLengthOps},
    {QMT_CONS_PATH, &g_qmtPathOps},         {QMT_CONS_PATTERN, &g_qmtPatternOps},
    {QMT_CONS_RANGE, &g_qmtRangeOps},       {QMT_CONS_UNION, &g_qmtUnionOps},
};

static consteval bool RowsStandAtTheirKind() {
  for (uint32_t i = 0; i < std::size(kKinds); ++i) {
    if (kKinds[i].kind != i) return false;
  }
  return true;
}
static_assert(std::size(kKinds) == QMT_CONS_COUNT, "one row per constraint kind");
static_assert(RowsStandAtTheirKind(), "a row's index is its constraint kind");

// The operation of a kind, NULL for a kind that is none.
template <auto Operation>
static auto OperationOf(uint32_t kind) {
  return kind < QMT_CONS_COUNT ? kKinds[kind].ops->*Operation : nullptr;
}

QmtConsCreateFunc QMT_CONS_GetConsDataCreateBodyFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::create>(kind);
}

QmtConsDestroyFunc QMT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::destroy>(kind);
}

QmtConsCopyFunc QMT_CONS_GetConsDataCopyBodyFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::copy>(kind);
}

QmtConsValidateFunc QMT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::validate>(kind);
}

QmtConsUpdateDerFunc QMT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::updateDerivedFrom>(kind);
}

QmtConsScanNameValueFunc QMT_CONS_GetConsDataScanNameValueFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::scanNameValue>(kind);
}

QmtConsScanStartEndFunc QMT_CONS_GetConsDataScanStartEndFunc(uint32_t kind) {
  return OperationOf<&QmtConsOps::scanStartEnd>(kind);
}
