// SPDX-License-Identifier: BSD-3-Clause
// Segment lists: the bodies of range and length.
//
// The segments stand in ascending order, as the model wrote them. A value is looked for
// from the first on: below a segment's start it lies in a gap, and the search ends. The
// outer type's "min" and "max" mean the limits of the type below, so a hit notes the
// first start and the last end for the types that are checked after this one.
#include <cstddef>

#include "values/segment.h"

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
