// SPDX-License-Identifier: BSD-3-Clause
// Unions (RFC 7950 section 9.12): the first member that accepts the value wins.
//
// Every member is checked with a context of its own, so that what one member left behind
// does not reach the next. What must pass through are the limits against unions that
// contain themselves or multiply: how deep unions are nested, and how many members the
// whole check may try.
#include "context/array.h"
#include "context/guard.h"
#include "types/check_ctx.h"
#include "types/constraint_ops.h"
#include "types/type.h"
#include "types/value_check.h"

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

static uint32_t ResolveMembersInModule(void* body, QmsModule* module) {
  const auto* own = static_cast<const QmtConsUnion*>(body);
  for (uint32_t i = 0; own->members != nullptr && i < own->count; ++i) {
    const uint32_t ret = QMT_TYPE_UpdateRealTypeDerivedFrom(&own->members[i], module);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static QmtConsUnion* NewUnion(uint32_t itemCount) {
  if (itemCount > kMaxArrayCount) return nullptr;
  QmHeld<QmtConsUnion> own(NewRecord<QmtConsUnion>());
  if (!own || NewArrayOf(&own->members, itemCount) != QM_OK) return nullptr;
  own->count = static_cast<uint16_t>(itemCount);
  return own.Release();
}

static void* CreateUnion(uint32_t itemCount, uint32_t) {
  return NewUnion(itemCount);
}

static void DestroyUnion(QmDict* dict, void* body) {
  auto* own = static_cast<QmtConsUnion*>(body);
  if (own == nullptr) return;
  for (uint32_t i = 0; own->members != nullptr && i < own->count; ++i) {
    QMT_TYPE_DestroyQmtRealTypeInner(dict, &own->members[i]);
  }
  g_qmMemFreeFunc(own->members);
  g_qmMemFreeFunc(own);
}

static void* CopyUnion(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsUnion*>(body);
  QmtConsUnion* copy = NewUnion(src->count);
  if (copy == nullptr) return nullptr;
  for (uint32_t i = 0; src->members != nullptr && i < src->count; ++i) {
    if (QMT_TYPE_CopyQmtRealTypeInner(dict, &copy->members[i], &src->members[i]) == QM_OK) continue;
    DestroyUnion(dict, copy);
    return nullptr;
  }
  return copy;
}

const QmtConsOps g_qmtUnionOps = {
    CreateUnion,
    DestroyUnion,
    CopyUnion,
    QMT_CONS_ValidateValueNodeAgainstDataUnion,
    ResolveMembersInModule,
    nullptr,
    nullptr,
};
