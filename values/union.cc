// SPDX-License-Identifier: BSD-3-Clause
// Unions (RFC 7950 section 9.12): the first member that accepts the value wins.
//
// Every member is checked with a context of its own, so that what one member left behind
// does not reach the next. What must pass through are the limits against unions that
// contain themselves or multiply: how deep unions are nested, and how many members the
// whole check may try.
#include "types/type.h"
#include "values/check_ctx.h"
#include "values/type_check.h"
#include "values/value_check.h"

static bool TakeMemberCheck(const QmtCheckCtx* checkCtx) {
  if (checkCtx->memberBudget == nullptr) return true;
  if (*checkCtx->memberBudget == 0) return false;
  --*checkCtx->memberBudget;
  return true;
}

// The type that accepted the value, or NULL. The code of the failure is of no use: that
// of the union is reported.
static QmtType* MatchMember(QmtType* member, uint32_t inputKind, const void* input,
                            const QmtCheckCtx* checkCtx) {
  QmtCheckCtx nested = NestedCheckCtx(checkCtx);
  ++nested.unionDepth;
  if (QMT_TYPE_ValidateValueNodeAgainstRealType(member, inputKind, input, &nested) != QM_OK) {
    return nullptr;
  }
  return nested.matchedType != nullptr ? nested.matchedType : member;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataUnion(void* body, uint32_t inputKind,
                                                    const void* input, QmtCheckCtx* checkCtx) {
  const auto* own = static_cast<const QmtConsUnion*>(body);
  if (checkCtx->unionDepth >= kMaxUnionDepth) return QM_VALUE_BAD_UNION;
  for (uint32_t i = 0; own->members != nullptr && i < own->count; ++i) {
    if (!TakeMemberCheck(checkCtx)) return QM_VALUE_BAD_UNION;
    QmtType* matched = MatchMember(&own->members[i], inputKind, input, checkCtx);
    if (matched == nullptr) continue;
    RecordMatch(checkCtx, matched);
    return QM_OK;
  }
  return QM_VALUE_BAD_UNION;
}
