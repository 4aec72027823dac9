// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

using QmtPushSegFunc = uint32_t (*)(QmtSegList* list, const QmtGenericSeg* seg);

// The state of one range or length expression while it is scanned.
struct QmtRangeParseState {
  QmtSegList* list;         // receives the segments
  QmtPushSegFunc pushFn;    // stores one segment
  uint32_t baseType;        // of the statement; decimal64 reads scaled numbers
  uint32_t fractionDigits;  // of the statement
  uint32_t usesMinMax;      // set when "min" or "max" occurred
};

QM_BEGIN_INTERNAL_DECLS

uint32_t QMT_LOADER_ScanParseRangeExprWithCb(const char* expr, QmtPushSegFunc pushFn,
                                             QmtRangeParseState* state);
uint32_t QMT_LOADER_PushOneSegIntPairIntoCb(QmtRangeParseState* state, QmtGenericSeg* seg,
                                            const char** pos);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt8Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt64Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegIntUnknown(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt16Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt32Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt64Signed(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt8Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt16Unsigned(QmtSegList* list, const QmtGenericSeg* seg);
uint32_t QMT_LOADER_PushRangeValueIntoSegInt32Unsigned(QmtSegList* list, const QmtGenericSeg* seg);

QM_END_INTERNAL_DECLS
