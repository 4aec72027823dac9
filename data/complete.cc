// SPDX-License-Identifier: BSD-3-Clause
// Completion of rpc and action input with the defaults of the schema: dispatch by
// node kind, and the kinds that make no element themselves. Choice, case and input
// hand their children the data parent on; list entries are completed but never
// made; default values of leaf-lists are never added, deliberately. Leaves and
// containers, which do make elements, are in complete_node.cc.

#include "data/data_node.h"
#include "data/defaults.h"
#include "data/element_walk.h"
#include "data/schema_query.h"

const QmdCompleteFunc g_qmdCompleteFuncTbl[QMS_NODE_KIND_COUNT] = {
    nullptr,                               // none
    QMD_PAS_CompleteDataTreeForContainer,  // container
    QMD_PAS_CompleteDataTreeForLeaf,       // leaf
    QMD_PAS_CompleteDataTreeForLeaflist,   // leaf-list
    QMD_PAS_CompleteDataTreeForList,       // list
    QMD_PAS_CompleteDataTreeForChoice,     // choice
    QMD_PAS_CompleteDataTreeForCase,       // case
    nullptr,                               // anydata
    nullptr,                               // anyxml
    QMD_PAS_CompleteDataTreeForRpc,        // action
    QMD_PAS_CompleteDataTreeForRpc,        // rpc
    nullptr,                               // notification
    QMD_PAS_CompleteDataTreeForInput,      // input
    nullptr,                               // output
    nullptr,                               // augment
};
static_assert(QMS_NODE_CONTAINER == 1 && QMS_NODE_CASE == 6 && QMS_NODE_RPC == 10 &&
                  QMS_NODE_INPUT == 12 && QMS_NODE_KIND_COUNT == 15,
              "the rows stand at their kind");

uint32_t QMD_PAS_CompleteTree(QmCheckAux* aux, xmlNode* node, uint32_t flags) {
  if ((flags & QMD_MODE_RPC) == 0) return QM_OK;
  QmsNode* schemaNode = BoundSchema(node);
  if (schemaNode == nullptr ||
      (schemaNode->kind != QMS_NODE_ACTION && schemaNode->kind != QMS_NODE_RPC)) {
    return QM_INVALID;
  }
  uint32_t added = 0;
  return QMD_PAS_CompleteSubTree(aux, node, schemaNode, &added);
}

uint32_t QMD_PAS_CompleteSubTree(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                 uint32_t* outAdded) {
  if (aux == nullptr || dataParent == nullptr || schemaNode == nullptr || outAdded == nullptr) {
    return QM_INVALID;
  }
  if (schemaNode->kind >= QMS_NODE_KIND_COUNT) return QM_INVALID;
  if (QM_NODE_IsEnabled(schemaNode) == 0) return QM_OK;
  const QmdCompleteFunc complete = g_qmdCompleteFuncTbl[schemaNode->kind];
  if (complete == nullptr) return QM_OK;
  if (aux->nesting >= kQmdMaxNesting) return QM_INVALID;
  ++aux->nesting;
  const uint32_t ret = complete(aux, dataParent, schemaNode, outAdded);
  --aux->nesting;
  return ret;
}

// Completes what the walk comes to. An action is completed only where it is the start:
// one further down stands, illegally, in the input of an operation, where its own input
// has no element to be added to.
static uint32_t CompleteFoundNode(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                  uint32_t* outAdded) {
  if (schemaNode->kind == QMS_NODE_ACTION) return QM_OK;
  return QMD_PAS_CompleteSubTree(aux, dataParent, schemaNode, outAdded);
}

// How far the defaults of a parent came is of no use for those of another one. What
// has no element, as a case, completes its caller's parent and passes it on.
uint32_t CompleteSchemaChildren(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                uint32_t* outAdded) {
  const QmdPlace outer = aux->place;
  uint32_t ret = QM_OK;
  for (QmsNode* child = schemaNode->firstChild; child != nullptr; child = child->next) {
    ret = CompleteFoundNode(aux, dataParent, child, outAdded);
    if (ret != QM_OK) break;
  }
  if (QMD_MDL_IsSchemaNodeNeedSkipInDataTree(schemaNode) == 0) aux->place = outer;
  return ret;
}

uint32_t QMD_PAS_CompleteDataTreeForRpc(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                        uint32_t* outAdded) {
  return CompleteSchemaChildren(aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForInput(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                          uint32_t* outAdded) {
  return CompleteSchemaChildren(aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForCase(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded) {
  return CompleteSchemaChildren(aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForChoice(QmCheckAux* aux, xmlNode* dataParent,
                                           QmsNode* schemaNode, uint32_t* outAdded) {
  QmsNode* branch = QMD_NODE_GetChoiceInstanceCaseBranch(dataParent, schemaNode);
  if (branch == nullptr) branch = QMD_MDL_GetChoiceDefaultChildNode(schemaNode);
  if (branch == nullptr) return QM_OK;
  return CompleteFoundNode(aux, dataParent, branch, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForLeaflist(QmCheckAux*, xmlNode*, QmsNode*, uint32_t*) {
  return QM_OK;
}

uint32_t QMD_PAS_CompleteDataTreeForList(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded) {
  if (QMD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode) != 0) return QM_OK;
  xmlNode* entry = NextBoundSibling(dataParent->children, schemaNode);
  while (entry != nullptr) {
    const uint32_t ret = CompleteSchemaChildren(aux, entry, schemaNode, outAdded);
    if (ret != QM_OK) return ret;
    entry = NextBoundSibling(entry->next, schemaNode);
  }
  return QM_OK;
}
