// SPDX-License-Identifier: BSD-3-Clause
// Letting go of runs without looking up a path.
//
// A coupled augment marks a run of its children inside a foreign child list. The
// regular way out looks the target up by its path, which may not lead there any
// more: a node on the way is gone, or another one of that name came before it.
// When a module or a subtree goes, no augment may keep a pointer into it and no
// node may outlive its module. So here the run's own links say where it lies.
//
// Which augments have a run there is found by asking all of all modules. A module counts
// the runs under its nodes, so that the many under which none lies need not ask.

#include "coupling/detach.h"

#include <qmodel/error.h>

#include "coupling/couple_augment.h"
#include "platform/avl.h"
#include "schema/node.h"
#include "schema/node_link.h"

// A private mark of augment nodes, set only while a subtree is being removed.
constexpr uint32_t kRunForgotten = 1u << 31;

// Calls `visit(augment)` for every coupled augment of every module.
template <typename Visit>
static void ForEachCoupledAugment(QmCtx* ctx, Visit visit) {
  for (void* record = RTK_AVL3_First(&ctx->modByName); record != nullptr;
       record = RTK_AVL3_Next(&ctx->modByName, record)) {
    const auto* module = static_cast<const QmsModule*>(record);
    for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
      if (IsCoupledAugment(augment)) visit(augment);
    }
  }
}

// The node whose children the run has joined; NULL for an augment without a run.
static QmsNode* RunTarget(const QmsNode* augment) {
  return augment->firstChild != nullptr ? augment->firstChild->parent : nullptr;
}

// What is foreign below a node hangs from a run under a node of the same module.
static bool MayHaveRunsBelow(const QmsNode* top) {
  return top->module->runCount != 0;
}

static bool RunLiesBelow(const QmsNode* augment, const QmsNode* top) {
  for (const QmsNode* node = RunTarget(augment); node != nullptr; node = node->parent) {
    if (node == top) return true;
  }
  return false;
}

void NoteRun(const QmsNode* target) {
  if (target->module != nullptr) ++target->module->runCount;
}

void ForgetRun(QmsNode* augment) {
  const QmsNode* target = RunTarget(augment);
  // Links that were set by hand have not been counted.
  if (target != nullptr && target != augment && target->module != nullptr &&
      target->module->runCount != 0) {
    --target->module->runCount;
  }
  augment->firstChild = nullptr;
  augment->lastChild = nullptr;
}

uint32_t MoveRunBack(QmsNode* augment, QmsNode* first, QmsNode* last) {
  QmsNode* next = nullptr;
  for (QmsNode* node = first; node != nullptr; node = next) {
    next = node->next;
    static_cast<void>(QMS_NODE_Unlink(node));
    static_cast<void>(QMS_NODE_AddChild(augment, node));
    if (node == last) return QM_OK;
  }
  return QM_INVALID;
}

void ForceDetach(QmsNode* augment) {
  QmsNode* first = augment->firstChild;
  QmsNode* last = augment->lastChild;
  augment->flags &= ~(kRunForgotten | QMS_NODE_COUPLED);
  // After a regular way out that broke off, the children are back already.
  if (first == nullptr || first->parent == augment) return;
  TellOfRun(augment, QM_AGENT_EVENT_AUGMENT_DETACHING);
  ForgetRun(augment);
  static_cast<void>(MoveRunBack(augment, first, last));
}

void DetachRunsBelow(QmCtx* ctx, const QmsNode* top) {
  if (!MayHaveRunsBelow(top)) return;
  ForEachCoupledAugment(ctx, [top](QmsNode* augment) {
    if (RunLiesBelow(augment, top)) ForceDetach(augment);
  });
}

void ForgetRunsBelow(QmCtx* ctx, const QmsNode* top) {
  if (!MayHaveRunsBelow(top)) return;
  ForEachCoupledAugment(ctx, [ctx, top](QmsNode* augment) {
    if (!RunLiesBelow(augment, top)) return;
    ForgetRun(augment);
    augment->flags |= kRunForgotten;
    ctx->hasForgottenRuns = 1;
  });
}

void SettleForgottenRuns(QmCtx* ctx) {
  if (ctx->hasForgottenRuns == 0) return;
  ctx->hasForgottenRuns = 0;
  ForEachCoupledAugment(ctx, [](QmsNode* augment) {
    if (HasFlag(augment, kRunForgotten)) augment->flags &= ~(kRunForgotten | QMS_NODE_COUPLED);
  });
}

void DetachModuleAugments(QmCtx* ctx, QmsModule* module) {
  if (ctx == nullptr || module == nullptr) return;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    if (IsCoupledAugment(augment)) ForceDetach(augment);
  }
  if (module->runCount == 0) return;
  // Foreign nodes in the trees of the module hang directly under one of its own
  // nodes; what lies deeper goes with them.
  ForEachCoupledAugment(ctx, [module](QmsNode* augment) {
    const QmsNode* target = RunTarget(augment);
    if (target != nullptr && target->module == module) ForceDetach(augment);
  });
}
