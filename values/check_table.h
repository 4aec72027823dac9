// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// What a value is asked by each kind of constraint, and by each built-in type at the
// bottom of its chain; what clients are told of each kind. A NULL function means that
// the operation does not apply.
using QmtConsValidateFunc = uint32_t (*)(void* body, uint32_t inputKind, const void* input,
                                         QmtCheckCtx* checkCtx);
using QmtConsScanNameValueFunc = uint32_t (*)(void* body, QmNameValueScanFunc cb, void* arg);
using QmtConsScanStartEndFunc = uint32_t (*)(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                             void* arg);
using QmtBaseRestrictCheckFunc = uint32_t (*)(uint32_t baseType, const char* valueStr,
                                              QmtCheckCtx* checkCtx);

QM_BEGIN_INTERNAL_DECLS

// By QmtConsKind, and by QmtBaseType; NULL for any other number.
QmtConsValidateFunc QMT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind);
QmtConsScanNameValueFunc QMT_CONS_GetConsDataScanNameValueFunc(uint32_t kind);
QmtConsScanStartEndFunc QMT_CONS_GetConsDataScanStartEndFunc(uint32_t kind);
QmtBaseRestrictCheckFunc QMT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType);

QM_END_INTERNAL_DECLS
