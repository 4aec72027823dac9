// SPDX-License-Identifier: BSD-3-Clause
// What nodes take over from the node above them: the config value (RFC 7950
// section 7.21.1) and the access rules of RFC 8341. A change goes down the tree
// as far as it changes something; where a node stays as it is, its subtree does
// too.
#include <qmodel/error.h>

#include "schema/ext_inst.h"
#include "schema/inherit.h"
#include "schema/node.h"

// The config bits that `node` gets from its parent, or its own when it keeps them.
static uint32_t InheritedConfig(const QmsNode* node) {
  const uint32_t own = node->flags & (kQmsConfigMask | QMS_NODE_CONFIG_OWN);
  const uint32_t parent = node->parent == nullptr ? 0 : node->parent->flags & kQmsConfigMask;
  if (parent == 0) return own;
  if (!HasFlag(node, QMS_NODE_CONFIG_OWN)) return parent;
  // Nothing can be configured below state data, whatever its own statement says.
  // Deliberate: the mark of the own statement is lost as well.
  const bool overruled = (parent & QMS_NODE_CONFIG_FALSE) != 0 && (own & QMS_NODE_CONFIG_TRUE) != 0;
  return overruled ? parent : own;
}

static uint32_t InheritConfigCb(QmsNode* node, uint32_t travType, void* arg) {
  static_cast<void>(arg);
  if (travType == QMS_TRAV_PARENT) return QM_OK;
  constexpr uint32_t kMask = kQmsConfigMask | QMS_NODE_CONFIG_OWN;
  const uint32_t inherited = InheritedConfig(node);
  if ((node->flags & kMask) == inherited) return QMS_SCAN_SKIP_SUBTREE;
  node->flags = (node->flags & ~kMask) | inherited;
  return QM_OK;
}

static uint32_t InheritNacmCb(QmsNode* node, uint32_t travType, void* arg) {
  static_cast<void>(arg);
  if (travType == QMS_TRAV_PARENT) return QM_OK;
  const uint32_t parent = node->parent == nullptr ? 0 : node->parent->flags & kQmsNacmMask;
  if (parent == 0 || (node->flags & kQmsNacmMask) == parent) return QMS_SCAN_SKIP_SUBTREE;
  node->flags = (node->flags & ~kQmsNacmMask) | parent;
  return QM_OK;
}

uint32_t QMS_NODE_UpdateConfigFlag(QmsNode* node) {
  return QM_NODE_TreeScanAllNode(node, InheritConfigCb, nullptr);
}

uint32_t QMS_NODE_UpdateNacmFlag(QmsNode* node) {
  return QM_NODE_TreeScanAllNode(node, InheritNacmCb, nullptr);
}

uint32_t QMS_NODE_ImplUpdateFlagCb(QmsNode* node, uint32_t travType, void* arg) {
  static_cast<void>(travType);
  static_cast<void>(arg);
  const uint32_t ret = QMS_NODE_UpdateConfigFlag(node);
  return ret != QM_OK ? ret : QMS_NODE_UpdateNacmFlag(node);
}

uint32_t QMS_NODE_UpdateFlag(QmsNode* node) {
  if (node == nullptr) return QM_INVALID;
  if (!HasFlag(node, kQmsConfigMask | kQmsNacmMask)) return QM_OK;
  return QM_NODE_IterScanChildrenNode(node, QMS_NODE_ImplUpdateFlagCb, nullptr);
}

void QMS_NODE_SetNacmFlag(QmsNode* node, const char* moduleName, const char* extName) {
  if (node == nullptr || !NamesEqual(moduleName, kQmsNacmModule)) return;
  if (NamesEqual(extName, "default-deny-all")) node->flags |= QMS_NODE_DENY_ALL;
  if (NamesEqual(extName, "default-deny-write")) node->flags |= QMS_NODE_DENY_WRITE;
}
