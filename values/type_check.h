// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

QM_BEGIN_INTERNAL_DECLS

// The value check. `input` is a text or an element, see QmtInputKind; the second
// function gives its value text, NULL when there is none. A check context serves
// one top-level check; nothing but the context is written.
uint32_t QMT_TYPE_ValidateValueNodeAgainstRealType(QmtType* type, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
const char* QMT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void* input);

QM_END_INTERNAL_DECLS
