// SPDX-License-Identifier: BSD-3-Clause
// What clients read from a schema node. Every accessor takes NULL.
#include <qmodel/context.h>
#include <qmodel/schema.h>

#include "platform/avl.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/node.h"

static uint32_t FlagOf(const QmsNode* node, uint32_t bits) {
  return node != nullptr && HasFlag(node, bits) ? 1 : 0;
}

const char* QM_NODE_GetNodeName(const QmsNode* node) noexcept {
  return node == nullptr ? nullptr : node->name;
}

QmsModule* QM_NODE_GetModule(const QmsNode* node) noexcept {
  return node == nullptr ? nullptr : node->module;
}

uint32_t QM_NODE_GetNodeType(const QmsNode* node) noexcept {
  return node == nullptr ? 0 : node->kind;
}

const char* QM_NODE_GetWhenCond(const QmsNode* node) noexcept {
  return node == nullptr ? nullptr : node->when;
}

const char* QM_NODE_GetDescription(const QmsNode* node) noexcept {
  return node == nullptr ? nullptr : node->description;
}

uint32_t QM_NODE_GetNodeKeyNum(const QmsNode* node) noexcept {
  return node == nullptr ? 0 : node->keyCount;
}

void* QM_NODE_GetPrivate(const QmsNode* node) noexcept {
  return node == nullptr ? nullptr : node->privateData;
}

void* QM_NODE_SetPrivate(QmsNode* node, void* p) noexcept {
  if (node == nullptr) return nullptr;
  void* previous = node->privateData;
  node->privateData = p;
  return previous;
}

uint32_t QM_NODE_IsKey(const QmsNode* node) noexcept {
  if (node == nullptr || node->kind != QMS_NODE_LEAF) return 0;
  if (node->parent == nullptr || node->parent->kind != QMS_NODE_LIST) return 0;
  return FlagOf(node, QMS_NODE_KEY);
}

uint32_t QM_NODE_IsRwConfig(const QmsNode* node) noexcept {
  if (node == nullptr) return 0;
  return !HasFlag(node, kQmsConfigMask) || HasFlag(node, QMS_NODE_CONFIG_TRUE) ? 1 : 0;
}

uint32_t QM_NODE_IsMandatory(const QmsNode* node) noexcept {
  return FlagOf(node, QMS_NODE_MANDATORY_TRUE);
}

uint32_t QM_NODE_IsOrderedByNode(const QmsNode* node) noexcept {
  return FlagOf(node, QMS_NODE_ORDERED_BY_USER);
}

uint32_t QM_NODE_IsNacmDefaultDenyAll(const QmsNode* node) noexcept {
  return FlagOf(node, QMS_NODE_DENY_ALL);
}

uint32_t QM_NODE_IsNacmDefaultDenyWrite(const QmsNode* node) noexcept {
  return FlagOf(node, QMS_NODE_DENY_WRITE);
}

uint32_t QM_NODE_IsObsoleteNode(const QmsNode* node) noexcept {
  return FlagOf(node, QMS_NODE_OBSOLETE);
}

uint32_t QM_NODE_IsPresenceContainer(const QmsNode* node) noexcept {
  if (node == nullptr || node->kind != QMS_NODE_CONTAINER) return 0;
  return FlagOf(node, QMS_NODE_PRESENCE);
}

QmsNode* QM_NODE_GetParentNode(const QmsNode* node) noexcept {
  if (node == nullptr || node->parent == nullptr) return nullptr;
  return node->parent->kind == QMS_NODE_AUGMENT ? nullptr : node->parent;
}

QmsNode* QM_NODE_GetNonChoiceCaseParent(const QmsNode* node) noexcept {
  if (node == nullptr) return nullptr;
  QmsNode* parent = node->parent;
  while (parent != nullptr && (parent->kind == QMS_NODE_CHOICE || parent->kind == QMS_NODE_CASE)) {
    parent = parent->parent;
  }
  return parent;
}

QmsNode* QM_NODE_GetAugmentTargetNode(const QmsNode* node) noexcept {
  if (node == nullptr || node->kind != QMS_NODE_AUGMENT || NodeCtx(node) == nullptr) return nullptr;
  return QM_CTX_GetTargetNode(NodeCtx(node), node->name, nullptr);
}

// A registered module is the one that a lookup of its name finds. A zero-filled link is in
// no tree either.
static bool IsRegistered(const QmsModule* module) {
  return module->ctx != nullptr && RTK_AVL3_IsLinked(&module->nameLink) &&
         module->nameLink.parent != nullptr;
}

// Most conditions name a feature of the node's own module, which need not be looked up.
static bool IsReferenceEnabled(QmsModule* own, const QmsIfFeature* ref) {
  if (ref->module == own->name && ref->module != nullptr && IsRegistered(own)) {
    const QmsFeature* feature = QMS_MOD_FindFeatureByName(own, ref->feature);
    return feature != nullptr && IsFeatureEnabled(feature);
  }
  // Only 1 says enabled; a bad argument gives another non-zero number.
  return QM_CTX_IsModFeatureEnable(own->ctx, ref->module, ref->feature) == 1;
}

uint32_t QM_NODE_IsEnabled(const QmsNode* node) noexcept {
  if (node == nullptr || node->module == nullptr) return 0;
  for (uint32_t i = 0; node->ifFeatures != nullptr && i < node->ifFeatureCount; ++i) {
    if (!IsReferenceEnabled(node->module, &node->ifFeatures[i])) return 0;
  }
  return 1;
}
