// SPDX-License-Identifier: BSD-3-Clause
// Deviations (RFC 7950, section 7.20.3) and their targets.
//
// "add", "delete" and "replace" change properties of the target. "not-supported"
// removes it, and with it whatever other modules had added below. That is the
// delicate one: the runs of augments that lie in the subtree are forgotten before
// it is freed, but their augments go on counting as coupled until those with the
// deviation's path are removed, because only coupled augments are.

#include "coupling/couple_deviation.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/context.h"
#include "context/guard.h"
#include "context/relation.h"
#include "coupling/couple_augment.h"
#include "coupling/detach.h"
#include "platform/string.h"
#include "schema/deviate.h"
#include "schema/deviate_add.h"
#include "schema/deviate_delete.h"
#include "schema/deviate_replace.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "schema/target_path.h"

using DeviateFunc = uint32_t (*)(QmsModule* module, QmsNode* target, QmsDeviate* deviate);

// By QmsDeviateKind. "not-supported" needs more than these get.
constexpr DeviateFunc kDeviateFuncs[] = {nullptr, QMS_MOD_CoupleDevAdd, QMS_MOD_CoupleDevDel,
                                         nullptr, QMS_MOD_CoupleDevRepl};
static_assert(std::size(kDeviateFuncs) == QMS_DEVIATE_REPLACE + 1, "one function per kind");

static uint32_t ApplyDeviate(QmsModule* module, QmsNode* target, QmsNode* augment,
                             const QmsDeviation* deviation, QmsDeviate* deviate) {
  const uint32_t ret = QMS_MOD_RefreshDeviateDefaults(module, target, deviate);
  if (ret != QM_OK) return ret;
  if (deviate->kind == QMS_DEVIATE_NOT_SUPPORTED) {
    return QMS_MOD_CoupleDevNotSup(target, augment, module->name, deviation->targetPath);
  }
  if (deviate->kind >= std::size(kDeviateFuncs) || kDeviateFuncs[deviate->kind] == nullptr) {
    return QM_FAILED;
  }
  return kDeviateFuncs[deviate->kind](module, target, deviate);
}

// Takes a node that is about to be removed off the ends of every run that it
// begins or ends. A path may reach it without naming the augment, so all the
// augments of its module are looked at.
static void TakeOutOfRuns(QmsNode* node, QmsNode* augment) {
  if (augment != nullptr && IsCoupledAugment(augment)) {
    QMS_NODE_RemoveCoupledAugmentNodeChildLink(augment, node);
  }
  for (QmsNode* other = node->module->augmentNodes; other != nullptr; other = other->next) {
    if (IsCoupledAugment(other)) QMS_NODE_RemoveCoupledAugmentNodeChildLink(other, node);
  }
}

// True when `path` is the deviation's path or goes on below it.
static bool LeadsTo(const char* path, const char* deviationPath) {
  const size_t length = RTK_StrLen(deviationPath);
  if (path == nullptr || RTK_StrNCmp(path, deviationPath, length) != 0) return false;
  return path[length] == '\0' || path[length] == '/';
}

// Removes an augment that lost its target. Its children went with the target; if
// they did not, because a node on the way was still waiting, they go now, wherever
// the run lies: an augment owns its nodes, and without it nothing could take them out
// of a foreign tree again.
static void RemoveAugment(QmsNode* augment) {
  ForceDetach(augment);
  ForgetRunsBelow(augment->module->ctx, augment);
  static_cast<void>(QMS_NODE_Unlink(augment));
  QMS_NODE_Free(augment);
}

static uint32_t RemoveAugmentsOfModules(QmCtx* ctx, const char* const* names, uint32_t count,
                                        const char* deviatingModName, const char* deviationPath) {
  for (uint32_t i = 0; i < count; ++i) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, names[i]);
    if (module == nullptr) continue;
    const uint32_t ret =
        QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(module, deviatingModName, deviationPath);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_NODE_NotifyBeforeDeviateNotSupport(QmsNode* target, QmsNode* /*augment*/,
                                                const char* deviatingModName,
                                                const char* deviationPath) {
  if (target == nullptr || target->module == nullptr) return QM_INVALID;
  QmCtx* ctx = NodeCtx(target);
  if (ctx == nullptr || ctx->beforeDeviateNotSupportFunc == nullptr) return QM_OK;
  return ctx->beforeDeviateNotSupportFunc(ctx, target, deviatingModName, deviationPath);
}

