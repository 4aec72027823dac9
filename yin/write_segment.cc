// SPDX-License-Identifier: BSD-3-Clause
//
// The writers that store a working segment of the range scanner in the layout of its
// type. Integer types of up to 32 bits have plain pairs; 64-bit types keep the generic
// segment with their sign; a range over a typedef is kept as it was read, since its
// "min" and "max" are known only when a value is checked. Deliberate: numbers are not
// checked against the type. An unsigned type truncates; a signed type truncates what
// was read as signed, and otherwise stores numbers that do not fit as 0..0.
#include "yin/write_segment.h"

#include <cstring>
#include <iterator>
#include <limits>
#include <type_traits>

#include <qmodel/error.h>

#include "context/array.h"

namespace {

template <typename Int>
struct Bounds {
  Int start;
  Int end;
};

template <typename Int>
constexpr bool kIsSmall = sizeof(Int) < sizeof(uint64_t);

}  // namespace

static uint32_t AppendSegment(QmtSegList* list, const void* seg, uint16_t size) {
  if (list == nullptr || list->segs == nullptr || list->segSize != size) return QM_INVALID;
  if (list->count >= list->capacity || list->count >= kMaxArrayCount) return QM_INVALID;
  std::memcpy(static_cast<char*>(list->segs) + static_cast<size_t>(list->count) * size, seg, size);
  ++list->count;
  return QM_OK;
}

template <typename Int>
static bool NumbersFit(const QmtGenericSeg* seg) {
  constexpr auto kMax = static_cast<uint64_t>(std::numeric_limits<Int>::max());
  return seg->start <= kMax && seg->end <= kMax;
}

template <typename Int>
static Bounds<Int> BoundsOf(const QmtGenericSeg* seg) {
  Bounds<Int> bounds = {0, 0};
  if (std::is_unsigned_v<Int> || (seg->segFlags & QMT_SEG_SIGNED) != 0 || NumbersFit<Int>(seg)) {
    bounds = {static_cast<Int>(seg->start), static_cast<Int>(seg->end)};
  }
  if ((seg->segFlags & QMT_SEG_START_MIN) != 0) bounds.start = std::numeric_limits<Int>::min();
  if ((seg->segFlags & QMT_SEG_START_MAX) != 0) bounds.start = std::numeric_limits<Int>::max();
  if ((seg->segFlags & QMT_SEG_END_MIN) != 0) bounds.end = std::numeric_limits<Int>::min();
  if ((seg->segFlags & QMT_SEG_END_MAX) != 0) bounds.end = std::numeric_limits<Int>::max();
  return bounds;
}

template <typename Int>
static uint32_t PushSegment(QmtSegList* list, const QmtGenericSeg* seg) {
  if (std::is_unsigned_v<Int> && (seg->segFlags & QMT_SEG_SIGNED) != 0) return QM_INVALID;
  const Bounds<Int> bounds = BoundsOf<Int>(seg);
  if constexpr (kIsSmall<Int>) {
    const QmtSeg<Int> pair = {bounds.start, bounds.end};
    return AppendSegment(list, &pair, sizeof(pair));
  } else {
    const QmtGenericSeg generic = {static_cast<uint64_t>(bounds.start),
                                   static_cast<uint64_t>(bounds.end),
                                   std::is_signed_v<Int> ? QMT_SEG_SIGNED : QMT_SEG_UNSIGNED};
    return AppendSegment(list, &generic, sizeof(generic));
  }
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt8Signed(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<int8_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt16Signed(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<int16_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt32Signed(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<int32_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt64Signed(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<int64_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt8Unsigned(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<uint8_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt16Unsigned(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<uint16_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt32Unsigned(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<uint32_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegInt64Unsigned(QmtSegList* list, const QmtGenericSeg* seg) {
  return PushSegment<uint64_t>(list, seg);
}

uint32_t QMT_LOADER_PushRangeValueIntoSegIntUnknown(QmtSegList* list, const QmtGenericSeg* seg) {
  return AppendSegment(list, seg, sizeof(*seg));
}

namespace {

struct LayoutRow {
  uint32_t baseType;
  QmtRangeLayout layout;
};

constexpr LayoutRow kRangeLayouts[] = {
    {QMT_BASE_TYPEDEF, {20, QMT_LOADER_PushRangeValueIntoSegIntUnknown}},
    {QMT_BASE_DECIMAL64, {20, QMT_LOADER_PushRangeValueIntoSegInt64Signed}},
    {QMT_BASE_INT8, {2, QMT_LOADER_PushRangeValueIntoSegInt8Signed}},
    {QMT_BASE_INT16, {4, QMT_LOADER_PushRangeValueIntoSegInt16Signed}},
    {QMT_BASE_INT32, {8, QMT_LOADER_PushRangeValueIntoSegInt32Signed}},
    {QMT_BASE_INT64, {20, QMT_LOADER_PushRangeValueIntoSegInt64Signed}},
    {QMT_BASE_UINT8, {2, QMT_LOADER_PushRangeValueIntoSegInt8Unsigned}},
    {QMT_BASE_UINT16, {4, QMT_LOADER_PushRangeValueIntoSegInt16Unsigned}},
    {QMT_BASE_UINT32, {8, QMT_LOADER_PushRangeValueIntoSegInt32Unsigned}},
    {QMT_BASE_UINT64, {20, QMT_LOADER_PushRangeValueIntoSegInt64Unsigned}},
};

}  // namespace

QmtRangeLayout RangeLayoutOf(uint32_t baseType) {
  for (const LayoutRow& row : kRangeLayouts) {
    if (row.baseType == baseType) return row.layout;
  }
  return {0, nullptr};
}
