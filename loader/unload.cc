// SPDX-License-Identifier: BSD-3-Clause
// Unloading a module, with the modules whose schema it has changed.
//
// An augment can be taken out of its target again; a deviation cannot be undone.
// So the modules that the unloaded one deviates go with it and are read again
// from their files. The order is fixed: the set grows over the pending table;
// then every module of the set is uncoupled; then the features are saved and the
// modules destroyed; then those that are to stay are loaded again.
//
// Only the table's copies of the names are used once a module may be gone: the
// caller's text may be the module's own name.

#include "loader/unload.h"

#include <cstring>

#include <qmodel/error.h>
#include <qmodel/loader.h>
#include <qmodel/schema.h>

#include "context/list.h"
#include "context/load_error.h"
#include "context/relation.h"
#include "coupling/change_event.h"
#include "coupling/couple_augment.h"
#include "coupling/detach.h"
#include "loader/context_life.h"
#include "loader/pending.h"
#include "loader/register.h"
#include "platform/string.h"
#include "schema/module_registry.h"
#include "schema/target_path.h"

static uint32_t AppendUnlessPending(QmsModPendTbl* tbl, const char* name) {
  if (QMS_LOADER_FindModPendNodeByName(tbl, name) != nullptr) return QM_OK;
  return QMS_LOADER_AddModPendNode(tbl, name) != nullptr ? QM_OK : QM_NO_MEMORY;
}

// A module that was merged from split files comes back even when it is the one
// that was named: unloading it means reading its parts again.
static uint32_t UnloadLoadedModule(QmCtx* ctx, const QmsModule* module) {
  QmsModPendTbl tbl;
  QMS_LOADER_InitModPendTbl(&tbl);
  uint32_t ret = QM_NO_MEMORY;
  QmsModPendNode* node = QMS_LOADER_AddModPendNode(&tbl, module->name);
  if (node != nullptr) {
    node->noReload = module->mergeSourceCount == 0 ? 1 : 0;
    ret = QMS_LOADER_UnloadModUncoupleProc(ctx, &tbl);
    if (ret == QM_OK) ret = QMS_LOADER_ReloadRelatedMod(ctx, &tbl);
  }
  QMS_LOADER_DeInitModPendTbl(&tbl);
  return ret;
}

// Saves what must survive and destroys the module of one pending node.
static uint32_t RemovePendingModule(QmCtx* ctx, QmsModPendNode* node) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, node->modName);
  if (module == nullptr) return QM_OK;
  const uint32_t ret = QMS_LOADER_SaveEnabledFeatureToPendNode(module, node);
  if (ret != QM_OK) return ret;
  if (ctx->reloadModuleCbFunc != nullptr) ctx->reloadModuleCbFunc(ctx, module->name);
  // What no path led to is detached before the module is said to go.
  DetachModuleAugments(ctx, module);
  RaiseModuleEvent(ctx, module, QM_AGENT_EVENT_MODULE_GOING);
  QM_CTX_DestroyModuleNode(ctx, module);
  return QM_OK;
}

uint32_t QMS_LOADER_CheckRelTblHaveDevByWithSameName(const QmCtxModRelTbl* tbl,
                                                     const char* srcModName) {
  for (const QmListLink* link = tbl->items.next; link != &tbl->items; link = link->next) {
    const QmCtxModRelItem* item = RecordOf<QmCtxModRelItem>(link);
    if (item->relType == QM_RELATION_DEVIATION && item->srcModName == srcModName) return 0;
  }
  return 1;
}

uint32_t QMS_LOADER_IsAugAndRmvModShareSameDevaition(QmCtx* ctx, const char* augModName,
                                                     QmsModule* module) {
  const QmCtxModRelTbl* augTbl = QM_CTX_FindModRelationTbl(ctx, augModName);
  const QmCtxModRelTbl* rmvTbl = QM_CTX_FindModRelationTbl(ctx, module->name);
  if (augTbl == nullptr || rmvTbl == nullptr) return 0;
  for (const QmListLink* link = rmvTbl->items.next; link != &rmvTbl->items; link = link->next) {
    const QmCtxModRelItem* item = RecordOf<QmCtxModRelItem>(link);
    if (item->relType != QM_RELATION_DEVIATION) continue;
    if (QMS_LOADER_CheckRelTblHaveDevByWithSameName(augTbl, item->srcModName) == 0) return 1;
  }
  return 0;
}

