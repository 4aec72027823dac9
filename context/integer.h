// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_UTL_ReadInputStrAsSignedInteger(const char* str, char** end, uint32_t notUsed,
                                            int64_t* out);
uint32_t QM_UTL_ReadInputStrAsUnsignedInteger(const char* str, char** end, uint32_t notUsed,
                                              uint64_t* out);

QM_END_INTERNAL_DECLS
