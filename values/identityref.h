// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

QM_BEGIN_INTERNAL_DECLS

// The check of the bases of an identityref: 0 for an identity that is one of them or
// derived from one; 28674 for any other value; 12 without memory for a wide graph.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataBase(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);

QM_END_INTERNAL_DECLS
