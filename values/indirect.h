// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

QM_BEGIN_INTERNAL_DECLS

// The checks of the kinds that hand the value on. On success the type that accepted it
// becomes `matchedType`, unless one is recorded already.
//
// By the typedef that the entry names: 28673 when there is none, or after 128 links;
// otherwise the status of the typedef's type.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataDerived(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx* checkCtx);
// By the first member that accepts it: 28681 when none does, or beyond the limits of
// values/type_check.h.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataUnion(void* body, uint32_t inputKind,
                                                    const void* input, QmtCheckCtx* checkCtx);
// By the type of the leaf at the end of the chain of leafrefs: 28678 when it is not found;
// otherwise the status of its type.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataPath(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);

QM_END_INTERNAL_DECLS
