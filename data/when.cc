// SPDX-License-Identifier: BSD-3-Clause
// The when phase (RFC 7950 section 7.21.5): a walk over the start node and all
// elements below it, parents first. An element that fails its condition is removed
// in a notification, refused in a request when the client sent it, and taken away
// again when it was added as a default, together with the added containers that it
// leaves empty. The element to go on with is found before anything is freed. The
// start node and what is above it are never removed, whatever their line says.

#include "data/when.h"

#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/default_list.h"
#include "data/error.h"
#include "data/schema_query.h"
#include "xpath/child_lookup.h"
#include "xpath/kept_conditions.h"

uint32_t QMD_MDL_IsNeedCheckWhenCond(uint32_t kind) {
  switch (kind) {
    case QMS_NODE_ACTION:
    case QMS_NODE_RPC:
    case QMS_NODE_NOTIFICATION:
    case QMS_NODE_INPUT:
    case QMS_NODE_OUTPUT:
      return 0;
    default:
      return 1;
  }
}

uint32_t QMD_PAS_EvalDataNodeOneWhenCond(QmCheckAux* aux, xmlNode* node, xmlNode* contextNode,
                                         const char* when, uint32_t* outPass) {
  *outPass = 1;
  if (when == nullptr) return QM_OK;
  const uint32_t ret = EvalKeptCondition(aux->conditions, aux->topNode, contextNode, when);
  if (ret == QM_OK) return QM_OK;
  *outPass = 0;
  if (ret == QM_XPATH_FALSE) return QM_OK;
  ReportConditionFailure(aux, node, "Failed to check when condition of %s.");
  return ret;
}

// A choice or case has no element: its condition speaks of the parent's element.
uint32_t QMD_PAS_EvalDataNodeWhenCond(QmCheckAux* aux, xmlNode* node, uint32_t* outPass) {
  *outPass = 1;
  const QmsNode* schemaNode = BoundSchema(node);
  if (schemaNode == nullptr || QMD_MDL_IsNeedCheckWhenCond(schemaNode->kind) == 0) return QM_OK;
  uint32_t ret = QMD_PAS_EvalDataNodeOneWhenCond(aux, node, node, schemaNode->when, outPass);
  const QmsNode* ancestor = schemaNode->parent;
  while (ret == QM_OK && *outPass != 0 && ancestor != nullptr &&
         QMD_MDL_IsChoiceOrCaseNode(ancestor) != 0) {
    ret = QMD_PAS_EvalDataNodeOneWhenCond(aux, node, node->parent, ancestor->when, outPass);
    ancestor = ancestor->parent;
  }
  return ret;
}

void QMD_PAS_SetWhenCondNoPassErrorInfo(QmCheckAux* aux, xmlNode* node) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_UNKNOWN_ELEMENT, node);
  QMD_ERR_SetErrorMsg(err, "%s is not satisfied when condition.", ElementName(node));
  QMD_ERR_SetBadElement(err, ElementName(node));
}

uint32_t QMD_PAS_ProcWhenCondNoPassForNotif(QmCheckAux* /*aux*/, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next) {
  *next = NextElementBeyond(startNode, node);
  NoteChildLeaves(node);
  RemoveNode(node);
  return QM_OK;
}

static bool IsOnlyElementOf(const xmlNode* node) {
  return PreviousElement(node) == nullptr && FirstElement(node->next) == nullptr;
}

// The highest added ancestor that has no element left once `node` is gone; `node`
// itself when there is none.
static xmlNode* TopmostLeftEmpty(const xmlNode* startNode, xmlNode* node) {
  while (IsOnlyElementOf(node) && node->parent != startNode &&
         QMD_PAS_IsDefaultAddNode(node->parent) != 0) {
    node = node->parent;
  }
  return node;
}

uint32_t QMD_PAS_ProcWhenCondNoPassForRpc(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                          xmlNode** next) {
  if (QMD_PAS_IsDefaultAddNode(node) == 0) {
    QMD_PAS_SetWhenCondNoPassErrorInfo(aux, node);
    return QM_XPATH_FALSE;
  }
  xmlNode* topmost = TopmostLeftEmpty(startNode, node);
  *next = NextElementBeyond(startNode, topmost);
  NoteChildLeaves(topmost);
  QMD_PAS_DeleteDefaultAddNode(aux, topmost);
  return QM_OK;
}

uint32_t QMD_PAS_ProcDataNodeWhenCondNoPass(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next) {
  *next = nullptr;
  if (node == startNode) return QM_INVALID;
  if ((aux->flags & QMD_MODE_NOTIF) != 0) {
    return QMD_PAS_ProcWhenCondNoPassForNotif(aux, startNode, node, next);
  }
  return QMD_PAS_ProcWhenCondNoPassForRpc(aux, startNode, node, next);
}

static xmlNode* NextToEvaluate(const QmCheckAux* aux, const xmlNode* startNode, xmlNode* node) {
  const QmsNode* schemaNode = BoundSchema(node);
  if (schemaNode != nullptr && (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode) != 0 ||
                                !MayHaveBelow(aux, schemaNode, QMD_CHILD_WHEN))) {
    return NextElementBeyond(startNode, node);
  }
  return NextElement(startNode, node);
}

uint32_t QMD_PAS_EvalDataTreeWhen(QmCheckAux* aux, xmlNode* node) {
  xmlNode* cur = node;
  while (cur != nullptr) {
    uint32_t pass = 1;
    uint32_t ret = QMD_PAS_EvalDataNodeWhenCond(aux, cur, &pass);
    if (ret != QM_OK) return ret;
    xmlNode* next = nullptr;
    if (pass != 0) {
      next = NextToEvaluate(aux, node, cur);
    } else {
      ret = QMD_PAS_ProcDataNodeWhenCondNoPass(aux, node, cur, &next);
      if (ret != QM_OK) return ret;
    }
    cur = next;
  }
  return QM_OK;
}
