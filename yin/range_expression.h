// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"
#include "yin/write_segment.h"

// The state of one range or length expression while it is scanned.
struct QmtRangeParseState {
  QmtSegList* list;         // receives the segments
  QmtPushSegFunc pushFn;    // stores one segment; set by the scan
  uint32_t baseType;        // of the statement; decimal64 reads scaled numbers
  uint32_t fractionDigits;  // of the statement
  uint32_t usesMinMax;      // set when "min" or "max" occurred
  uint32_t atEnd;           // ".." was read in the current segment
};

QM_BEGIN_INTERNAL_DECLS

// Reads a whole expression, RFC 7950 sections 9.2.4 and 9.4.4, and hands each of
// its segments to `pushFn`. 0 or 22; after a failure the segments stored so far
// stay in the list.
uint32_t QMT_LOADER_ScanParseRangeExprWithCb(const char* expr, QmtPushSegFunc pushFn,
                                             QmtRangeParseState* state);

// Stores the working segment and moves *pos past a following "|" and blanks. 22 for a
// segment without numbers; else the writer's code.
uint32_t QMT_LOADER_PushOneSegIntPairIntoCb(QmtRangeParseState* state, QmtGenericSeg* seg,
                                            const char** pos);

QM_END_INTERNAL_DECLS
