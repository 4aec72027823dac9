// SPDX-License-Identifier: BSD-3-Clause
// Data of more than one case of a choice (RFC 7950 section 7.9). An element is
// compared with the elements before it, as far as the choice directly above it
// goes. The search back ends at the first element directly below the same choice:
// that one passed this very check against everything before it. Elements below a
// choice nested in one of the cases did not, so they are compared and passed. Since
// each element meets only what stands after its predecessor in the same choice, a
// long list in one case costs no more than its length.

#include "context/element_walk.h"
#include "data/data_node.h"
#include "data/error.h"
#include "data/node_check.h"
#include "data/schema_query.h"

static bool EarlierSiblingInOtherCase(const xmlNode* element, const QmsNode* choice,
                                      const QmsNode* ownBranch) {
  for (const xmlNode* node = element->prev; node != nullptr; node = node->prev) {
    QmsNode* schemaNode = BoundSchema(node);
    if (schemaNode == nullptr) continue;
    const QmsNode* branch = BranchOfChoice(schemaNode, choice);
    if (branch != nullptr && branch != ownBranch) return true;
    if (branch != nullptr && QMD_MDL_GetChoiceCaseParentNode(schemaNode) == choice) return false;
  }
  return false;
}

uint32_t QMD_PAS_CheckMultiCases(QmCheckAux* aux, xmlNode* element) {
  if (QMD_PAS_IsUnderRpcOrActionTree(aux->flags) == 0) return QM_OK;
  QmsNode* schemaNode = BoundSchema(element);
  if (schemaNode == nullptr) return QM_OK;
  const QmsNode* choice = QMD_MDL_GetChoiceCaseParentNode(schemaNode);
  if (choice == nullptr) return QM_OK;
  if (!EarlierSiblingInOtherCase(element, choice, BranchOfChoice(schemaNode, choice))) return QM_OK;
  QmErrNode* err = RunError(aux, QM_ERR_TAG_BAD_ELEMENT, element);
  QMD_ERR_SetErrorMsg(err, "Data for more than one case branch of a choice is present.");
  QMD_ERR_SetBadElement(err, ElementName(element));
  return QM_INVALID;
}
