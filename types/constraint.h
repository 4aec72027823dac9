// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// Every operation on constraint bodies goes through a table indexed by kind; a
// NULL slot means that the operation does not apply.
//
// A create function makes the whole body for `itemCount` items at once: the item
// array is zero-filled and `count` already is `itemCount`, so a filler writes the
// items and leaves `count` alone. Range and length ignore the number; their
// segments are allocated by the loader. A zero-filled item is destroyed and copied
// without special care, so a half-filled body is fit for both.
using QmtConsCreateFunc = void* (*)(uint32_t itemCount, uint32_t loadFlags);
using QmtConsDestroyFunc = void (*)(QmDict* dict, void* body);
using QmtConsCopyFunc = void* (*)(QmDict* dict, const void* body);
using QmtConsValidateFunc = uint32_t (*)(void* body, uint32_t inputKind, const void* input,
                                         QmtCheckCtx* checkCtx);
using QmtConsUpdateDerFunc = uint32_t (*)(void* body, QmsModule* module);
using QmtConsScanNameValueFunc = uint32_t (*)(void* body, QmNameValueScanFunc cb, void* arg);
using QmtConsScanStartEndFunc = uint32_t (*)(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                             void* arg);
using QmtBaseRestrictCheckFunc = uint32_t (*)(uint32_t baseType, const char* valueStr,
                                              QmtCheckCtx* checkCtx);

QM_BEGIN_INTERNAL_DECLS

QmtConsCreateFunc QMT_CONS_GetConsDataCreateBodyFunc(uint32_t kind);
QmtConsDestroyFunc QMT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind);
QmtConsCopyFunc QMT_CONS_GetConsDataCopyBodyFunc(uint32_t kind);
QmtConsValidateFunc QMT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind);
QmtConsUpdateDerFunc QMT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind);
QmtConsScanNameValueFunc QMT_CONS_GetConsDataScanNameValueFunc(uint32_t kind);
QmtConsScanStartEndFunc QMT_CONS_GetConsDataScanStartEndFunc(uint32_t kind);
QmtBaseRestrictCheckFunc QMT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType);

QM_END_INTERNAL_DECLS
