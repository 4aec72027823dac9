// SPDX-License-Identifier: BSD-3-Clause
// Registration: the last step of every load.
//
// A module is entered into the context's trees first and then coupled: its types
// to its typedefs, its augments and deviations to the nodes of other modules. A
// coupling that fails is recorded and leaves the module registered: what it
// waits for may still come. The same function serves a module that was extended
// by merging another file into it; that one is in the trees already.

#include "loader/register.h"

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/array.h"
#include "context/context.h"
#include "context/dict.h"
#include "context/load_error.h"
#include "coupling/couple_augment.h"
#include "coupling/couple_deviation.h"
#include "loader/pending.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/module_registry.h"
#include "schema/node_value.h"
#include "schema/typedef.h"
#include "types/type.h"

static void RecordIfFailed(QmsModule* module, uint32_t status, const char* message) {
  if (status != QM_OK) QM_CTX_AddModError(module->ctx, module->name, "%s", message);
}

static uint32_t UpdateTreeDerivedCb(QmsNode* node, uint32_t /*travType*/, void* arg) {
  return QM_NODE_TreeScanAllNode(node, QMS_LOADER_ImplUpdateNodeLeafDerivedCb, arg);
}

uint32_t QMS_LOADER_ImplUpdateNodeLeafDerivedCb(QmsNode* node, uint32_t travType, void* /*arg*/) {
  if (travType == QMS_TRAV_PARENT) return QM_OK;  // seen on the way down
  QmtType* type = QMS_NODE_GetLeafSchemaRealType(node);
  return type == nullptr ? QM_OK : QMT_TYPE_UpdateRealTypeDerivedFrom(type, node->module);
}

uint32_t QMS_LOADER_UpdateGlobalTypDefDerivedFrom(QmsModule* module) {
  for (uint32_t i = 0; i < module->typedefCount; ++i) {
    const uint32_t ret = QMT_TYPE_UpdateRealTypeDerivedFrom(&module->typedefs[i].type, module);
    if (ret != QM_OK) return ret;
  }
  return QM_MOD_IterScanTopmostNode(module, UpdateTreeDerivedCb, nullptr);
}

uint32_t QMS_LOADER_FindSuffixInModMrgSource(const QmsModule* module, const char* suffix) {
  for (uint32_t i = 0; i < module->mergeSourceCount; ++i) {
    const char* known = module->mergeSources[i];
    if (known != nullptr && RTK_StrCmp(known, suffix) == 0) return 1;
  }
  return 0;
}

uint32_t QMS_LOADER_AddSuffixToModMrgSource(QmsModule* module, const char* suffix) {
  // The text first: a grown block beside a count of 0 could not be grown again.
  const char* text = QM_DICT_Insert(ModuleDict(module), suffix);
  if (text == nullptr) return QM_NO_MEMORY;
  const uint32_t ret = ExpandArrayOf(&module->mergeSources, module->mergeSourceCount, 1);
  if (ret != QM_OK) {
    ReleaseText(ModuleDict(module), &text);
    return ret;
  }
  module->mergeSources[module->mergeSourceCount++] = text;
  return QM_OK;
}

uint32_t QMS_LOADER_SaveSuccLoadingSuffix(QmsModule* module, const QmsLoadAssister* assister) {
  if (assister == nullptr) return QM_OK;
  for (uint32_t i = 0; i < assister->suffixCount; ++i) {
    // Also one whose file failed: a later load must not read it again.
    const char* suffix = assister->suffixes[i].suffix;
    if (QMS_LOADER_FindSuffixInModMrgSource(module, suffix) != 0) continue;
    const uint32_t ret = QMS_LOADER_AddSuffixToModMrgSource(module, suffix);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

void RaiseModuleEvent(QmCtx* ctx, QmsModule* module, uint32_t kind) {
  QmAgentEvent event = {};
  event.kind = kind;
  event.module = module;
  event.moduleName = module->name;
  RaiseEvent(ctx, event);
}

// A module that an unload brings back is told of by the unload, once its features are
// enabled.
static void TellOfLoad(QmCtx* ctx, QmsModule* module) {
  if (ctx->reloading != nullptr && IsToReload(ctx->reloading, module->name)) return;
  RaiseModuleEvent(ctx, module, QM_AGENT_EVENT_MODULE_LOADED);
}

uint32_t QMS_LOADER_AppendModuleToCtx(QmCtx* ctx, QmsModule* module, QmsLoadAssister* assister) {
  if (ctx == nullptr || module == nullptr) return QM_INVALID;
  const bool isNew = QM_CTX_GetModuleByModName(ctx, module->name) != module;
  const uint32_t ret = isNew ? QM_CTX_AddModuleNode(ctx, module) : uint32_t{QM_OK};
  if (ret != QM_OK) return ret;
  RecordIfFailed(module, QMS_LOADER_UpdateGlobalTypDefDerivedFrom(module),
                 "Failed to update typedef statements.");
  RecordIfFailed(module, QMS_LOADER_CoupleAugmentAndGenRelation(ctx, module),
                 "Failed to couple augment statements.");
  RecordIfFailed(module, QMS_LOADER_CoupleDeviationAndGenRelation(ctx, module),
                 "Failed to couple deviation statements.");
  static_cast<void>(QMS_LOADER_SaveSuccLoadingSuffix(module, assister));
  if (isNew) TellOfLoad(ctx, module);
  return QM_OK;
}
