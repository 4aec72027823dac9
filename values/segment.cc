// SPDX-License-Identifier: BSD-3-Clause
// Segment layouts: how one segment of a range or length is compared with a value and
// widened to the generic form.
//
// A range over a built-in integer type of at most 32 bits keeps pairs of exactly that
// type; 64-bit types, decimal64 and ranges over a typedef keep generic segments. The
// base type of the statement selects the layout of a range, the segment size that of a
// length. The functions of one table need one type, so all take the check context;
// only the generic segments with "min" and "max" look into it.
#include "values/segment.h"

#include <cstddef>
#include <iterator>
#include <type_traits>

#include "context/table.h"

template <typename Int>
static uint32_t CheckSeg(const QmtGenericSeg* value, const void* segment) {
  using Wide = std::conditional_t<std::is_signed_v<Int>, int64_t, uint64_t>;
  const auto* seg = static_cast<const QmtSeg<Int>*>(segment);
  return CompareWithBounds<Wide>(value->start, seg->start, seg->end);
}

template <typename Int>
static void WidenSeg(const void* segment, QmtGenericSeg* out) {
  using Wide = std::conditional_t<std::is_signed_v<Int>, int64_t, uint64_t>;
  const auto* seg = static_cast<const QmtSeg<Int>*>(segment);
  out->start = static_cast<uint64_t>(static_cast<Wide>(seg->start));
  out->end = static_cast<uint64_t>(static_cast<Wide>(seg->end));
  out->segFlags = std::is_signed_v<Int> ? QMT_SEG_SIGNED : QMT_SEG_UNSIGNED;
}

// A generic segment whose "min" and "max" are replaced by `limits`. It is signed when
// the segment or the limits are.
static QmtGenericSeg ResolveMinMax(const QmtGenericSeg& seg, const QmtGenericSeg& limits) {
  QmtGenericSeg out = seg;
  const uint32_t flags = seg.segFlags;
  if ((flags & kQmtSegMinMaxMask) == 0) return out;
  if ((flags & QMT_SEG_START_MIN) != 0) out.start = limits.start;
  if ((flags & QMT_SEG_START_MAX) != 0) out.start = limits.end;
  if ((flags & QMT_SEG_END_MIN) != 0) out.end = limits.start;
  if ((flags & QMT_SEG_END_MAX) != 0) out.end = limits.end;
  const uint32_t signs = (flags | limits.segFlags) & kQmtSegSignMask;
  out.segFlags = (signs & QMT_SEG_SIGNED) != 0 ? uint32_t{QMT_SEG_SIGNED} : signs;
  return out;
}

