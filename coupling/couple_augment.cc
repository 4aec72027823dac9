// SPDX-License-Identifier: BSD-3-Clause
// Augments (RFC 7950, section 7.17) and their targets.
//
// Coupling moves the children of an augment behind those of the target, one by
// one; the augment's firstChild and lastChild go on marking them there, as a run
// in a foreign list. Uncoupling moves the run back. An augment whose target is
// not there keeps its children and waits. One that targets its own module is no
// more needed once its children are in place, and is destroyed.

#include "coupling/couple_augment.h"

#include <qmodel/error.h>

#include "context/context.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/relation.h"
#include "context/string.h"
#include "coupling/detach.h"
#include "platform/string.h"
#include "schema/flags.h"
#include "schema/lookup.h"
#include "schema/node.h"
#include "schema/node_link.h"
#include "schema/node_walk.h"
#include "schema/target_path.h"

static QmsNode* FindCouplingTarget(const QmsNode* augment) {
  QmCtx* ctx = NodeCtx(augment);
  if (ctx == nullptr) return nullptr;
  QmsNode* target = QM_CTX_GetTargetNode(ctx, augment->name, nullptr);
  return target != nullptr ? target : QMS_NODE_UpdateTargetPathWithInputOutput(ctx, augment->name);
}

// An augment below itself would cut its subtree off and tie it into a ring.
static bool LiesInside(const QmsNode* node, const QmsNode* augment) {
  for (; node != nullptr; node = node->parent) {
    if (node == augment) return true;
  }
  return false;
}

static void MoveChildToTarget(QmsNode* child, QmsNode* target) {
  child->parent = nullptr;
  child->next = nullptr;
  child->prev = nullptr;
  static_cast<void>(QMS_NODE_AddChild(target, child));
  static_cast<void>(QMS_NODE_UpdateConfigFlag(child));
  static_cast<void>(QMS_NODE_UpdateNacmFlag(child));
}

static uint32_t LinkInputOutput(QmsNode* parent, QmsNode* node) {
  return node->kind == QMS_NODE_INPUT ? QMS_NODE_AddAsFirstChild(parent, node)
                                      : QMS_NODE_AddChild(parent, node);
}

// Ends the augment of its own module after the attempt to couple it. A target that
// is there was not found for want of memory: destroyed then, the augment would
// take its children out of the schema without a word.
static uint32_t EndSelfAugment(QmsModule* module, QmsNode* augment) {
  if (!IsCoupledAugment(augment)) {
    QmsNode* target = nullptr;
    const uint32_t ret = QMS_MOD_FindAugNodeTargetInSelfMod(module, augment, &target);
    if (ret != QM_OK || target != nullptr) return QM_NO_MEMORY;
  }
  QMS_LOADER_DestroySelfAugNode(augment);
  return QM_OK;
}

// Couples one augment of a module that is being registered, and records its relation.
static uint32_t CoupleAndRelate(QmCtx* ctx, QmsModule* module, QmsNode* augment) {
  char target[kQmsNameSize] = "";
  if (!GetTargetModuleName(augment->name, target)) return QM_INVALID;
  static_cast<void>(QMS_NODE_CoupleAugmentNode(augment));
  if (RTK_StrCmp(target, module->name) != 0) {
    return QM_CTX_AddTwoModRelation(ctx, target, module->name, QM_RELATION_AUGMENT);
  }
  return EndSelfAugment(module, augment);
}

void QMS_NODE_NotifyAugmentFirstChildNodeRelink(QmsNode* firstChild) {
  if (firstChild == nullptr) return;
  QmCtx* ctx = NodeCtx(firstChild);
  if (ctx != nullptr && ctx->firstAugChildRelinkFunc != nullptr) {
    ctx->firstAugChildRelinkFunc(ctx, firstChild);
  }
}

// An augment of a module into itself is a part of the module, and is never detached.
static bool IsOfItsOwnModule(const QmsNode* augment) {
  char target[kQmsNameSize] = "";
  return GetTargetModuleName(augment->name, target) &&
         RTK_StrCmp(target, augment->module->name) == 0;
}

