// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

QM_BEGIN_INTERNAL_DECLS

// The text of an integer as a number: `out->start`, whose flag tells the sign of the type.
// 22 when the text is none, or the type no integer; `out` then stays.
uint32_t QMT_CONS_ParseInputValStrToBasedInteger(const char* valueStr, uint32_t baseType,
                                                 QmtGenericSeg* out);

// The checks of built-in types. An integer inside the limits of its type: 0, else 28680;
// the limits are recorded when a "min" or "max" above waits for them. A length has always
// 0, and records the limits of any length.
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictRange(uint32_t baseType, const char* valueStr,
                                                     QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictLength(uint32_t baseType, const char* valueStr,
                                                      QmtCheckCtx* checkCtx);

// The checks of the constraints: 0 for a number in one of the segments, and below a type
// that states a concrete range itself; else 28680 for a range, 28677 for a length.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataRange(void* body, uint32_t inputKind,
                                                    const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataLength(void* body, uint32_t inputKind,
                                                     const void* input, QmtCheckCtx* checkCtx);

// The segments, widened, handed to `cb`, as ScanSegments() of values/segment.h does.
uint32_t QMT_CONS_ScanStartEndPairsWithRange(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                             void* arg);
uint32_t QMT_CONS_ScanStartEndPairsWithLength(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                              void* arg);

QM_END_INTERNAL_DECLS
