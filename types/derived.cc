// SPDX-License-Identifier: BSD-3-Clause
// The derived entry: the typedef that a type names.
//
// Typedefs of the own module are resolved when the module is registered; all others are
// looked up by name in every check, because their module may be unloaded and loaded
// again. A check never stores what it found: checks run side by side.
#include <qmodel/schema.h>

#include "types/check_ctx.h"
#include "types/constraint_ops.h"
#include "types/item_body.h"
#include "types/type.h"
#include "types/upcalls.h"
#include "types/value_check.h"

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

static uint32_t ResolveInModule(void* body, QmsModule* module) {
  auto* derived = static_cast<QmtConsDerived*>(body);
  // Interned names: equal texts have equal addresses.
  if (derived->resolved != nullptr || derived->moduleName != QM_MOD_GetModuleName(module)) {
    return QM_OK;
  }
  QmsTypedef* td = QMS_MOD_FindQmsTypDefByName(module, derived->typedefName);
  if (td == nullptr) return QM_INVALID;
  derived->resolved = &td->type;
  return QM_OK;
}

static void* CreateDerived(uint32_t, uint32_t) {
  return NewRecord<QmtConsDerived>();
}

static void DestroyDerived(QmDict* dict, void* body) {
  auto* derived = static_cast<QmtConsDerived*>(body);
  if (derived == nullptr) return;
  ReleaseText(dict, &derived->moduleName);
  ReleaseText(dict, &derived->typedefName);
  g_qmMemFreeFunc(derived);
}

// The copy is not resolved: it may go to another module, and the pointer would lead into
// an array that this module neither owns nor watches.
static void* CopyDerived(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsDerived*>(body);
  auto* copy = NewRecord<QmtConsDerived>();
  if (copy == nullptr) return nullptr;
  if (CopyText(dict, &copy->moduleName, src->moduleName) &&
      CopyText(dict, &copy->typedefName, src->typedefName)) {
    return copy;
  }
  DestroyDerived(dict, copy);
  return nullptr;
}

const QmtConsOps g_qmtDerivedOps = {
    CreateDerived,   DestroyDerived, CopyDerived, QMT_CONS_ValidateValueNodeAgainstDataDerived,
    ResolveInModule, nullptr,        nullptr,
};
