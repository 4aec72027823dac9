// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// A value against one segment: 0 inside, QM_BELOW_SEGMENT below its start, 22 above its
// end. Only segments with "min" or "max" look into the check context, for the limits.
using QmtSegCheckFunc = uint32_t (*)(const QmtGenericSeg* value, const void* segment,
                                     const QmtCheckCtx* checkCtx);
// A segment as a generic one.
using QmtSegConvertFunc = void (*)(const void* segment, QmtGenericSeg* out);

QM_BEGIN_INTERNAL_DECLS

// By base type of the statement, 0 for a range over a typedef; NULL for types that take
// no range.
QmtSegCheckFunc QMT_CONS_GetValueStrToRangeCheckFunc(uint32_t baseType);
QmtSegConvertFunc QMT_CONS_GetUniformRangeConvertFunc(uint32_t baseType);

// Value texts as numbers, 22 when the text is none. `out->start` is the integer, its flag
// tells the sign of the type. A decimal64 literal is scaled by ten to the power of the
// fraction digits: "1.5" with two of them is 150.
uint32_t QMT_CONS_ParseInputValStrToBasedInteger(const char* valueStr, uint32_t baseType,
                                                 QmtGenericSeg* out);
uint32_t QMT_CONS_ConvertValStrToDecimal64PowerInteger(const char* valueStr,
                                                       uint32_t fractionDigits, int64_t* out);

// The table entries.
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt8Signed(const QmtGenericSeg* value,
                                                      const void* segment,
                                                      const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt32Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValueAgainstRangeSegIntUnknown(const QmtGenericSeg* value,
                                                      const void* segment,
                                                      const QmtCheckCtx* checkCtx);
void QMT_CONS_ConvertSegInt32UnsignedToSegInt64(const void* segment, QmtGenericSeg* out);
uint32_t QMT_CONS_ScanStartEndPairsWithRange(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                             void* arg);
uint32_t QMT_CONS_ScanStartEndPairsWithLength(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                              void* arg);
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
uint32_t QMT_CONS_CheckValueAgainstRangeSegInt64Unsigned(const QmtGenericSeg* value,
                                                         const void* segment,
                                                         const QmtCheckCtx* checkCtx);
void QMT_CONS_ConvertSegInt8SignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt16SignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt32SignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt8UnsignedToSegInt64(const void* segment, QmtGenericSeg* out);
void QMT_CONS_ConvertSegInt16UnsignedToSegInt64(const void* segment, QmtGenericSeg* out);

QM_END_INTERNAL_DECLS
