// SPDX-License-Identifier: BSD-3-Clause
// The checks of single elements while their tree is bound: values, actions, and what an
// element says to its siblings. An action is looked for in data trees only; one that turns up
// inside rpc input or a notification is refused without a record of its own.

#include "data/node_check.h"

#include "context/xml_tree.h"
#include "data/data_node.h"
#include "data/error.h"
#include "data/schema_query.h"
#include "platform/string.h"
#include "values/type_check.h"

namespace {
// Invalid values are quoted in messages up to 256 characters.
constexpr size_t kMaxQuotedValue = 256;
constexpr int kCutValueLength = 253;
}  // namespace

void QMD_PAS_SetInvalidValueErr(QmCheckAux* aux, xmlNode* element) {
  const char* name = ElementName(element);
  const char* content = QM_XML_GetElemNodeContent(element);
  const char* value = content == nullptr ? "" : content;
  QmErrNode* err = RunError(aux, QM_ERR_TAG_BAD_ELEMENT, element);
  if (RTK_StrLen(value) > kMaxQuotedValue) {
    QMD_ERR_SetErrorMsg(err, "%s has invalid value %.*s....", name, kCutValueLength, value);
  } else {
    QMD_ERR_SetErrorMsg(err, "%s has invalid value %s.", name, value);
  }
  QMD_ERR_SetBadElement(err, name);
}

uint32_t QMD_PAS_CheckDataNodeValue(QmCheckAux* aux, xmlNode* element) {
  if ((aux->flags & QMD_MODE_NOTIF) != 0) return QM_OK;
  QmsNode* schemaNode = BoundSchema(element);
  if (schemaNode == nullptr ||
      (schemaNode->kind != QMS_NODE_LEAF && schemaNode->kind != QMS_NODE_LEAF_LIST)) {
    return QM_OK;
  }
  const uint32_t ret = ValidateValue(schemaNode, QM_INPUT_ELEMENT, element, aux->targets);
  if (ret != QM_OK) QMD_PAS_SetInvalidValueErr(aux, element);
  return ret;
}

uint32_t QMD_PAS_CheckActionNodeRepeat(QmCheckAux* aux, xmlNode* element) {
  if ((aux->flags & QMD_MODE_ACTION_TREE) == 0) return QM_INVALID;
  if (aux->actionNode == nullptr) {
    aux->actionNode = element;
    return QM_OK;
  }
  ReportUnexpectedElement(aux, element);
  return QM_INVALID;
}

uint32_t QMD_PAS_CheckActionNodeExist(QmCheckAux* aux) {
  if ((aux->flags & QMD_MODE_ACTION_TREE) == 0 || aux->actionNode != nullptr) return QM_OK;
  QmErrNode* err = RunError(aux, QM_ERR_TAG_UNKNOWN_ELEMENT, nullptr);
  QMD_ERR_SetErrorMsg(err, "Unexpected element: %s.", "action");
  QMD_ERR_SetBadElement(err, "action");
  return QM_INVALID;
}

// Whether a node that may occur once occurs again. Elements are bound in document
// order, so it is the second one that is reported. Entries of lists and leaf-lists
// are never compared with each other, deliberately: neither equal keys nor equal
// values are found here. Since all others fail at their second occurrence, the
// siblings are searched at most once for each child of the schema.

static bool MayOccurOften(const QmsNode* schemaNode) {
  return schemaNode->kind == QMS_NODE_LIST || schemaNode->kind == QMS_NODE_LEAF_LIST;
}

static bool HasTwin(const xmlNode* element, const QmsNode* schemaNode) {
  for (const xmlNode* node = element->prev; node != nullptr; node = node->prev) {
    if (BoundSchema(node) == schemaNode) return true;
  }
  return NextBoundSibling(element->next, schemaNode) != nullptr;
}

uint32_t QMD_PAS_CheckMultipleInstanceNode(QmCheckAux* aux, xmlNode* element) {
  const QmsNode* schemaNode = BoundSchema(element);
  if (schemaNode == nullptr || element->parent == aux->topNode || MayOccurOften(schemaNode)) {
    return QM_OK;
  }
  if (!HasTwin(element, schemaNode)) return QM_OK;
  ReportUnexpectedElement(aux, element);
  return QM_INVALID;
}

// The order of elements inside the input of an rpc or action (RFC 7950 sections
// 7.14.2 and 7.15.2). Each element is compared with the element just before it:
// what stands later in the schema must not stand before it. Nodes that another
// module added by augmentation have no place among the module's own and are not
// ordered against them.

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

// Data of more than one case of a choice (RFC 7950 section 7.9). An element is
// compared with the elements before it, as far as the choice directly above it
// goes. The search back ends at the first element directly below the same choice:
// that one passed this very check against everything before it. Elements below a
// choice nested in one of the cases did not, so they are compared and passed. Since
// each element meets only what stands after its predecessor in the same choice, a
// long list in one case costs no more than its length.

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
