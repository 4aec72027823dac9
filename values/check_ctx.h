// SPDX-License-Identifier: BSD-3-Clause
#pragma once
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

// A context for a check inside the check of `outer`: only the schema context, the
// schema node and the limits pass over.
inline QmtCheckCtx NestedCheckCtx(const QmtCheckCtx* outer) {
  QmtCheckCtx nested{};
  nested.ctx = outer->ctx;
  nested.schemaNode = outer->schemaNode;
  nested.unionDepth = outer->unionDepth;
  nested.typeLevels = outer->typeLevels;
  nested.memberBudget = outer->memberBudget;
  return nested;
}

// The first type that accepted the value stays recorded.
inline void RecordMatch(QmtCheckCtx* checkCtx, QmtType* type) {
  if (checkCtx->matchedType == nullptr) checkCtx->matchedType = type;
}
