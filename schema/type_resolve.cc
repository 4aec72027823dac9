// SPDX-License-Identifier: BSD-3-Clause
// From the name of a typedef to its type: once and for all inside of a module, and by
// name, link by link, for everything else.
#include "schema/type_resolve.h"

#include <qmodel/context.h>
#include <qmodel/schema.h>
#include <qmodel/types.h>

#include "schema/definitions.h"
#include "schema/module_registry.h"
#include "types/type.h"

constexpr uint32_t kMaxDerivedLinks = 128;

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

static uint32_t ResolveMembersInModule(void* body, QmsModule* module) {
  const auto* own = static_cast<const QmtConsUnion*>(body);
  for (uint32_t i = 0; own->members != nullptr && i < own->count; ++i) {
    const uint32_t ret = QMT_TYPE_UpdateRealTypeDerivedFrom(&own->members[i], module);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

QmtConsUpdateDerFunc QMT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind) {
  if (kind == QMT_CONS_DERIVED) return ResolveInModule;
  return kind == QMT_CONS_UNION ? ResolveMembersInModule : nullptr;
}

uint32_t QMT_TYPE_UpdateRealTypeDerivedFrom(QmtType* type, QmsModule* module) {
  if (type == nullptr || module == nullptr) return QM_INVALID;
  for (uint32_t i = 0; type->cons != nullptr && i < type->consCount; ++i) {
    const QmtConsUpdateDerFunc update =
        QMT_CONS_GetConsDataUpdateDerFromModFunc(type->cons[i].kind);
    if (update == nullptr || type->cons[i].body == nullptr) continue;
    const uint32_t ret = update(type->cons[i].body, module);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static QmtType* FindTypedefType(QmCtx* ctx, const char* moduleName, const char* typedefName) {
  if (ctx == nullptr || moduleName == nullptr || typedefName == nullptr) return nullptr;
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, moduleName);
  return module == nullptr ? nullptr : QM_MOD_GetRealTypeByTypDefName(module, typedefName);
}

uint32_t QM_TYPE_IterRealTypeDerivedName(QmtType* type, QmCtx* ctx, QmDerivedTypeScanFunc cb,
                                         void* arg) noexcept {
  if (type == nullptr || cb == nullptr) return QM_INVALID;
  if (type->baseType != QMT_BASE_TYPEDEF) return cb(nullptr, nullptr, type, arg);
  for (uint32_t link = 0; link < kMaxDerivedLinks; ++link) {
    const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(type);
    if (derived == nullptr) return QM_INVALID;
    type = FindTypedefType(ctx, derived->moduleName, derived->typedefName);
    const uint32_t ret = cb(derived->moduleName, derived->typedefName, type, arg);
    if (ret != QM_OK) return ret;
    if (type == nullptr || type->baseType != QMT_BASE_TYPEDEF) return QM_OK;
  }
  return QM_INVALID;
}