uint32_t QMS_LOADER_UpdateIndirectDeviatedMod(QmCtx* ctx, QmsModule* module, QmsModPendTbl* tbl) {
  const QmCtxModRelTbl* rel = QM_CTX_FindModRelationTbl(ctx, module->name);
  if (rel == nullptr) return QM_OK;
  for (const QmListLink* link = rel->items.next; link != &rel->items; link = link->next) {
    const QmCtxModRelItem* item = RecordOf<QmCtxModRelItem>(link);
    if (item->relType != QM_RELATION_AUGMENT) continue;
    // The relation of a module that lost its augment to a deviation outlives the
    // module; what is not loaded must not come back from an unload.
    if (QM_CTX_GetModuleByModName(ctx, item->srcModName) == nullptr) continue;
    if (QMS_LOADER_IsAugAndRmvModShareSameDevaition(ctx, item->srcModName, module) != 1) continue;
    const uint32_t ret = AppendUnlessPending(tbl, item->srcModName);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_UnloadModDeviation(QmCtx* ctx, QmsModule* module, QmsModPendTbl* tbl) {
  char previous[kQmsNameSize] = "";
  for (uint32_t i = 0; i < module->deviationCount; ++i) {
    char target[kQmsNameSize] = "";
    if (!GetTargetModuleName(module->deviations[i].targetPath, target)) return QM_INVALID;
    if (RTK_StrCmp(target, previous) == 0) continue;
    std::memcpy(previous, target, sizeof previous);
    if (QM_CTX_GetModuleByModName(ctx, target) != nullptr) {
      const uint32_t ret = AppendUnlessPending(tbl, target);
      if (ret != QM_OK) return ret;
    }
    QM_CTX_DelTwoModRelation(ctx, target, module->name, QM_RELATION_DEVIATION);
  }
  return QM_OK;
}

uint32_t QMS_LOADER_PropagateModuleRemove(QmCtx* ctx, const char* name, QmsModPendTbl* tbl) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, name);
  if (module == nullptr) return QM_OK;
  const uint32_t ret = QMS_LOADER_UpdateIndirectDeviatedMod(ctx, module, tbl);
  return ret != QM_OK ? ret : QMS_LOADER_UnloadModDeviation(ctx, module, tbl);
}

uint32_t QMS_LOADER_UnloadSelfModAugmentAndRelation(QmCtx* ctx, QmsModule* module) {
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    char target[kQmsNameSize] = "";
    if (!GetTargetModuleName(augment->name, target)) return QM_INVALID;
    // An augment that still waits for its target has nothing to take out.
    static_cast<void>(QMS_NODE_UnCoupleAugmentNode(augment));
    QM_CTX_DelTwoModRelation(ctx, target, module->name, QM_RELATION_AUGMENT);
  }
  return QM_OK;
}

uint32_t QMS_LOADER_ProcModuleAugAndRelationUncouple(QmCtx* ctx, const char* name) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, name);
  if (module == nullptr) return QM_OK;
  const uint32_t ret = QMS_LOADER_UnloadSelfModAugmentAndRelation(ctx, module);
  if (ret != QM_OK) return ret;
  return QMS_MOD_NotifyModuleChangeEvent(ctx, name, QMS_EVENT_UNCOUPLE, 0);
}

uint32_t QMS_LOADER_UnloadModRemoveProc(QmCtx* ctx, QmsModPendTbl* tbl) {
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    const uint32_t ret = RemovePendingModule(ctx, node);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_UnloadModUncoupleProc(QmCtx* ctx, QmsModPendTbl* tbl) {
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    const uint32_t ret = QMS_LOADER_PropagateModuleRemove(ctx, node->modName, tbl);
    if (ret != QM_OK) return ret;
  }
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    const uint32_t ret = QMS_LOADER_ProcModuleAugAndRelationUncouple(ctx, node->modName);
    if (ret != QM_OK) return ret;
  }
  return QMS_LOADER_UnloadModRemoveProc(ctx, tbl);
}

uint32_t QMS_LOADER_EnableReloadModFeature(QmCtx* ctx, QmsModPendNode* node) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, node->modName);
  if (module == nullptr) return QM_NOT_FOUND;
  uint32_t ret = QM_OK;
  for (QmListLink* link = node->featPends.next; link != &node->featPends; link = link->next) {
    const auto* feature = RecordOf<QmsModFeatPend>(link);
    ret |= QM_MOD_EnableFeature(module, feature->featName);
  }
  return ret;
}

uint32_t QMS_LOADER_ReloadRelatedMod(QmCtx* ctx, QmsModPendTbl* tbl) {
  uint32_t sum = 0;
  ctx->reloading = tbl;
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    if (node->noReload != 0) continue;
    // One module that does not come back must not keep the others away.
    const uint32_t loaded = QM_CTX_LoadModule(ctx, node->modName);
    sum += loaded | QMS_LOADER_EnableReloadModFeature(ctx, node);
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, node->modName);
    if (module != nullptr) RaiseModuleEvent(ctx, module, QM_AGENT_EVENT_MODULE_BACK);
  }
  ctx->reloading = nullptr;
  return sum;
}

uint32_t QMS_LOADER_UnloadModuleProc(QmCtx* ctx, const char* modName) {
  if (ctx == nullptr || modName == nullptr) return QM_OK;
  const QmsModule* module = QM_CTX_GetModuleByModName(ctx, modName);
  if (module != nullptr) return UnloadLoadedModule(ctx, module);
  QM_CTX_DeleteErrNodeByModName(ctx->errMng, modName);
  return QM_OK;
}
