// SPDX-License-Identifier: BSD-3-Clause
// Mandatory nodes (RFC 7950 sections 7.6.5 and 7.9.4). The schema below the start
// node is followed as far as there is data, and into containers without presence
// that are missing: they exist whether they are written or not. Whether a missing
// node would be allowed at all is decided by its when, which needs an element to
// stand on; a temporary one is put in its place and taken away again on every way
// out. Temporary elements stand last and are never marked or listed.

#include "data/mandatory.h"

#include "context/guard.h"
#include "data/child_lookup.h"
#include "data/data_node.h"
#include "data/element_walk.h"
#include "data/error.h"
#include "data/must.h"
#include "data/schema_query.h"
#include "data/when.h"

const QmdMandatoryFunc g_qmdMandatoryFuncTbl[QMS_NODE_KIND_COUNT] = {
    nullptr,                             // none
    QMD_PAS_CheckContainerMandatory,     // container
    QMD_PAS_CheckDataNodeWithMandatory,  // leaf
    nullptr,                             // leaf-list
    QMD_PAS_CheckListMandatory,          // list
    QMD_PAS_CheckChoiceMandatory,        // choice
    QMD_PAS_CheckCaseMandatory,          // case
    QMD_PAS_CheckDataNodeWithMandatory,  // anydata
    QMD_PAS_CheckDataNodeWithMandatory,  // anyxml
    QMD_PAS_CheckRpcMandatory,           // action
    QMD_PAS_CheckRpcMandatory,           // rpc
    QMD_PAS_CheckNotifMandatory,         // notification
    QMD_PAS_CheckInputMandatory,         // input
    nullptr,                             // output
    nullptr,                             // augment
};
static_assert(QMS_NODE_CONTAINER == 1 && QMS_NODE_CASE == 6 && QMS_NODE_RPC == 10 &&
                  QMS_NODE_INPUT == 12 && QMS_NODE_KIND_COUNT == 15,
              "the rows stand at their kind");

static void RemoveTemporary(xmlNode* node) {
  NoteChildLeaves(node);
  RemoveNode(node);
}
using TemporaryElement = QmOwn<RemoveTemporary>;

static xmlNode* AddTemporary(xmlNode* dataParent, QmsNode* schemaNode) {
  xmlNode* element = QMD_NODE_CreateNewChildNode(dataParent, schemaNode);
  if (element != nullptr) NoteChildAdded(element);
  return element;
}

uint32_t QM_PAS_CheckSubtreeMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                      QmsNode* schemaNode) noexcept {
  if (aux == nullptr || dataParent == nullptr || schemaNode == nullptr) return QM_INVALID;
  if (schemaNode->kind >= QMS_NODE_KIND_COUNT) return QM_INVALID;
  if (QM_NODE_IsEnabled(schemaNode) == 0) return QM_OK;
  const QmdMandatoryFunc check = g_qmdMandatoryFuncTbl[schemaNode->kind];
  if (check == nullptr) return QM_OK;
  if (aux->nesting >= kQmdMaxNesting) return QM_INVALID;
  ++aux->nesting;
  const uint32_t ret = check(aux, dataParent, schemaNode);
  --aux->nesting;
  return ret;
}

uint32_t QM_PAS_CheckTreeMandatory(QmCheckAux* aux, xmlNode* node) noexcept {
  if (aux == nullptr || (aux->flags & (QMD_MODE_RPC | QMD_MODE_NOTIF)) == 0) return QM_INVALID;
  return QM_PAS_CheckSubtreeMandatory(aux, node, BoundSchema(node));
}

static uint32_t CheckSchemaChildren(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  for (QmsNode* child = schemaNode->firstChild; child != nullptr; child = child->next) {
    const uint32_t ret = QM_PAS_CheckSubtreeMandatory(aux, dataParent, child);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static void ReportMissingElement(QmCheckAux* aux, xmlNode* dataParent, const QmsNode* schemaNode) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_MISSING_ELEMENT, dataParent);
  QMD_ERR_SetErrorMsg(err, "Missing element: %s.", schemaNode->name);
  QMD_ERR_SetBadElement(err, schemaNode->name);
}

uint32_t QMD_PAS_CheckDataNodeWithMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                            QmsNode* schemaNode) {
  if (QM_NODE_IsMandatory(schemaNode) == 0) return QM_OK;
  if (QMD_NODE_GetChildNodeWithSpecifyMdl(dataParent, schemaNode) != nullptr) return QM_OK;
  uint32_t wanted = 0;
  {
    TemporaryElement missing(AddTemporary(dataParent, schemaNode));
    if (!missing) return QM_INVALID;
    const uint32_t ret = QMD_PAS_EvalDataNodeWhenCond(aux, missing.Get(), &wanted);
    if (ret != QM_OK) return ret;
  }
  if (wanted == 0) return QM_OK;
  ReportMissingElement(aux, dataParent, schemaNode);
  return QM_INVALID;
}

static uint32_t CheckMissingContainer(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  TemporaryElement missing(AddTemporary(dataParent, schemaNode));
  if (!missing) return QM_INVALID;
  uint32_t wanted = 0;
  const uint32_t ret = QMD_PAS_EvalDataNodeWhenCond(aux, missing.Get(), &wanted);
  if (ret != QM_OK || wanted == 0) return ret;
  return CheckSchemaChildren(aux, missing.Get(), schemaNode);
}

uint32_t QMD_PAS_CheckContainerMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                         QmsNode* schemaNode) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode) != 0) return QM_OK;
  xmlNode* existing = QMD_NODE_GetChildNodeWithSpecifyMdl(dataParent, schemaNode);
  if (existing != nullptr) return CheckSchemaChildren(aux, existing, schemaNode);
  if (QM_NODE_IsPresenceContainer(schemaNode) != 0) return QM_OK;
  return CheckMissingContainer(aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckListMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode) != 0) return QM_OK;
  xmlNode* entry = NextBoundSibling(dataParent->children, schemaNode);
  while (entry != nullptr) {
    const uint32_t ret = CheckSchemaChildren(aux, entry, schemaNode);
    if (ret != QM_OK) return ret;
    entry = NextBoundSibling(entry->next, schemaNode);
  }
  return QM_OK;
}

static void ReportMissingChoice(QmCheckAux* aux, xmlNode* dataParent, const QmsNode* choice) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_DATA_MISSING, dataParent);
  QMD_ERR_SetErrorMsg(err, "Mandatory choice %s missing element.", choice->name);
  QMD_ERR_SetErrorAppTag(err, "missing-choice");
  QMD_ERR_SetBadElement(err, ElementName(dataParent));
}

uint32_t QMD_PAS_CheckChoiceMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  QmsNode* branch = QMD_NODE_GetChoiceInstanceCaseBranch(dataParent, schemaNode);
  if (branch == nullptr) branch = QMD_MDL_GetChoiceDefaultChildNode(schemaNode);
  if (branch != nullptr) return QM_PAS_CheckSubtreeMandatory(aux, dataParent, branch);
  if (QM_NODE_IsMandatory(schemaNode) == 0) return QM_OK;
  ReportMissingChoice(aux, dataParent, schemaNode);
  return QM_INVALID;
}

uint32_t QMD_PAS_CheckCaseMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckSchemaChildren(aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckNotifMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckSchemaChildren(aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckInputMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckSchemaChildren(aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckRpcMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  QmsNode* input = QMD_PAS_GetRpcSubTreeInputMdl(schemaNode);
  return input == nullptr ? QM_OK : CheckSchemaChildren(aux, dataParent, input);
}