void TellOfRun(QmsNode* augment, uint32_t eventKind) {
  QmsNode* first = augment->firstChild;
  QMS_NODE_NotifyAugmentFirstChildNodeRelink(first);
  QmCtx* ctx = NodeCtx(augment);
  if (ctx == nullptr || ctx->eventFunc == nullptr || IsOfItsOwnModule(augment)) return;
  QmAgentEvent event = {};
  event.kind = eventKind;
  event.module = augment->module;
  event.moduleName = augment->module->name;
  event.node = first;
  event.target = first->parent;
  event.path = augment->name;
  RaiseEvent(ctx, event);
}

QmsNode* QMS_NODE_GetAugRpcParentNodeAndChildType(QmCtx* ctx, const char* parentPath,
                                                  const char* lastStep, uint32_t* kind) {
  if (ctx == nullptr || parentPath == nullptr || lastStep == nullptr || kind == nullptr) {
    return nullptr;
  }
  if (RTK_StrCmp(lastStep, "input") == 0) {
    *kind = QMS_NODE_INPUT;
  } else if (RTK_StrCmp(lastStep, "output") == 0) {
    *kind = QMS_NODE_OUTPUT;
  } else {
    return nullptr;
  }
  QmsNode* parent = QM_CTX_GetTargetNode(ctx, parentPath, nullptr);
  if (parent == nullptr) return nullptr;
  return parent->kind == QMS_NODE_RPC || parent->kind == QMS_NODE_ACTION ? parent : nullptr;
}

QmsNode* QMS_NODE_ConstructInputOutputNodeIfMatch(QmCtx* ctx, const char* parentPath,
                                                  const char* lastStep) {
  uint32_t kind = QMS_NODE_NONE;
  QmsNode* parent = QMS_NODE_GetAugRpcParentNodeAndChildType(ctx, parentPath, lastStep, &kind);
  if (parent == nullptr) return nullptr;
  // A lookup without memory finds nothing either, and a second input must not be made.
  QmsNode* declared = QMS_NODE_FindChildNodeByName(parent, nullptr, lastStep);
  if (declared != nullptr) return declared;
  QmOwn<QMS_NODE_Free> node(QMS_NODE_New(kind));
  if (!node) return nullptr;
  node->module = parent->module;
  if (!InternText(&ctx->dict, &node->name, lastStep)) return nullptr;
  if (LinkInputOutput(parent, node.Get()) != QM_OK) return nullptr;
  static_cast<void>(QMS_NODE_UpdateNacmFlag(node.Get()));
  return node.Release();
}

QmsNode* QMS_NODE_UpdateTargetPathWithInputOutput(QmCtx* ctx, const char* path) {
  if (ctx == nullptr || path == nullptr) return nullptr;
  const char* slash = RTK_StrRChr(path, '/');
  if (slash == nullptr) return nullptr;
  const auto parentLength = static_cast<uint32_t>(slash - path);
  const QmHeld<char> parentPath(QM_UTL_StrDupWithSpecifyLength(path, parentLength));
  if (!parentPath) return nullptr;
  return QMS_NODE_ConstructInputOutputNodeIfMatch(ctx, parentPath.Get(), slash + 1);
}

uint32_t QMS_NODE_CoupleAugmentNodeAndTargetNode(QmsNode* augment, QmsNode* target) {
  if (augment == nullptr || target == nullptr) return QM_INVALID;
  QmsNode* first = augment->firstChild;
  QmsNode* last = augment->lastChild;
  if (first == nullptr) return QM_OK;
  if (LiesInside(target, augment)) return QM_INVALID;
  QmsNode* next = nullptr;
  for (QmsNode* child = first; child != nullptr; child = next) {
    next = child != last ? child->next : nullptr;
    MoveChildToTarget(child, target);
  }
  NoteRun(target);
  TellOfRun(augment, QM_AGENT_EVENT_AUGMENT_ATTACHED);
  return QM_OK;
}

uint32_t QMS_NODE_CoupleAugmentNode(QmsNode* augment) {
  if (augment == nullptr) return QM_INVALID;
  if (IsCoupledAugment(augment)) return QM_OK;
  QmsNode* target = FindCouplingTarget(augment);
  if (target == nullptr) return QM_INVALID;
  const uint32_t ret = QMS_NODE_CoupleAugmentNodeAndTargetNode(augment, target);
  if (ret == QM_OK) augment->flags |= QMS_NODE_COUPLED;
  return ret;
}

