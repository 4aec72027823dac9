// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

using QmtPushSegFunc = uint32_t (*)(QmtSegList* list, const QmtGenericSeg* seg);

// The state of one range or length expression while it is scanned.
struct QmtRangeParseState {
  QmtSegList* list;         // receives the segments
  QmtPushSegFunc pushFn;    // stores one segment; set by the scan
  uint32_t baseType;        // of the statement; decimal64 reads scaled numbers
  uint32_t fractionDigits;  // of the statement
  uint32_t usesMinMax;      // set when "min" or "max" occurred
  uint32_t atEnd;           // ".." was read in the current segment
};

// How the ranges of a built-in type, or of a typedef (0), are stored. A NULL
// writer: the type takes no range.
struct QmtRangeLayout {
  uint16_t segSize;
  QmtPushSegFunc pushFn;
};
QmtRangeLayout RangeLayoutOf(uint32_t baseType);

QM_BEGIN_INTERNAL_DECLS

// Reads a whole expression, RFC 7950 sections 9.2.4 and 9.4.4, and hands each of
// its segments to `pushFn`. 0 or 22; after a failure the segments stored so far
// stay in the list.
uint32_t QMT_LOADER_ScanParseRangeExprWithCb(const char* expr, QmtPushSegFunc pushFn,
                                             QmtRangeParseState* state);
// Stores the working segment and moves *pos past a following "|" and blanks.
uint32_t QMT_LOADER_PushOneSegIntPairIntoCb(QmtRangeParseState* state, QmtGenericSeg* seg,
                                            const char** pos);

// The writers turn a working segment into the layout of their type and append it.
// 22 when the list is full or holds segments of another size. The one for uint32
// also writes lengths.
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
