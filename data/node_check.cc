// SPDX-License-Identifier: BSD-3-Clause
// The checks of single elements that need no look at their siblings: values and
// actions. An action is looked for in data trees only; one that turns up inside
// rpc input or a notification is refused without a record of its own.

#include "data/node_check.h"

#include <cstring>

#include "context/element_walk.h"
#include "context/xml_tree.h"
#include "data/error.h"

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
  if (std::strlen(value) > kMaxQuotedValue) {
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
  const uint32_t ret = QM_NODE_ValidateValue(schemaNode, QM_INPUT_ELEMENT, element);
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
