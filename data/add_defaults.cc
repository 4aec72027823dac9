// SPDX-License-Identifier: BSD-3-Clause
// Completion of rpc and action input with the defaults of the schema: dispatch by
// node kind, and the kinds that make no element themselves. Choice, case and input
// hand their children the data parent on; list entries are completed but never
// made; default values of leaf-lists are never added, deliberately. Leaves and
// containers, which do make elements, are in default_element.cc. The way down is a walk
// over the schema; each kind only says what it goes through.
#include "data/add_defaults.h"

#include "context/xml_tree.h"
#include "data/default_element.h"
#include "data/schema_walk.h"

static uint32_t OpenLeaflist(QmdWalk* /*walk*/, xmlNode* /*dataParent*/, QmsNode* /*schemaNode*/,
                             QmdLevel* /*level*/) {
  return QM_OK;
}

// An action is completed only where it is the start: one further down stands,
// illegally, in the input of an operation, where its own input has no element to be
// added to.
static uint32_t OpenAction(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                           QmdLevel* level) {
  if (walk->count == 0) OpenChildren(walk, level, schemaNode, dataParent);
  return QM_OK;
}

static uint32_t OpenChoice(QmdWalk* walk, xmlNode* dataParent, QmsNode* schemaNode,
                           QmdLevel* level) {
  static_cast<void>(OpenBranch(walk, level, schemaNode, dataParent));
  return QM_OK;
}

constexpr QmdOpenFunc g_qmdCompleteFuncTbl[QMS_NODE_KIND_COUNT] = {
    nullptr,               // none
    OpenDefaultContainer,  // container
    AddDefaultOfLeaf,      // leaf
    OpenLeaflist,          // leaf-list
    OpenEntries,           // list
    OpenChoice,            // choice
    OpenChildrenInParent,  // case
    nullptr,               // anydata
    nullptr,               // anyxml
    OpenAction,            // action
    OpenChildrenInParent,  // rpc
    nullptr,               // notification
    OpenChildrenInParent,  // input
    nullptr,               // output
    nullptr,               // augment
};

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
  QmdWalk walk;
  InitSchemaWalk(&walk, aux, QMD_PHASE_COMPLETE, g_qmdCompleteFuncTbl, CloseDefaultContainer,
                 outAdded);
  return WalkSchemaNode(&walk, dataParent, schemaNode);
}

static uint32_t CompleteAs(QmdOpenFunc open, QmCheckAux* aux, xmlNode* dataParent,
                           QmsNode* schemaNode, uint32_t* outAdded) {
  QmdWalk walk;
  InitSchemaWalk(&walk, aux, QMD_PHASE_COMPLETE, g_qmdCompleteFuncTbl, CloseDefaultContainer,
                 outAdded);
  return WalkSchemaNodeAs(&walk, open, dataParent, schemaNode);
}

uint32_t QMD_PAS_CompleteDataTreeForContainer(QmCheckAux* aux, xmlNode* dataParent,
                                              QmsNode* schemaNode, uint32_t* outAdded) {
  return CompleteAs(OpenDefaultContainer, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForLeaf(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded) {
  return CompleteAs(AddDefaultOfLeaf, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForLeaflist(QmCheckAux* aux, xmlNode* dataParent,
                                             QmsNode* schemaNode, uint32_t* outAdded) {
  return CompleteAs(OpenLeaflist, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForList(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded) {
  return CompleteAs(OpenEntries, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForChoice(QmCheckAux* aux, xmlNode* dataParent,
                                           QmsNode* schemaNode, uint32_t* outAdded) {
  return CompleteAs(OpenChoice, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForCase(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                         uint32_t* outAdded) {
  return CompleteAs(OpenChildrenInParent, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForRpc(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                        uint32_t* outAdded) {
  return CompleteAs(OpenChildrenInParent, aux, dataParent, schemaNode, outAdded);
}

uint32_t QMD_PAS_CompleteDataTreeForInput(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode,
                                          uint32_t* outAdded) {
  return CompleteAs(OpenChildrenInParent, aux, dataParent, schemaNode, outAdded);
}
