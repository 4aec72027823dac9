// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

QM_BEGIN_INTERNAL_DECLS

// A literal scaled by ten to the power of the fraction digits: "1.5" with two of them is
// 150. 22 when the text is no decimal64 with so many digits; `out` then stays.
uint32_t QMT_CONS_ConvertValStrToDecimal64PowerInteger(const char* valueStr,
                                                       uint32_t fractionDigits, int64_t* out);

// The check of the built-in type: 0, or 28680, also when the chain of typedefs has given
// no fraction digits.
uint32_t QMT_CONS_CheckValStrAgainstDefRestrictDecimal64(uint32_t baseType, const char* valueStr,
                                                         QmtCheckCtx* checkCtx);
// The check of fraction-digits: always 0.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataFraction(void* body, uint32_t inputKind,
                                                       const void* input, QmtCheckCtx* checkCtx);

QM_END_INTERNAL_DECLS
