// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <type_traits>

#include "types/records.h"
#include "values/range.h"

// How the segments of a list are stored, compared and widened.
struct QmtSegLayout {
  uint16_t size;  // bytes per segment; 0: the type takes no range
  QmtSegCheckFunc check;
  QmtSegConvertFunc widen;
};

// The layout of a range in a statement of this base type, or NULL for a type that
// takes no range; 0 is a range over a typedef.
const QmtSegLayout* RangeLayout(uint32_t baseType);
// The layout of a length with segments of this size, or NULL.
const QmtSegLayout* LengthLayout(uint32_t segSize);

// Looks for the segment that holds `value`: 0, QM_BELOW_SEGMENT for a value in a gap
// or below the first, 22 above the last or for a list of another layout. On a hit the
// limits for "min" and "max" of outer types are recorded, if one waits for them.
uint32_t CheckSegments(const QmtSegList* list, const QmtSegLayout* layout,
                       const QmtGenericSeg* value, QmtCheckCtx* checkCtx);

// Hands each segment, widened, to `cb`.
uint32_t ScanSegments(const QmtSegList* list, const QmtSegLayout* layout, QmStartEndScanFunc cb,
                      void* arg);

// A value against bounds of one signedness; the value travels as 64 bits.
template <typename Wide>
uint32_t CompareWithBounds(uint64_t value, Wide start, Wide end) {
  const Wide v = static_cast<Wide>(value);
  if (v < start) return QM_BELOW_SEGMENT;
  return v > end ? QM_INVALID : QM_OK;
}

template <typename Int>
uint32_t CheckSeg(const QmtGenericSeg* value, const void* segment) {
  using Wide = std::conditional_t<std::is_signed_v<Int>, int64_t, uint64_t>;
  const auto* seg = static_cast<const QmtSeg<Int>*>(segment);
  return CompareWithBounds<Wide>(value->start, seg->start, seg->end);
}

template <typename Int>
void WidenSeg(const void* segment, QmtGenericSeg* out) {
  using Wide = std::conditional_t<std::is_signed_v<Int>, int64_t, uint64_t>;
  const auto* seg = static_cast<const QmtSeg<Int>*>(segment);
  out->start = static_cast<uint64_t>(static_cast<Wide>(seg->start));
  out->end = static_cast<uint64_t>(static_cast<Wide>(seg->end));
  out->segFlags = std::is_signed_v<Int> ? QMT_SEG_SIGNED : QMT_SEG_UNSIGNED;
}

// A generic segment whose "min" and "max" are replaced by `limits`. It is signed when
// the segment or the limits are.
QmtGenericSeg ResolveMinMax(const QmtGenericSeg& seg, const QmtGenericSeg& limits);
