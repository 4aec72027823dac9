// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// Named values (RFC 7950 sections 9.6.4 and 9.7.4) handed to `cb` in stored order; the
// first result that is not 0 ends the scan and is returned. Bits come without description.
uint32_t ScanBits(void* body, QmNameValueScanFunc cb, void* arg);
uint32_t ScanEnums(void* body, QmNameValueScanFunc cb, void* arg);

QM_BEGIN_INTERNAL_DECLS

// The checks of three built-in types. A value that is NULL is empty, but neither binary
// nor boolean.
// Base64, blanks around it aside: 0, or 28683. Notes the decoded length for a length above.
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBinary(uint32_t baseType, const char* valueStr,
                                                      QmtCheckCtx* checkCtx);
// "true" or "false": 0, else 28682.
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBoolean(uint32_t baseType, const char* valueStr,
                                                       QmtCheckCtx* checkCtx);
// No text at all: 0, else 28684; a blank is a text.
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictEmpty(uint32_t baseType, const char* valueStr,
                                                     QmtCheckCtx* checkCtx);

// The checks of three kinds of constraint; without a value each gives its own code.
// One of the names, byte for byte: 0, else 28676.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataEnum(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
// A list of different bits of the type: 0, else 28675, also without memory.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataBit(void* body, uint32_t inputKind, const void* input,
                                                  QmtCheckCtx* checkCtx);
// A text that suits every pattern, and none that is inverted: 0, else 28679.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataPattern(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx* checkCtx);

QM_END_INTERNAL_DECLS
