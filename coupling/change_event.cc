// SPDX-License-Identifier: BSD-3-Clause
// Module-change events.
//
// The relation table of a module names those that augment or deviate it. When
// the module is loaded they are asked to couple to it, and before it is removed
// to let go. The items are visited in list order, the one recorded last first,
// so that a deviation may come before the augment that brings its target; it
// then waits for the next event.
//
// An augment or a deviation whose target is not there is no error: it waits, and
// is tried again whenever a module is loaded that may have brought the target.

#include "coupling/change_event.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/list.h"
#include "context/relation.h"
#include "coupling/couple_augment.h"
#include "coupling/couple_deviation.h"
#include "platform/string.h"
#include "schema/module_registry.h"
#include "schema/target_path.h"

constexpr QmsCoupleEvtFunc g_qmsCoupleEvtProcTbl[][2] = {
    {QMS_MOD_CoupleAugmentFromDepMods, QMS_MOD_UnCoupleAugmentFromDepMods},
    {QMS_MOD_CoupleDeviationFromDepMods, QMS_MOD_UnCoupleDeviationFromDepMods},
};
static_assert(std::size(g_qmsCoupleEvtProcTbl) == QM_RELATION_DEVIATION + 1, "a row per relation");
static_assert(std::size(g_qmsCoupleEvtProcTbl[0]) == QMS_EVENT_UNCOUPLE + 1, "a column per event");

static bool TargetsModule(const char* path, const char* modName) {
  char target[kQmsNameSize] = "";
  return GetTargetModuleName(path, target) && RTK_StrCmp(target, modName) == 0;
}

// What fails goes on waiting.
static void CoupleAugmentsOf(QmsModule* module) {
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    static_cast<void>(QMS_NODE_CoupleAugmentNode(augment));
  }
}

static void CoupleDeviationsOf(QmsModule* module) {
  for (uint32_t i = 0; i < module->deviationCount; ++i) {
    static_cast<void>(QMS_MOD_CoupleDeviation(module, &module->deviations[i]));
  }
}

uint32_t QMS_MOD_CoupleAugmentFromDepMods(QmCtx* ctx, const char* /*changedModName*/,
                                          const char* dependentModName, uintptr_t /*arg*/) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, dependentModName);
  if (module == nullptr) return QM_FAILED;
  CoupleAugmentsOf(module);
  return QM_OK;
}

uint32_t QMS_MOD_UnCoupleAugmentFromDepMods(QmCtx* ctx, const char* changedModName,
                                            const char* dependentModName, uintptr_t /*arg*/) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, dependentModName);
  if (module == nullptr) return QM_FAILED;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    if (TargetsModule(augment->name, changedModName)) {
      static_cast<void>(QMS_NODE_UnCoupleAugmentNode(augment));
    }
  }
  return QM_OK;
}

uint32_t QMS_MOD_CoupleDeviationFromDepMods(QmCtx* ctx, const char* /*changedModName*/,
                                            const char* dependentModName, uintptr_t /*arg*/) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, dependentModName);
  if (module == nullptr) return QM_FAILED;
  CoupleDeviationsOf(module);
  return QM_OK;
}

uint32_t QMS_MOD_UnCoupleDeviationFromDepMods(QmCtx* ctx, const char* changedModName,
                                              const char* dependentModName, uintptr_t /*arg*/) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, dependentModName);
  if (module == nullptr) return QM_FAILED;
  for (uint32_t i = 0; i < module->deviationCount; ++i) {
    QmsDeviation* deviation = &module->deviations[i];
    if (TargetsModule(deviation->targetPath, changedModName)) {
      deviation->flags = static_cast<uint16_t>(deviation->flags & ~QMS_DEVIATION_APPLIED);
    }
  }
  return QM_OK;
}

QmsCoupleEvtFunc QMS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event) {
  if (relationKind >= std::size(g_qmsCoupleEvtProcTbl)) return nullptr;
  if (event >= std::size(g_qmsCoupleEvtProcTbl[0])) return nullptr;
  return g_qmsCoupleEvtProcTbl[relationKind][event];
}

uint32_t QMS_MOD_NotifyModuleChangeEvent(QmCtx* ctx, const char* moduleName, uint32_t event,
                                         uintptr_t arg) {
  if (ctx == nullptr || moduleName == nullptr) return QM_OK;
  QmCtxModRelTbl* tbl = QM_CTX_FindModRelationTbl(ctx, moduleName);
  if (tbl == nullptr) return QM_OK;
  QmListLink* next = nullptr;
  for (QmListLink* link = tbl->items.next; link != &tbl->items; link = next) {
    // Read first: a handler may add items at the head, which this walk leaves out.
    next = link->next;
    const QmCtxModRelItem* item = RecordOf<QmCtxModRelItem>(link);
    const QmsCoupleEvtFunc handler = QMS_MOD_GetCoupleEvtProcFunc(item->relType, event);
    if (handler != nullptr) static_cast<void>(handler(ctx, moduleName, item->srcModName, arg));
  }
  return QM_OK;
}

uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module) {
  if (module == nullptr) return QM_INVALID;
  CoupleAugmentsOf(module);
  CoupleDeviationsOf(module);
  return QM_OK;
}
