// SPDX-License-Identifier: BSD-3-Clause
// The flags that nodes get from elsewhere: the config value and the access rules from the
// node above, the key mark from the list's key statement.
#include "schema/flags.h"

#include <qmodel/error.h>

#include "context/text_scan.h"
#include "schema/ext_inst.h"
#include "schema/node.h"
#include "schema/node_walk.h"

// What nodes take over from the node above them: the config value (RFC 7950
// section 7.21.1) and the access rules of RFC 8341. A change goes down the tree
// as far as it changes something; where a node stays as it is, its subtree does
// too.

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

static uint32_t InheritConfigCb(QmsNode* node, uint32_t travType, void* /*arg*/) {
  if (travType == QMS_TRAV_PARENT) return QM_OK;
  constexpr uint32_t kMask = kQmsConfigMask | QMS_NODE_CONFIG_OWN;
  const uint32_t inherited = InheritedConfig(node);
  if ((node->flags & kMask) == inherited) return QMS_SCAN_SKIP_SUBTREE;
  node->flags = (node->flags & ~kMask) | inherited;
  return QM_OK;
}

static uint32_t InheritNacmCb(QmsNode* node, uint32_t travType, void* /*arg*/) {
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

uint32_t QMS_NODE_ImplUpdateFlagCb(QmsNode* node, uint32_t /*travType*/, void* /*arg*/) {
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

// The key statement of a list, RFC 7950 section 7.8.2: a text of leaf names. The
// leaves are marked, and the list counts them.

constexpr uint8_t kMaxKeyCount = UINT8_MAX;

static bool MarkKeyLeaf(QmsNode* list, const char* name, uint8_t index) {
  QmsNode* leaf = QMS_NODE_FindChildNodeByName(list, nullptr, name);
  if (leaf == nullptr || leaf->kind != QMS_NODE_LEAF) return false;
  leaf->flags |= QMS_NODE_KEY;
  leaf->keyIndex = index;
  return true;
}

uint32_t QMS_NODE_MarkKeyAttrToListLeafs(QmsNode* list, const char* keyText, uint8_t* keyCount) {
  if (keyText == nullptr) return QM_OK;
  if (list == nullptr || list->firstChild == nullptr || keyCount == nullptr) return QM_INVALID;
  char name[kQmsNameSize];
  for (const char* text = QM_UTL_ConsumeAllSpaceChar(keyText); *text != '\0';
       text = QM_UTL_ConsumeAllSpaceChar(text)) {
    if (*keyCount == kMaxKeyCount) return QM_MINUS_ONE;
    if (!TakeIdentName(&text, name, kQmsNameSize) || !MarkKeyLeaf(list, name, *keyCount)) {
      return QM_MINUS_ONE;
    }
    ++*keyCount;
  }
  return QM_OK;
}
