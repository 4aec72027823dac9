// SPDX-License-Identifier: BSD-3-Clause
// What clients read from a schema node. Every accessor takes NULL.
#include <qmodel/context.h>
#include <qmodel/schema.h>

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

uint32_t QM_NODE_IsEnabled(const QmsNode* node) noexcept {
  if (node == nullptr || node->module == nullptr) return 0;
  for (uint32_t i = 0; node->ifFeatures != nullptr && i < node->ifFeatureCount; ++i) {
    const QmsIfFeature* ref = &node->ifFeatures[i];
    // Only 1 says enabled; a bad argument gives another non-zero number.
    if (QM_CTX_IsModFeatureEnable(node->module->ctx, ref->module, ref->feature) != 1) return 0;
  }
  return 1;
}
