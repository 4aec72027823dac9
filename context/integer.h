// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// Reads a decimal integer after blanks, tabs and newlines into *out, and stores the
// place after its digits in *end unless `end` is NULL; what stands there is not
// judged. The third argument is not used. 22, with both untouched, when there is no
// digit, the number does not fit or `str` or `out` is NULL; for an unsigned one also
// when a "-" follows the blanks directly.
uint32_t QM_UTL_ReadInputStrAsSignedInteger(const char* str, char** end, uint32_t notUsed,
                                            int64_t* out);
uint32_t QM_UTL_ReadInputStrAsUnsignedInteger(const char* str, char** end, uint32_t notUsed,
                                              uint64_t* out);

QM_END_INTERNAL_DECLS
