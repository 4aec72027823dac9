// SPDX-License-Identifier: BSD-3-Clause
// The typedefs of a module. Types that name a typedef of their own module keep a
// pointer to its record once it is resolved. The array of typedefs moves when it
// grows, so those pointers are forgotten first: until they are set again, the
// typedef is looked up by name, with the same result.
#include <qmodel/schema.h>

#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/record_array.h"
#include "types/type.h"

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
  return AppendElem(&mod->typedefs, &mod->typedefCount, [&](QmsTypedef* td) {
    return QMS_MOD_FillTypeDef(ModuleDict(mod), td, name, realType, defaultValue);
  });
}

QmsTypedef* QMS_MOD_FindTypDefObjByName(QmsTypedef* typedefs, uint32_t count, const char* name) {
  return FindByText(typedefs, count, &QmsTypedef::name, name);
}

QmsTypedef* QMS_MOD_FindQmsTypDefByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return QMS_MOD_FindTypDefObjByName(mod->typedefs, mod->typedefCount, name);
}

void QMS_TYPE_FreeTypDefArray(QmDict* dict, QmsTypedef* typedefs, uint32_t count) {
  FreeArrayOf(dict, typedefs, count, QMS_TYPE_DestroyTypDefInner);
}