uint32_t QMS_NODE_UnCoupleAugmentNodeAndTargetNode(QmsNode* augment, QmsNode* target) {
  if (augment == nullptr || target == nullptr) return QM_INVALID;
  QmsNode* first = augment->firstChild;
  QmsNode* last = augment->lastChild;
  if (first == nullptr) return last == nullptr ? QM_OK : QM_INVALID;
  // The links are cleared only now: with them the run could not be found again.
  const bool isThere = first->parent == target || QMS_NODE_IsChildNode(target, first) == 1;
  if (!isThere) return QM_INVALID;
  TellOfRun(augment, QM_AGENT_EVENT_AUGMENT_DETACHING);
  const uint32_t coupled = augment->flags & QMS_NODE_COUPLED;
  augment->flags &= ~QMS_NODE_COUPLED;  // a coupled augment takes no children
  ForgetRun(augment);
  const uint32_t ret = MoveRunBack(augment, first, last);
  if (ret != QM_OK) augment->flags |= coupled;
  return ret;
}

uint32_t QMS_NODE_UnCoupleAugmentNode(QmsNode* augment) {
  if (augment == nullptr || !IsCoupledAugment(augment) || NodeCtx(augment) == nullptr) {
    return QM_INVALID;
  }
  QmsNode* target = QM_CTX_GetTargetNode(NodeCtx(augment), augment->name, nullptr);
  if (target == nullptr) return QM_INVALID;
  const uint32_t ret = QMS_NODE_UnCoupleAugmentNodeAndTargetNode(augment, target);
  if (ret == QM_OK) augment->flags &= ~QMS_NODE_COUPLED;
  return ret;
}

void QMS_NODE_RemoveCoupledAugmentNodeChildLink(QmsNode* augment, QmsNode* node) {
  if (augment == nullptr || node == nullptr) return;
  const bool isFirst = augment->firstChild == node;
  const bool isLast = augment->lastChild == node;
  if (isFirst && isLast) {
    ForgetRun(augment);
  } else if (isFirst) {
    augment->firstChild = node->next;
  } else if (isLast) {
    augment->lastChild = node->prev;
  }
}

void QMS_LOADER_DestroySelfAugNode(QmsNode* augment) {
  if (augment == nullptr) return;
  if (IsCoupledAugment(augment)) {
    ForgetRun(augment);
    augment->flags &= ~QMS_NODE_COUPLED;
  } else if (NodeCtx(augment) != nullptr) {
    // The children are freed with the augment; others may have coupled to them.
    DetachRunsBelow(NodeCtx(augment), augment);
  }
  static_cast<void>(QMS_NODE_Unlink(augment));
  QMS_NODE_Free(augment);
}

uint32_t QMS_LOADER_CoupleAugmentAndGenRelation(QmCtx* ctx, QmsModule* module) {
  if (ctx == nullptr || module == nullptr) return QM_INVALID;
  QmsNode* next = nullptr;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = next) {
    next = augment->next;
    if (IsCoupledAugment(augment)) continue;
    const uint32_t ret = CoupleAndRelate(ctx, module, augment);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_CoupleSelfAugmentNode(QmCtx* ctx, QmsModule* module) {
  if (ctx == nullptr || module == nullptr) return QM_INVALID;
  QmsNode* next = nullptr;
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = next) {
    next = augment->next;
    QmsNode* target = nullptr;
    if (QMS_MOD_FindAugNodeTargetInSelfMod(module, augment, &target) != QM_OK) return QM_INVALID;
    if (target == nullptr) continue;
    const uint32_t ret = IsCoupledAugment(augment)
                             ? QM_OK
                             : QMS_NODE_CoupleAugmentNodeAndTargetNode(augment, target);
    if (ret != QM_OK) return ret;
    augment->flags |= QMS_NODE_COUPLED;
    QMS_LOADER_DestroySelfAugNode(augment);
  }
  return QM_OK;
}