static void TellOfRemoval(QmsNode* target, const char* deviatingModName,
                          const char* deviationPath) {
  QmAgentEvent event = {};
  event.kind = QM_AGENT_EVENT_NODE_GOING;
  event.module = target->module;
  event.moduleName = target->module->name;
  event.node = target;
  event.path = deviationPath;
  event.deviatingModule = deviatingModName;
  RaiseEvent(NodeCtx(target), event);
}

uint32_t QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(QmsModule* module,
                                                            const char* deviatingModName,
                                                            const char* deviationPath) {
  if (module == nullptr || deviationPath == nullptr) return QM_INVALID;
  QmsNode* next = nullptr;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = next) {
    next = augment->next;
    if (!IsCoupledAugment(augment) || !LeadsTo(augment->name, deviationPath)) continue;
    const uint32_t ret = QM_CTX_AddTwoModRelation(module->ctx, module->name, deviatingModName,
                                                  QM_RELATION_DEVIATION);
    if (ret != QM_OK) {
      // Without the relation the augment stays, but not its hold on the target.
      ForceDetach(augment);
      return ret;
    }
    RemoveAugment(augment);
  }
  return QM_OK;
}

uint32_t QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(QmsModule* targetModule,
                                                            const char* deviatingModName,
                                                            const char* deviationPath) {
  if (targetModule == nullptr || targetModule->ctx == nullptr) return QM_INVALID;
  QmCtx* ctx = targetModule->ctx;
  const char** names = nullptr;
  uint32_t count = 0;
  uint32_t ret = QM_CTX_CollectDepModNamesRecursive(ctx, targetModule->name, QM_RELATION_AUGMENT,
                                                    &names, &count);
  const QmHeld<const char*> held(names);
  if (ret == QM_OK) {
    ret = RemoveAugmentsOfModules(ctx, names, count, deviatingModName, deviationPath);
  }
  SettleForgottenRuns(ctx);
  return ret;
}

uint32_t QMS_MOD_CoupleDevNotSup(QmsNode* target, QmsNode* augment, const char* deviatingModName,
                                 const char* deviationPath) {
  if (target == nullptr || NodeCtx(target) == nullptr) return QM_INVALID;
  QmsModule* targetModule = target->module;  // the target is gone when it is needed
  // The client's answer changes nothing: it is told, not asked.
  static_cast<void>(
      QMS_NODE_NotifyBeforeDeviateNotSupport(target, augment, deviatingModName, deviationPath));
  TellOfRemoval(target, deviatingModName, deviationPath);
  TakeOutOfRuns(target, augment);
  ForgetRunsBelow(targetModule->ctx, target);
  static_cast<void>(QMS_NODE_Unlink(target));
  QMS_NODE_Free(target);
  return QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(targetModule, deviatingModName,
                                                            deviationPath);
}

// Deliberate: after a failure the deviates before it stay, and the whole deviation is
// tried again at each later load that concerns its target. Unloading its module gives
// everything back.
uint32_t QMS_MOD_CoupleDeviation(QmsModule* module, QmsDeviation* deviation) {
  if (module == nullptr || deviation == nullptr) return QM_INVALID;
  if ((deviation->flags & QMS_DEVIATION_APPLIED) != 0) return QM_OK;
  QmsNode* augment = nullptr;
  QmsNode* target = QM_CTX_GetTargetNode(module->ctx, deviation->targetPath, &augment);
  if (target == nullptr) return QM_OK;
  for (uint32_t i = 0; i < deviation->deviateCount; ++i) {
    QmsDeviate* deviate = &deviation->deviates[i];
    const uint32_t ret = ApplyDeviate(module, target, augment, deviation, deviate);
    if (ret != QM_OK) return ret;
    // The target is gone: nothing is left for further deviates to change.
    if (deviate->kind == QMS_DEVIATE_NOT_SUPPORTED) break;
  }
  deviation->flags |= QMS_DEVIATION_APPLIED;
  return QM_OK;
}

uint32_t QMS_LOADER_CoupleDeviationAndGenRelation(QmCtx* ctx, QmsModule* module) {
  if (ctx == nullptr || module == nullptr) return QM_INVALID;
  for (uint32_t i = 0; i < module->deviationCount; ++i) {
    QmsDeviation* deviation = &module->deviations[i];
    char target[kQmsNameSize] = "";
    if (!GetTargetModuleName(deviation->targetPath, target)) return QM_INVALID;
    static_cast<void>(QMS_MOD_CoupleDeviation(module, deviation));
    if (RTK_StrCmp(target, module->name) == 0) continue;
    const uint32_t ret = QM_CTX_AddTwoModRelation(ctx, target, module->name, QM_RELATION_DEVIATION);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
