// SPDX-License-Identifier: BSD-3-Clause
// Mandatory nodes (RFC 7950 sections 7.6.5 and 7.9.4). The schema below the start
// node is followed as far as there is data, and into containers without presence
// that are missing: they exist whether they are written or not. Whether a missing
// node would be allowed at all is decided by its when, which needs an element to
// stand on; a temporary one is put in its place and taken away again on every way
// out. Temporary elements stand last and are never marked or listed.

#include "data/mandatory.h"

#include "context/guard.h"
#include "context/xml_tree.h"
#include "data/bound_children.h"
#include "data/data_node.h"
#include "data/error.h"
#include "data/must.h"
#include "data/schema_steps.h"
#include "data/schema_walk.h"
#include "data/when.h"
#include "xpath/child_lookup.h"

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

static void ReportMissingElement(QmCheckAux* aux, xmlNode* dataParent, const QmsNode* schemaNode) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_MISSING_ELEMENT, dataParent);
  QMD_ERR_SetErrorMsg(err, "Missing element: %s.", schemaNode->name);
  QMD_ERR_SetBadElement(err, schemaNode->name);
}

static uint32_t CheckDataNode(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* /*level*/) {
  if (QM_NODE_IsMandatory(schemaNode) == 0) return QM_OK;
  const QmdChild* child = walk->step.child;
  if (child != nullptr ? HasElement(walk->holder, child)
                       : QMD_NODE_GetChildNodeWithSpecifyMdl(dataParent, schemaNode) != nullptr) {
    return QM_OK;
  }
  uint32_t wanted = 0;
  {
    TemporaryElement missing(AddTemporary(dataParent, schemaNode));
    if (!missing) return QM_INVALID;
    const uint32_t ret = QMD_PAS_EvalDataNodeWhenCond(walk->aux, missing.Get(), &wanted);
    if (ret != QM_OK) return ret;
  }
  if (wanted == 0) return QM_OK;
  ReportMissingElement(walk->aux, dataParent, schemaNode);
  return QM_INVALID;
}

static uint32_t OpenMissingContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                                     QmdLevel* level) {
  TemporaryElement missing(AddTemporary(dataParent, schemaNode));
  if (!missing) return QM_INVALID;
  uint32_t wanted = 0;
  const uint32_t ret = QMD_PAS_EvalDataNodeWhenCond(walk->aux, missing.Get(), &wanted);
  if (ret != QM_OK || wanted == 0) return ret;
  OpenMade(walk, level, schemaNode, missing.Release());
  return QM_OK;
}

static uint32_t OpenContainer(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                              QmdLevel* level) {
  if (OpenExisting(walk, level, schemaNode, dataParent)) return QM_OK;
  if (QM_NODE_IsPresenceContainer(schemaNode) != 0) return QM_OK;
  if (IsIdleWhenMissing(walk->aux, walk->phase, walk->holder, walk->step.child)) return QM_OK;
  return OpenMissingContainer(walk, dataParent, schemaNode, level);
}

static void ReportMissingChoice(QmCheckAux* aux, xmlNode* dataParent, const QmsNode* choice) {
  QmErrNode* err = RunError(aux, QM_ERR_TAG_DATA_MISSING, dataParent);
  QMD_ERR_SetErrorMsg(err, "Mandatory choice %s missing element.", choice->name);
  QMD_ERR_SetErrorAppTag(err, "missing-choice");
  QMD_ERR_SetBadElement(err, ElementName(dataParent));
  SetMissingChoice(err, choice->name);
}

static uint32_t OpenChoice(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                           QmdLevel* level) {
  if (OpenBranch(walk, level, schemaNode, dataParent)) return QM_OK;
  if (QM_NODE_IsMandatory(schemaNode) == 0) return QM_OK;
  ReportMissingChoice(walk->aux, dataParent, schemaNode);
  return QM_INVALID;
}

static uint32_t OpenInputOfRpc(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                               QmdLevel* level) {
  QmsNode* input = QMD_PAS_GetRpcSubTreeInputMdl(schemaNode);
  if (input != nullptr) OpenChildren(walk, level, input, dataParent);
  return QM_OK;
}

constexpr QmdOpenFunc g_qmdMandatoryFuncTbl[QMS_NODE_KIND_COUNT] = {
    nullptr,               // none
    OpenContainer,         // container
    CheckDataNode,         // leaf
    nullptr,               // leaf-list
    OpenEntries,           // list
    OpenChoice,            // choice
    OpenChildrenInParent,  // case
    CheckDataNode,         // anydata
    CheckDataNode,         // anyxml
    OpenInputOfRpc,        // action
    OpenInputOfRpc,        // rpc
    OpenChildrenInParent,  // notification
    OpenChildrenInParent,  // input
    nullptr,               // output
    nullptr,               // augment
};

static uint32_t CloseTemporary(QmdWalk* /*walk*/, const QmdLevel* level, uint32_t ret) {
  if (level->made == nullptr) return ret;
  ForgetMade(level);
  RemoveTemporary(level->made);
  return ret;
}

uint32_t QM_PAS_CheckSubtreeMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                      QmsNode* schemaNode) noexcept {
  if (aux == nullptr || dataParent == nullptr || schemaNode == nullptr) return QM_INVALID;
  QmdWalk walk;
  uint32_t added = 0;
  InitSchemaWalk(&walk, aux, QMD_PHASE_MANDATORY, g_qmdMandatoryFuncTbl, CloseTemporary, &added);
  return WalkSchemaNode(&walk, dataParent, schemaNode);
}

uint32_t QM_PAS_CheckTreeMandatory(QmCheckAux* aux, xmlNode* node) noexcept {
  if (aux == nullptr || (aux->flags & (QMD_MODE_RPC | QMD_MODE_NOTIF)) == 0) return QM_INVALID;
  return QM_PAS_CheckSubtreeMandatory(aux, node, BoundSchema(node));
}

static uint32_t CheckAs(QmdOpenFunc open, QmCheckAux* aux, xmlNode* dataParent,
                        QmsNode* schemaNode) {
  QmdWalk walk;
  uint32_t added = 0;
  InitSchemaWalk(&walk, aux, QMD_PHASE_MANDATORY, g_qmdMandatoryFuncTbl, CloseTemporary, &added);
  return WalkSchemaNodeAs(&walk, open, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckDataNodeWithMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                            QmsNode* schemaNode) {
  return CheckAs(CheckDataNode, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckContainerMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                         QmsNode* schemaNode) {
  return CheckAs(OpenContainer, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckListMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckAs(OpenEntries, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckChoiceMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckAs(OpenChoice, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckCaseMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckAs(OpenChildrenInParent, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckNotifMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckAs(OpenChildrenInParent, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckInputMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckAs(OpenChildrenInParent, aux, dataParent, schemaNode);
}

uint32_t QMD_PAS_CheckRpcMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode) {
  return CheckAs(OpenInputOfRpc, aux, dataParent, schemaNode);
}
