// SPDX-License-Identifier: BSD-3-Clause
// Questions that validation asks of schema nodes. Nothing is changed, interned
// or remembered here: runs of several threads read one schema at the same time.

#include "data/schema_query.h"

#include "platform/string.h"
#include "schema/node_walk.h"

// Names are compared by text: interning one to compare pointers would write to
// the dictionary.
static bool IsMountPointInst(const QmsExtInst* inst) {
  return inst->module != nullptr && inst->name != nullptr &&
         RTK_StrCmp(inst->name, "mount-point") == 0 &&
         RTK_StrCmp(inst->module, "ietf-yang-schema-mount") == 0;
}

uint32_t QMD_MDL_IsSchemaNodeDefineWithMountPoint(const QmsNode* schemaNode) {
  if (schemaNode->kind != QMS_NODE_CONTAINER && schemaNode->kind != QMS_NODE_LIST) return 0;
  if (schemaNode->extInsts == nullptr) return 0;
  for (uint32_t i = 0; i < schemaNode->extInstCount; ++i) {
    if (IsMountPointInst(&schemaNode->extInsts[i])) return 1;
  }
  return 0;
}

uint32_t QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(const QmsNode* schemaNode) {
  if (schemaNode->kind == QMS_NODE_ANYDATA || schemaNode->kind == QMS_NODE_ANYXML) return 1;
  return QMD_MDL_IsSchemaNodeDefineWithMountPoint(schemaNode);
}

uint32_t QMD_MDL_IsSchemaNodeNeedSkipInDataTree(const QmsNode* schemaNode) {
  switch (schemaNode->kind) {
    case QMS_NODE_CHOICE:
    case QMS_NODE_CASE:
    case QMS_NODE_INPUT:
    case QMS_NODE_OUTPUT:
    case QMS_NODE_AUGMENT:
      return 1;
    default:
      return 0;
  }
}

uint32_t QMD_MDL_IsChoiceOrCaseNode(const QmsNode* schemaNode) {
  return schemaNode->kind == QMS_NODE_CHOICE || schemaNode->kind == QMS_NODE_CASE ? 1 : 0;
}

QmsNode* QMD_MDL_GetChoiceDefaultChildNode(QmsNode* choiceNode) {
  if (choiceNode->kind != QMS_NODE_CHOICE || choiceNode->payload == nullptr) return nullptr;
  const char* defaultCase = static_cast<const QmsChoice*>(choiceNode->payload)->defaultCase;
  if (defaultCase == nullptr) return nullptr;
  return QMS_NODE_FindChildNodeByName(choiceNode, nullptr, defaultCase);
}

QmsNode* QMD_MDL_GetClosestAncestorNodeNotChoiceCase(QmsNode* schemaNode) {
  QmsNode* ancestor = schemaNode->parent;
  while (ancestor != nullptr && QMD_MDL_IsChoiceOrCaseNode(ancestor) != 0) {
    ancestor = ancestor->parent;
  }
  return ancestor;
}

QmsNode* QMD_MDL_GetNextDataNodeInSameMod(QmsNode* schemaNode, QmsNode* stop) {
  QmsNode* next = QMS_NODE_GetNextDataTreeNode(schemaNode, stop);
  while (next != nullptr && (next->module != schemaNode->module || QM_NODE_IsEnabled(next) == 0)) {
    next = QMS_NODE_GetNextDataTreeNode(next, stop);
  }
  return next;
}

QmsNode* QMD_MDL_GetChoiceCaseParentNode(QmsNode* schemaNode) {
  QmsNode* parent = schemaNode->parent;
  if (parent != nullptr && parent->kind == QMS_NODE_CASE) parent = parent->parent;
  return parent != nullptr && parent->kind == QMS_NODE_CHOICE ? parent : nullptr;
}
