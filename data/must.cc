// SPDX-License-Identifier: BSD-3-Clause
// The must phase (RFC 7950 section 7.5.3). The statements of the start node come
// first: a notification's own, or those of an rpc's or action's input. Then all
// elements below it, parents first. A false statement of a request fails the run;
// in a notification it removes the element and the run goes on, except on the
// start node, which cannot be removed.

#include "data/must.h"

#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/error.h"
#include "data/schema_query.h"
#include "data/when.h"
#include "xpath/child_lookup.h"
#include "xpath/kept_conditions.h"

// An empty error-message stays no message: the general one does not stand in.
static void ReportMustViolation(QmCheckAux* aux, xmlNode* node, const QmsMust* must) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_OPERATION_FAILED, node);
  QMD_ERR_SetBadElement(err, ElementName(node));
  QMD_ERR_SetErrorAppTag(err, must->errorAppTag != nullptr ? must->errorAppTag : "must-violation");
  if (must->errorMessage != nullptr) {
    QMD_ERR_SetErrorMsg(err, "%s", must->errorMessage);
  } else {
    QMD_ERR_SetErrorMsg(err, "%s is not satisfied must condition.", ElementName(node));
  }
}

static uint32_t EvalOneMust(QmCheckAux* aux, xmlNode* node, const QmsMust* must) {
  if (must->condition == nullptr) return QM_INVALID;
  const uint32_t ret = EvalKeptCondition(aux->conditions, aux->topNode, node, must->condition);
  if (ret == QM_OK) return QM_OK;
  if (ret != QM_XPATH_FALSE) {
    ReportConditionFailure(aux, node, "Failed to check must condition of %s.");
  } else if ((aux->flags & QMD_MODE_NOTIF) == 0) {
    ReportMustViolation(aux, node, must);
  }
  return ret;
}

uint32_t QMD_PAS_EvalDataNodeMustCond(QmCheckAux* aux, xmlNode* node, QmsNode* mustSchemaNode) {
  if (mustSchemaNode == nullptr || mustSchemaNode->musts == nullptr) return QM_OK;
  for (uint32_t i = 0; i < mustSchemaNode->mustCount; ++i) {
    const uint32_t ret = EvalOneMust(aux, node, &mustSchemaNode->musts[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Evaluates one element below the start node and stores the one to go on with.
static uint32_t EvalAndStep(QmCheckAux* aux, const xmlNode* root, xmlNode* node, xmlNode** next) {
  QmsNode* schemaNode = BoundSchema(node);
  const uint32_t ret = QMD_PAS_EvalDataNodeMustCond(aux, node, schemaNode);
  if (ret == QM_XPATH_FALSE) {
    if ((aux->flags & QMD_MODE_NOTIF) == 0) return QM_INVALID;
    *next = NextElementBeyond(root, node);
    NoteChildLeaves(node);
    RemoveNode(node);
    return QM_OK;
  }
  const bool skip =
      schemaNode != nullptr && (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode) != 0 ||
                                !MayHaveBelow(aux, schemaNode, QMD_CHILD_MUST));
  *next = skip ? NextElementBeyond(root, node) : NextElement(root, node);
  return ret;
}

static uint32_t EvalFrom(QmCheckAux* aux, const xmlNode* root, xmlNode* first) {
  xmlNode* node = first;
  while (node != nullptr) {
    xmlNode* next = nullptr;
    const uint32_t ret = EvalAndStep(aux, root, node, &next);
    if (ret != QM_OK) return ret;
    node = next;
  }
  return QM_OK;
}

uint32_t QMD_PAS_EvalDataSubtreeMust(QmCheckAux* aux, xmlNode* node) {
  return EvalFrom(aux, node, node);
}

uint32_t QMD_PAS_EvalAllChildDataNodeMust(QmCheckAux* aux, xmlNode* node) {
  const QmsNode* schemaNode = BoundSchema(node);
  if (schemaNode != nullptr && !MayHaveBelow(aux, schemaNode, QMD_CHILD_MUST)) return QM_OK;
  return EvalFrom(aux, node, FirstElement(node->children));
}

uint32_t QMD_PAS_EvalDataTreeMustWithTopMustMdl(QmCheckAux* aux, xmlNode* node,
                                                QmsNode* mustSchemaNode) {
  const uint32_t ret = QMD_PAS_EvalDataNodeMustCond(aux, node, mustSchemaNode);
  return ret == QM_OK ? QMD_PAS_EvalAllChildDataNodeMust(aux, node) : ret;
}

QmsNode* QMD_PAS_GetRpcSubTreeInputMdl(QmsNode* schemaNode) {
  QmsNode* child = schemaNode->firstChild;
  while (child != nullptr && child->kind != QMS_NODE_INPUT) child = child->next;
  return child;
}

uint32_t QMD_PAS_EvalDataTreeMust(QmCheckAux* aux, xmlNode* node) {
  QmsNode* schemaNode = BoundSchema(node);
  if (schemaNode == nullptr) return QM_INVALID;
  if ((aux->flags & QMD_MODE_NOTIF) != 0) {
    return QMD_PAS_EvalDataTreeMustWithTopMustMdl(aux, node, schemaNode);
  }
  if ((aux->flags & QMD_MODE_RPC) == 0) return QM_OK;
  QmsNode* input = QMD_PAS_GetRpcSubTreeInputMdl(schemaNode);
  return input == nullptr ? QM_OK : QMD_PAS_EvalDataTreeMustWithTopMustMdl(aux, node, input);
}

uint32_t QMD_PAS_EvalDataTreeWhenMust(QmCheckAux* aux, xmlNode* node) {
  if (BoundSchema(node) == nullptr) return QM_INVALID;
  const uint32_t ret = QMD_PAS_EvalDataTreeWhen(aux, node);
  return ret == QM_OK ? QMD_PAS_EvalDataTreeMust(aux, node) : ret;
}
