// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// A value against one segment: 0 inside, QM_BELOW_SEGMENT below its start, 22 above its
// end. Only segments with "min" or "max" look into the check context, for the limits.
using QmtSegCheckFunc = uint32_t (*)(const QmtGenericSeg* value, const void* segment,
                                     const QmtCheckCtx* checkCtx);
// A segment as a generic one.
using QmtSegConvertFunc = void (*)(const void* segment, QmtGenericSeg* out);

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

// Hands each segment, widened, to `cb`; the first result that is not 0 ends the scan and
// is returned. 22 without list or `cb`, and for a list of another layout.
uint32_t ScanSegments(const QmtSegList* list, const QmtSegLayout* layout, QmStartEndScanFunc cb,
                      void* arg);

// A value against bounds of one signedness; the value travels as 64 bits.
template <typename Wide>
uint32_t CompareWithBounds(uint64_t value, Wide start, Wide end) {
  const Wide v = static_cast<Wide>(value);
  if (v < start) return QM_BELOW_SEGMENT;
  return v > end ? QM_INVALID : QM_OK;
}

QM_BEGIN_INTERNAL_DECLS

// The two functions of a layout by base type of the statement, 0 for a range over a
// typedef; NULL for types that take no range.
QmtSegCheckFunc QMT_CONS_GetValueStrToRangeCheckFunc(uint32_t baseType);
QmtSegConvertFunc QMT_CONS_GetUniformRangeConvertFunc(uint32_t baseType);

// The checks of the layouts. That of an unknown integer goes by the flags of its segment
// and takes "min" and "max" from the check context, if there is one; a segment without a
// sign holds no value, 22.
uint32_t QMT_CONS_CheckValueAgainstRangeSegIntUnknown(const QmtGenericSeg* value,
                                                      const void* segment,
                                                      const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt8Signed(const QmtGenericSeg* value,
                                                      const void* segment,
                                                      const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt16Signed(const QmtGenericSeg* value,
                                                       const void* segment,
                                                       const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt32Signed(const QmtGenericSeg* value,
                                                       const void* segment,
                                                       const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt64Signed(const QmtGenericSeg* value,
                                                       const void* segment,
                                                       const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt8Unsigned(const QmtGenericSeg* value,
                                                        const void* segment,
                                                        const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt16Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt32Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt64Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* checkCtx);

// The segments of small integers as generic ones; generic ones are only copied.
void QMT_CONS_ConvertSegInt8SignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt16SignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt32SignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt8UnsignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt16UnsignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt32UnsignedToSegInt64(const void* segment, QmtGenericSeg* out);

QM_END_INTERNAL_DECLS
