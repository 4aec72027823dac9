// SPDX-License-Identifier: BSD-3-Clause
// Coupling what remains. An augment or a deviation whose target is not there is
// no error: it waits, and is tried again whenever a module is loaded that may
// have brought the target.

#include "loader/couple.h"

#include <qmodel/error.h>

#include "context/module_registry.h"
#include "loader/change_event.h"
#include "loader/couple_augment.h"
#include "loader/couple_deviation.h"
#include "loader/pending.h"

bool GetTargetModuleName(const char* path, char (&name)[kQmsNameSize]) {
  return QM_XPATH_SplitTargetNodeXpath(path, name, kQmsNameSize, nullptr, nullptr) == QM_OK &&
         name[0] != '\0';
}

static void CoupleRemainAndNotify(QmCtx* ctx, QmsModule* remaining, const char* eventModule) {
  static_cast<void>(QMS_LOADER_CoupleModRemainNodesToTgt(remaining));
  static_cast<void>(QMS_MOD_NotifyModuleChangeEvent(ctx, eventModule, QMS_EVENT_COUPLE, 0));
}

extern "C" {

uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module) {
  if (module == nullptr) return QM_INVALID;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next)
    static_cast<void>(QMS_NODE_CoupleAugmentNode(augment));
  for (uint32_t i = 0; i < module->deviationCount; ++i)
    static_cast<void>(QMS_MOD_CoupleDeviation(module, &module->deviations[i]));
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

}  // extern "C"
