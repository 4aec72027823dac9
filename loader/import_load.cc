// SPDX-License-Identifier: BSD-3-Clause
// Loads the whole import closure of a module, breadth first.
//
// The pending table is the queue of the walk. A module that is loaded or waits
// in the queue is never appended again, so modules that import each other end
// the walk. The first import that cannot be loaded ends it too; what was loaded
// until then stays, and is coupled like the rest.

#include "loader/import_load.h"

#include <qmodel/error.h>

#include "coupling/change_event.h"
#include "loader/module_load.h"
#include "loader/pending.h"
#include "schema/module_registry.h"

static bool IsLoadedOrPending(QmCtx* ctx, QmsModPendTbl* tbl, const char* name) {
  return QM_CTX_GetModuleByModName(ctx, name) != nullptr ||
         QMS_LOADER_FindModPendNodeByName(tbl, name) != nullptr;
}

static uint32_t LoadPendingModules(QmCtx* ctx, QmsModPendTbl* tbl) {
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    uint32_t ret = QMS_LOADER_LoadModuleByModName(ctx, node->modName);
    if (ret == QM_OK) ret = QMS_LOADER_AppendQmModImportsAsPending(ctx, tbl, node->modName);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static void CoupleRemainAndNotify(QmCtx* ctx, QmsModule* remaining, const char* eventModule) {
  static_cast<void>(QMS_LOADER_CoupleModRemainNodesToTgt(remaining));
  static_cast<void>(QMS_MOD_NotifyModuleChangeEvent(ctx, eventModule, QMS_EVENT_COUPLE, 0));
}

uint32_t QMS_LOADER_AppendQmModImportsAsPending(QmCtx* ctx, QmsModPendTbl* tbl,
                                                const char* modName) {
  const QmsModule* module = QM_CTX_GetModuleByModName(ctx, modName);
  if (module == nullptr) return QM_NOT_FOUND;
  for (uint32_t i = 0; i < module->importCount; ++i) {
    const char* name = module->imports[i].moduleName;
    if (name == nullptr || IsLoadedOrPending(ctx, tbl, name)) continue;
    if (QMS_LOADER_AddModPendNode(tbl, name) == nullptr) return QM_NO_MEMORY;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_CoupleModPendTblAndCurMod(QmCtx* ctx, const char* moduleName,
                                              QmsModPendTbl* tbl) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, moduleName);
  if (module == nullptr) return QM_INVALID;
  CoupleRemainAndNotify(ctx, module, moduleName);
  for (QmsModPendNode* node = FirstModPendNode(tbl); node != nullptr;
       node = NextModPendNode(tbl, node)) {
    QmsModule* pending = QM_CTX_GetModuleByModName(ctx, node->modName);
    // Deliberate: the event names the module being loaded, not the pending one.
    if (pending != nullptr) CoupleRemainAndNotify(ctx, pending, moduleName);
  }
  return QM_OK;
}

uint32_t QMS_LOADER_LoadModuleImportedNames(QmCtx* ctx, const char* modName) {
  QmsModPendTbl tbl;
  QMS_LOADER_InitModPendTbl(&tbl);
  uint32_t ret = QMS_LOADER_AppendQmModImportsAsPending(ctx, &tbl, modName);
  if (ret == QM_OK) ret = LoadPendingModules(ctx, &tbl);
  static_cast<void>(QMS_LOADER_CoupleModPendTblAndCurMod(ctx, modName, &tbl));
  QMS_LOADER_DeInitModPendTbl(&tbl);
  return ret;
}
