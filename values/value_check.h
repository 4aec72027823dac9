// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// The checks behind the tables of constraint kinds and built-in types. Each returns 0 or
// its own code; `body` and `checkCtx` are never NULL. Checks by kind are called
// ValidateValueNode…, those of built-in types CheckValStr….

// Named values, RFC 7950 sections 9.6.4 and 9.7.4, handed to `cb` in stored order.
uint32_t ScanBits(void* body, QmNameValueScanFunc cb, void* arg);
uint32_t ScanEnums(void* body, QmNameValueScanFunc cb, void* arg);

QM_BEGIN_INTERNAL_DECLS

uint32_t QMT_CONS_ValidateValueNodeAgainstDataDerived(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictRange(uint32_t baseType, const char* valueStr,
                                                     QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictDecimal64(uint32_t baseType, const char* valueStr,
                                                         QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictLength(uint32_t baseType, const char* valueStr,
                                                      QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataRange(void* body, uint32_t inputKind,
                                                    const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataLength(void* body, uint32_t inputKind,
                                                     const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataFraction(void* body, uint32_t inputKind,
                                                       const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBinary(uint32_t baseType, const char* valueStr,
                                                      QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBoolean(uint32_t baseType, const char* valueStr,
                                                       QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictEmpty(uint32_t baseType, const char* valueStr,
                                                     QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataPattern(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataEnum(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataBit(void* body, uint32_t inputKind, const void* input,
                                                  QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataBase(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataPath(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
uint32_t QMT_CONS_ValidateValueNodeAgainstDataUnion(void* body, uint32_t inputKind,
                                                    const void* input, QmtCheckCtx* checkCtx);

QM_END_INTERNAL_DECLS
