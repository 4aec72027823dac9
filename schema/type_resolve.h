// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

using QmtConsUpdateDerFunc = uint32_t (*)(void* body, QmsModule* module);

QM_BEGIN_INTERNAL_DECLS

// Sets `resolved` of the derived entries that name typedefs of `module`: 0; 22 when one
// does not exist there, and without type or module. The pointers lead into the typedef
// array of the module: whoever moves or frees that array calls ClearResolvedInType() first.
uint32_t QMT_TYPE_UpdateRealTypeDerivedFrom(QmtType* type, QmsModule* module);

// Resolves the body of one kind; NULL for kinds that name no typedef.
QmtConsUpdateDerFunc QMT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind);

QM_END_INTERNAL_DECLS
