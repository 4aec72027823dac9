// SPDX-License-Identifier: BSD-3-Clause
// Types that let another type decide: a typedef's, the members of a union, the leaf that a
// leafref refers to.
#include "values/indirect.h"

#include <qmodel/schema.h>

#include "context/pointer_map.h"
#include "schema/module_registry.h"
#include "schema/node_value.h"
#include "types/type.h"
#include "values/type_check.h"

// A context for a check inside the check of `outer`: only the schema context, the
// schema node and the limits pass over.
static QmtCheckCtx NestedCheckCtx(const QmtCheckCtx* outer) {
  QmtCheckCtx nested{};
  nested.ctx = outer->ctx;
  nested.schemaNode = outer->schemaNode;
  nested.unionDepth = outer->unionDepth;
  nested.typeLevels = outer->typeLevels;
  nested.memberBudget = outer->memberBudget;
  nested.targets = outer->targets;
  return nested;
}

// The first type that accepted the value stays recorded.
static void RecordMatch(QmtCheckCtx* checkCtx, QmtType* type) {
  if (checkCtx->matchedType == nullptr) checkCtx->matchedType = type;
}

// The derived entry: the typedef that a type names.
//
// Typedefs of the own module are resolved when the module is registered; all others are
// looked up by name in every check, because their module may be unloaded and loaded
// again. A check never stores what it found: checks run side by side.

constexpr uint32_t kMaxDerivedDepth = 128;

static QmtType* TypeOfTypedef(const QmtConsDerived* derived, QmCtx* ctx) {
  if (derived->resolved != nullptr) return derived->resolved;
  if (ctx == nullptr || derived->moduleName == nullptr || derived->typedefName == nullptr) {
    return nullptr;
  }
  QmsTypedef* td =
      QM_CTX_FindTdefObjByModAndTdefName(ctx, derived->moduleName, derived->typedefName);
  return td == nullptr ? nullptr : &td->type;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataDerived(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx* checkCtx) {
  // Deliberate: the depth counts all links of one context and is never lowered.
  if (checkCtx->derivedDepth > kMaxDerivedDepth) return QM_VALUE_BAD_DERIVED;
  QmtType* type = TypeOfTypedef(static_cast<const QmtConsDerived*>(body), checkCtx->ctx);
  if (type == nullptr) return QM_VALUE_BAD_DERIVED;
  ++checkCtx->derivedDepth;
  const uint32_t ret = QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, checkCtx);
  if (ret == QM_OK) RecordMatch(checkCtx, type);
  return ret;
}

// Unions (RFC 7950 section 9.12): the first member that accepts the value wins.
//
// Every member is checked with a context that begins anew, so that what one member left
// behind does not reach the next. What must pass through are the limits against unions
// that contain themselves or multiply: how deep unions are nested, and how many members
// the whole check may try. Since unions nest on the stack, the context is not made a
// second time: what begins anew is set aside, which takes less.
namespace {

// What begins anew.
struct MemberState {
  uint16_t derivedDepth;
  uint16_t fractionDigits;
  uint32_t binaryLength;
  uint32_t baseType;
  uint32_t explicitRangeLevel;
  uint32_t minMaxPending;
  QmtGenericSeg parentLimits;
  QmtType* currentType;
  QmtType* matchedType;
};

}  // namespace

static MemberState StateOf(const QmtCheckCtx* ctx) {
  return {ctx->derivedDepth, ctx->fractionDigits,     ctx->binaryLength,
          ctx->baseType,     ctx->explicitRangeLevel, ctx->minMaxPending,
          ctx->parentLimits, ctx->currentType,        ctx->matchedType};
}

static void SetState(QmtCheckCtx* ctx, const MemberState* state) {
  ctx->derivedDepth = state->derivedDepth;
  ctx->fractionDigits = state->fractionDigits;
  ctx->binaryLength = state->binaryLength;
  ctx->baseType = state->baseType;
  ctx->explicitRangeLevel = state->explicitRangeLevel;
  ctx->minMaxPending = state->minMaxPending;
  ctx->parentLimits = state->parentLimits;
  ctx->currentType = state->currentType;
  ctx->matchedType = state->matchedType;
}

// Neither of the two is inlined: the frame that nests would hold what they move twice.
[[gnu::noinline]] static void BeginMember(QmtCheckCtx* ctx, MemberState* outer) {
  constexpr MemberState kNew{};
  *outer = StateOf(ctx);
  SetState(ctx, &kNew);
  ++ctx->unionDepth;
}

// The type that accepted the value; NULL when it is the member itself, or none.
[[gnu::noinline]] static QmtType* EndMember(QmtCheckCtx* ctx, const MemberState* outer) {
  QmtType* matched = ctx->matchedType;
  SetState(ctx, outer);
  --ctx->unionDepth;
  return matched;
}

static bool TakeMemberCheck(const QmtCheckCtx* checkCtx) {
  if (checkCtx->memberBudget == nullptr) return true;
  if (*checkCtx->memberBudget == 0) return false;
  --*checkCtx->memberBudget;
  return true;
}

// The type that accepted the value, or NULL. The code of the failure is of no use: that
// of the union is reported.
static QmtType* MatchMember(QmtType* member, uint32_t inputKind, const void* input,
                            QmtCheckCtx* checkCtx) {
  MemberState outer;
  BeginMember(checkCtx, &outer);
  const uint32_t ret =
      QMT_TYPE_ValidateValueNodeAgainstRealType(member, inputKind, input, checkCtx);
  QmtType* matched = EndMember(checkCtx, &outer);
  if (ret != QM_OK) return nullptr;
  return matched != nullptr ? matched : member;
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

// leafref (RFC 7950 section 9.9): a value must suit the type of the leaf it refers to.
//
// The target is looked up from the schema node under check and followed to the end of a
// chain of leafrefs, so the check of its type meets no further leafref. Whether an
// instance with the value exists is no matter of the type.

static QmsNode* FindTarget(const QmtCheckCtx* checkCtx) {
  QmsNode* node = checkCtx->schemaNode;
  if (checkCtx->targets == nullptr) return QM_NODE_GetLeafrefTargetNode(node, 1);
  const QmPointerEntry* known = FindPointer(checkCtx->targets, node);
  if (known != nullptr) return static_cast<QmsNode*>(known->value);
  QmsNode* target = QM_NODE_GetLeafrefTargetNode(node, 1);
  static_cast<void>(AddPointer(checkCtx->targets, node, target));  // or it is looked up again
  return target;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataPath(void* /*body*/, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx) {
  if (checkCtx->schemaNode == nullptr) return QM_VALUE_BAD_LEAFREF;
  QmsNode* target = FindTarget(checkCtx);
  QmtType* type = target == nullptr ? nullptr : QMS_NODE_GetLeafSchemaRealType(target);
  if (type == nullptr) return QM_VALUE_BAD_LEAFREF;
  QmtCheckCtx nested = NestedCheckCtx(checkCtx);
  nested.schemaNode = target;
  const uint32_t ret = QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, &nested);
  if (ret != QM_OK) return ret;
  RecordMatch(checkCtx, nested.matchedType != nullptr ? nested.matchedType : type);
  return QM_OK;
}