static uint32_t CompareByFlags(uint64_t value, const QmtGenericSeg& seg) {
  if ((seg.segFlags & QMT_SEG_SIGNED) != 0) {
    return CompareWithBounds<int64_t>(value, static_cast<int64_t>(seg.start),
                                      static_cast<int64_t>(seg.end));
  }
  if ((seg.segFlags & QMT_SEG_UNSIGNED) == 0) return QM_INVALID;
  return CompareWithBounds<uint64_t>(value, seg.start, seg.end);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegIntUnknown(const QmtGenericSeg* value,
                                                      const void* segment,
                                                      const QmtCheckCtx* checkCtx) {
  const auto* seg = static_cast<const QmtGenericSeg*>(segment);
  if (checkCtx == nullptr) return CompareByFlags(value->start, *seg);
  return CompareByFlags(value->start, ResolveMinMax(*seg, checkCtx->parentLimits));
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt64Signed(const QmtGenericSeg* value,
                                                       const void* segment,
                                                       const QmtCheckCtx* /*checkCtx*/) {
  const auto* seg = static_cast<const QmtGenericSeg*>(segment);
  return CompareWithBounds<int64_t>(value->start, static_cast<int64_t>(seg->start),
                                    static_cast<int64_t>(seg->end));
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt64Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* /*checkCtx*/) {
  const auto* seg = static_cast<const QmtGenericSeg*>(segment);
  return CompareWithBounds<uint64_t>(value->start, seg->start, seg->end);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt8Signed(const QmtGenericSeg* value,
                                                      const void* segment,
                                                      const QmtCheckCtx* /*checkCtx*/) {
  return CheckSeg<int8_t>(value, segment);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt16Signed(const QmtGenericSeg* value,
                                                       const void* segment,
                                                       const QmtCheckCtx* /*checkCtx*/) {
  return CheckSeg<int16_t>(value, segment);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt32Signed(const QmtGenericSeg* value,
                                                       const void* segment,
                                                       const QmtCheckCtx* /*checkCtx*/) {
  return CheckSeg<int32_t>(value, segment);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt8Unsigned(const QmtGenericSeg* value,
                                                        const void* segment,
                                                        const QmtCheckCtx* /*checkCtx*/) {
  return CheckSeg<uint8_t>(value, segment);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt16Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* /*checkCtx*/) {
  return CheckSeg<uint16_t>(value, segment);
}

uint32_t QMT_CONS_CheckValueAgainstRangeSegInt32Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* /*checkCtx*/) {
  return CheckSeg<uint32_t>(value, segment);
}

static void CopyGenericSeg(const void* segment, QmtGenericSeg* out) {
  *out = *static_cast<const QmtGenericSeg*>(segment);
}

void QMT_CONS_ConvertSegInt8SignedToSegInt64(const void* segment, QmtGenericSeg* out) {
  WidenSeg<int8_t>(segment, out);
}

void QMT_CONS_ConvertSegInt16SignedToSegInt64(const void* segment, QmtGenericSeg* out) {
  WidenSeg<int16_t>(segment, out);
}

void QMT_CONS_ConvertSegInt32SignedToSegInt64(const void* segment, QmtGenericSeg* out) {
  WidenSeg<int32_t>(segment, out);
}

void QMT_CONS_ConvertSegInt8UnsignedToSegInt64(const void* segment, QmtGenericSeg* out) {
  WidenSeg<uint8_t>(segment, out);
}

void QMT_CONS_ConvertSegInt16UnsignedToSegInt64(const void* segment, QmtGenericSeg* out) {
  WidenSeg<uint16_t>(segment, out);
}

void QMT_CONS_ConvertSegInt32UnsignedToSegInt64(const void* segment, QmtGenericSeg* out) {
  WidenSeg<uint32_t>(segment, out);
}

namespace {
// One row per built-in type; a type without range has an empty layout.
struct RangeRow {
  uint32_t id;
  QmtSegLayout layout;
};
}  // namespace

constexpr QmtSegLayout kNoLayout = {0, nullptr, nullptr};
constexpr uint16_t kGenericSize = sizeof(QmtGenericSeg);
constexpr QmtSegLayout kUnknownLayout = {kGenericSize, QMT_CONS_CheckValueAgainstRangeSegIntUnknown,
                                         CopyGenericSeg};
constexpr QmtSegLayout kSigned64Layout = {
    kGenericSize, QMT_CONS_CheckValueAgainstRangeSegInt64Signed, CopyGenericSeg};
constexpr QmtSegLayout kUnsigned64Layout = {
    kGenericSize, QMT_CONS_CheckValueAgainstRangeSegInt64Unsigned, CopyGenericSeg};
constexpr QmtSegLayout kUnsigned32Layout = {sizeof(QmtSeg<uint32_t>),
                                            QMT_CONS_CheckValueAgainstRangeSegInt32Unsigned,
                                            QMT_CONS_ConvertSegInt32UnsignedToSegInt64};

constexpr RangeRow kRangeRows[] = {
    {QMT_BASE_TYPEDEF, kUnknownLayout},
    {QMT_BASE_BINARY, kNoLayout},
    {QMT_BASE_BITS, kNoLayout},
    {QMT_BASE_BOOLEAN, kNoLayout},
    {QMT_BASE_DECIMAL64, kSigned64Layout},
    {QMT_BASE_EMPTY, kNoLayout},
    {QMT_BASE_ENUMERATION, kNoLayout},
    {QMT_BASE_IDENTITYREF, kNoLayout},
    {QMT_BASE_INSTANCE_IDENTIFIER, kNoLayout},
    {QMT_BASE_INT8,
     {sizeof(QmtSeg<int8_t>), QMT_CONS_CheckValueAgainstRangeSegInt8Signed,
      QMT_CONS_ConvertSegInt8SignedToSegInt64}},
    {QMT_BASE_INT16,
     {sizeof(QmtSeg<int16_t>), QMT_CONS_CheckValueAgainstRangeSegInt16Signed,
      QMT_CONS_ConvertSegInt16SignedToSegInt64}},
    {QMT_BASE_INT32,
     {sizeof(QmtSeg<int32_t>), QMT_CONS_CheckValueAgainstRangeSegInt32Signed,
      QMT_CONS_ConvertSegInt32SignedToSegInt64}},
    {QMT_BASE_INT64, kSigned64Layout},
    {QMT_BASE_LEAFREF, kNoLayout},
    {QMT_BASE_STRING, kNoLayout},
    {QMT_BASE_UINT8,
     {sizeof(QmtSeg<uint8_t>), QMT_CONS_CheckValueAgainstRangeSegInt8Unsigned,
      QMT_CONS_ConvertSegInt8UnsignedToSegInt64}},
    {QMT_BASE_UINT16,
     {sizeof(QmtSeg<uint16_t>), QMT_CONS_CheckValueAgainstRangeSegInt16Unsigned,
      QMT_CONS_ConvertSegInt16UnsignedToSegInt64}},
    {QMT_BASE_UINT32, kUnsigned32Layout},
    {QMT_BASE_UINT64, kUnsigned64Layout},
    {QMT_BASE_UNION, kNoLayout},
};

static_assert(std::size(kRangeRows) == QMT_BASE_COUNT, "one row per built-in type");
static_assert(RowsStandAtTheir<&RangeRow::id>(kRangeRows), "a row's index is its built-in type");

const QmtSegLayout* RangeLayout(uint32_t baseType) {
  if (baseType >= QMT_BASE_COUNT || kRangeRows[baseType].layout.size == 0) return nullptr;
  return &kRangeRows[baseType].layout;
}

const QmtSegLayout* LengthLayout(uint32_t segSize) {
  if (segSize == kUnsigned32Layout.size) return &kUnsigned32Layout;
  return segSize == kUnknownLayout.size ? &kUnknownLayout : nullptr;
}

QmtSegCheckFunc QMT_CONS_GetValueStrToRangeCheckFunc(uint32_t baseType) {
  const QmtSegLayout* layout = RangeLayout(baseType);
  return layout == nullptr ? nullptr : layout->check;
}

QmtSegConvertFunc QMT_CONS_GetUniformRangeConvertFunc(uint32_t baseType) {
  const QmtSegLayout* layout = RangeLayout(baseType);
  return layout == nullptr ? nullptr : layout->widen;
}

// Segment lists: the bodies of range and length.
//
// The segments stand in ascending order, as the model wrote them. A value is looked for
// from the first on: below a segment's start it lies in a gap, and the search ends. The
// outer type's "min" and "max" mean the limits of the type below, so a hit notes the
// first start and the last end for the types that are checked after this one.

static const void* SegAt(const QmtSegList* list, uint32_t index) {
  return static_cast<const uint8_t*>(list->segs) + size_t{index} * list->segSize;
}

static QmtGenericSeg WideSegAt(const QmtSegList* list, const QmtSegLayout* layout, uint32_t index) {
  QmtGenericSeg wide{};
  layout->widen(SegAt(list, index), &wide);
  return wide;
}

static void RecordLimits(const QmtSegList* list, const QmtSegLayout* layout,
                         QmtCheckCtx* checkCtx) {
  const QmtGenericSeg held = checkCtx->parentLimits;
  const QmtGenericSeg first = ResolveMinMax(WideSegAt(list, layout, 0), held);
  const QmtGenericSeg last = ResolveMinMax(WideSegAt(list, layout, list->count - 1u), held);
  const uint32_t signs = first.segFlags | last.segFlags;
  checkCtx->parentLimits.start = first.start;
  checkCtx->parentLimits.end = last.end;
  checkCtx->parentLimits.segFlags =
      (signs & QMT_SEG_SIGNED) != 0 ? QMT_SEG_SIGNED : QMT_SEG_UNSIGNED;
}

static bool HasLayout(const QmtSegList* list, const QmtSegLayout* layout) {
  return layout != nullptr && list->segs != nullptr && list->segSize == layout->size;
}

uint32_t CheckSegments(const QmtSegList* list, const QmtSegLayout* layout,
                       const QmtGenericSeg* value, QmtCheckCtx* checkCtx) {
  if (!HasLayout(list, layout)) return QM_INVALID;
  for (uint32_t i = 0; i < list->count; ++i) {
    const uint32_t ret = layout->check(value, SegAt(list, i), checkCtx);
    if (ret == QM_BELOW_SEGMENT) return ret;
    if (ret != QM_OK) continue;
    if (checkCtx->minMaxPending != 0) RecordLimits(list, layout, checkCtx);
    return QM_OK;
  }
  return QM_INVALID;
}

uint32_t ScanSegments(const QmtSegList* list, const QmtSegLayout* layout, QmStartEndScanFunc cb,
                      void* arg) {
  if (list == nullptr || cb == nullptr) return QM_INVALID;
  if (list->count == 0) return QM_OK;
  if (!HasLayout(list, layout)) return QM_INVALID;
  for (uint32_t i = 0; i < list->count; ++i) {
    const QmtGenericSeg wide = WideSegAt(list, layout, i);
    const uint32_t ret = cb(wide.start, wide.end, wide.segFlags, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
