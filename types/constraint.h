// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// Every operation on constraint bodies goes through a table indexed by kind.
//
// A create function makes the whole body for `itemCount` items at once: the item
// array is zero-filled and `count` already is `itemCount`, so a filler writes the
// items and leaves `count` alone. Range and length ignore the number; their
// segments are allocated by the loader. A zero-filled item is destroyed and copied
// without special care, so a half-filled body is fit for both.
// A copy shares nothing with its source; create and copy give NULL without memory.
using QmtConsCreateFunc = void* (*)(uint32_t itemCount, uint32_t loadFlags);
using QmtConsDestroyFunc = void (*)(QmDict* dict, void* body);
using QmtConsCopyFunc = void* (*)(QmDict* dict, const void* body);

QM_BEGIN_INTERNAL_DECLS

// The operation of a QmtConsKind; NULL for any other number.
QmtConsCreateFunc QMT_CONS_GetConsDataCreateBodyFunc(uint32_t kind);
QmtConsDestroyFunc QMT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind);
QmtConsCopyFunc QMT_CONS_GetConsDataCopyBodyFunc(uint32_t kind);

QM_END_INTERNAL_DECLS
