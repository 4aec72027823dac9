// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// The limits of one top-level check. Members of unions are checked with contexts of
// their own, in which the count of derived links starts again; without limits that
// pass through those contexts a typedef that contains itself through a union would
// recurse for ever, and nested unions would try exponentially many members.
constexpr uint32_t kMaxUnionDepth = 128;
constexpr uint32_t kMaxMemberChecks = 65536;
// Types under check at one moment. One context reaches about 130, so only nested
// unions meet this limit; it keeps the stack small.
constexpr uint32_t kMaxTypeLevels = 1024;

// QM_NODE_ValidateValue(), which keeps the targets of leafrefs in `targets`, unless that is
// NULL: while the schema does not change they are the same in each check.
uint32_t ValidateValue(QmsNode* node, uint32_t inputKind, const void* input, QmPointerMap* targets);

QM_BEGIN_INTERNAL_DECLS

// The value check: 0, or the code of the first check that fails; 22 without type or
// context. `input` is a text or an element, see QmtInputKind. A check context serves one
// top-level check; nothing but the context is written.
uint32_t QMT_TYPE_ValidateValueNodeAgainstRealType(QmtType* type, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
// The value text of an input, borrowed; NULL when there is none.
const char* QMT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void* input);

QM_END_INTERNAL_DECLS
