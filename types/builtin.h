// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// The YANG name of a built-in type, "int8"; NULL for 0 and for ids above 19.
const char* BuiltInTypeName(uint32_t baseType);
// The limits of an integer type, or NULL: those of decimal64 bound the scaled number.
const QmtLimits* IntegerLimits(uint32_t baseType);

QM_BEGIN_INTERNAL_DECLS

// The limits of a built-in type, zero for one without. 0; 22 for an id above 19, and
// without `out`.
uint32_t QMT_CONS_GetBasedIntegerMinMaxVal(uint32_t baseType, QmtLimits* out);

QM_END_INTERNAL_DECLS
