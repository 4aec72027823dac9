// SPDX-License-Identifier: BSD-3-Clause
// The derived entry: the typedef that a type names.
//
// Typedefs of the own module are resolved when the module is registered; all others are
// looked up by name in every check, because their module may be unloaded and loaded
// again. A check never stores what it found: checks run side by side.
#include <qmodel/schema.h>

#include "schema/module_registry.h"
#include "types/type.h"
#include "values/check_ctx.h"
#include "values/type_check.h"
#include "values/value_check.h"

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
