// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// Appends one working segment to a list.
using QmtPushSegFunc = uint32_t (*)(QmtSegList* list, const QmtGenericSeg* seg);

// How the ranges of a built-in type, or of a typedef (0), are stored. A NULL
// writer: the type takes no range.
struct QmtRangeLayout {
  uint16_t segSize;
  QmtPushSegFunc pushFn;
};

// The layout for a base type (QmtBaseType); size 0 and no writer for one without ranges.
QmtRangeLayout RangeLayoutOf(uint32_t baseType);

QM_BEGIN_INTERNAL_DECLS

// The writers turn a working segment into the layout of their type and append it.
// 22 when the list is full or holds segments of another size; an unsigned one also for a
// segment with a "-" in it. The one for uint32 also writes lengths.
uint32_t QMT_LOADER_PushRangeValueIntoSegInt8Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt16Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt32Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt64Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt8Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt16Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt32Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt64Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegIntUnknown(QmtSegList* list, const QmtGenericSeg* seg);

QM_END_INTERNAL_DECLS
