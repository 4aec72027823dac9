// SPDX-License-Identifier: BSD-3-Clause
// The typedefs of a module (RFC 7950 section 7.3), and from the name of a typedef to its
// type: once and for all inside of a module, and by name, link by link, for everything
// else.
//
// Types that name a typedef of their own module keep a pointer to its record once
// it is resolved. The array of typedefs moves when it grows, so those pointers are
// forgotten first: until they are set again, the typedef is looked up by name,
// with the same result.
#include "schema/typedef.h"

#include <qmodel/context.h>
#include <qmodel/schema.h>
#include <qmodel/types.h>

#include "context/dict.h"
#include "schema/module.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "schema/node_value.h"
#include "schema/record_array.h"
#include "types/type.h"

constexpr uint32_t kMaxDerivedLinks = 128;

static uint32_t ForgetResolvedInNode(QmsNode* node, uint32_t travType, void* arg) {
  if (travType == QMS_TRAV_PARENT) return QM_OK;
  QmtType* type = QMS_NODE_GetLeafSchemaRealType(node);
  if (type != nullptr) ClearResolvedInType(type, static_cast<const QmsModule*>(arg)->name);
  return QM_OK;
}

static void ForgetResolvedInTrees(QmsModule* module, QmsNode* list) {
  uint32_t ret = QM_OK;
  for (QmsNode* node = list; node != nullptr && ret == QM_OK; node = node->next) {
    ret = QM_NODE_TreeScanAllNode(node, ForgetResolvedInNode, module);
  }
}

static void ForgetResolvedInDeviates(const QmsModule* module, const QmsDeviation* deviation) {
  if (deviation->deviates == nullptr) return;
  for (uint32_t i = 0; i < deviation->deviateCount; ++i) {
    QmtType* type = deviation->deviates[i].type;
    if (type != nullptr) ClearResolvedInType(type, module->name);
  }
}

static void ForgetResolvedInTypedefs(QmsModule* module) {
  for (uint32_t i = 0; module->typedefs != nullptr && i < module->typedefCount; ++i) {
    ClearResolvedInType(&module->typedefs[i].type, module->name);
  }
}

void ClearResolvedTypedefs(QmsModule* module) {
  if (module == nullptr || module->name == nullptr) return;
  if (module->typedefs == nullptr || module->typedefCount == 0) return;
  ForgetResolvedInTypedefs(module);
  ForgetResolvedInTrees(module, module->dataNodes);
  ForgetResolvedInTrees(module, module->rpcNodes);
  ForgetResolvedInTrees(module, module->notifNodes);
  ForgetResolvedInTrees(module, module->augmentNodes);
  for (uint32_t i = 0; module->deviations != nullptr && i < module->deviationCount; ++i) {
    ForgetResolvedInDeviates(module, &module->deviations[i]);
  }
}

uint32_t QMS_MOD_FillTypeDef(QmDict* dict, QmsTypedef* td, const char* name,
                             const QmtType* realType, const char* defaultValue) {
  if (dict == nullptr || td == nullptr || name == nullptr) return QM_INVALID;
  uint32_t ret = QM_OK;
  if (!InternText(dict, &td->name, name) ||
      !InternOptional(dict, &td->defaultValue, defaultValue)) {
    ret = QM_NO_MEMORY;
  } else if (realType == nullptr ||
             QMT_TYPE_CopyQmtRealTypeInner(dict, &td->type, realType) != QM_OK) {
    ret = QM_INVALID;
  }
  if (ret != QM_OK) QMS_TYPE_DestroyTypDefInner(dict, td);
  return ret;
}

uint32_t QMS_MOD_AppendOneTypeDef(QmsModule* mod, const char* name, const QmtType* realType,
                                  const char* defaultValue) {
  ClearResolvedTypedefs(mod);
  return AppendNextTypeDef(mod, name, realType, defaultValue);
}

uint32_t AppendNextTypeDef(QmsModule* mod, const char* name, const QmtType* realType,
                           const char* defaultValue) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  ForgetResolvedInTypedefs(mod);
  return AppendTo(mod, &QmsModule::typedefs, &QmsModule::typedefCount, QMS_MOD_FillTypeDef, name,
                  realType, defaultValue);
}

QmsTypedef* QMS_MOD_FindTypDefObjByName(QmsTypedef* typedefs, uint32_t count, const char* name) {
  return FindByText(typedefs, count, &QmsTypedef::name, name);
}

QmsTypedef* QMS_MOD_FindQmsTypDefByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return FindByInterned(ModuleDictOrNull(mod), mod->typedefs, mod->typedefCount, &QmsTypedef::name,
                        name);
}

void QMS_TYPE_FreeTypDefArray(QmDict* dict, QmsTypedef* typedefs, uint32_t count) {
  FreeArrayOf(dict, typedefs, count, QMS_TYPE_DestroyTypDefInner);
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
