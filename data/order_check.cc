// SPDX-License-Identifier: BSD-3-Clause
// The order of elements inside the input of an rpc or action (RFC 7950 sections
// 7.14.2 and 7.15.2). Each element is compared with the element just before it:
// what stands later in the schema must not stand before it. Nodes that another
// module added by augmentation have no place among the module's own and are not
// ordered against them.

#include "context/element_walk.h"
#include "data/error.h"
#include "data/node_check.h"
#include "data/schema_query.h"

bool FollowsInSchema(QmsNode* schemaNode, const QmsNode* later) {
  if (later == schemaNode || later->module != schemaNode->module) return false;
  QmsNode* stop = QMD_MDL_GetClosestAncestorNodeNotChoiceCase(schemaNode);
  QmsNode* next = QMD_MDL_GetNextDataNodeInSameMod(schemaNode, stop);
  while (next != nullptr && next != later) next = QMD_MDL_GetNextDataNodeInSameMod(next, stop);
  return next != nullptr;
}

uint32_t QMD_PAS_IsUnderRpcOrActionTree(uint32_t flags) {
  if ((flags & QMD_MODE_ACTION_TREE) != 0) return (flags & QMD_MODE_IN_ACTION) != 0 ? 1 : 0;
  return (flags & QMD_MODE_RPC) != 0 ? 1 : 0;
}

uint32_t QMD_PAS_CheckElementNodeOrder(QmCheckAux* aux, xmlNode* element) {
  if (QMD_PAS_IsUnderRpcOrActionTree(aux->flags) == 0) return QM_OK;
  QmsNode* schemaNode = BoundSchema(element);
  const xmlNode* previous = PreviousElement(element);
  const QmsNode* previousSchema = BoundSchema(previous);
  if (schemaNode == nullptr || previousSchema == nullptr) return QM_OK;
  if (!FollowsInSchema(schemaNode, previousSchema)) return QM_OK;
  QmErrNode* err = RunError(aux, QM_ERR_TAG_MISSING_ELEMENT, element);
  QMD_ERR_SetErrorMsg(err, "Invalid element order between %s and %s.", ElementName(element),
                      ElementName(previous));
  QMD_ERR_SetBadElement(err, ElementName(element));
  return QM_INVALID;
}
