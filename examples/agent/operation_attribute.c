/* SPDX-License-Identifier: BSD-3-Clause */
#include "operation_attribute.h"

#include <string.h>

#include "agent.h"
#include "fault.h"
#include "insert.h"
#include "schema.h"

int EditOperationOf(const char *name) {
  static const char *const kNames[] = {"merge", "replace", "create", "delete", "remove", "none"};
  for (int i = 0; i <= EDIT_NONE; i++)
    if (strcmp(kNames[i], name) == 0) return i;
  return -1;
}

static const char *TextOf(const xmlAttr *attribute) {
  return attribute->children == NULL ? "" : C(attribute->children->content);
}

EditOperation EditOperationAt(const xmlNode *element, EditOperation inherited) {
  const xmlAttr *attribute = xmlHasNsProp(element, X("operation"), X(NETCONF_NS));
  return attribute == NULL ? inherited : (EditOperation)EditOperationOf(TextOf(attribute));
}

static int IsOperation(const xmlAttr *attribute) {
  return attribute->ns != NULL && xmlStrEqual(attribute->ns->href, X(NETCONF_NS)) &&
         xmlStrEqual(attribute->name, X("operation"));
}

static QmErrNode *Refuse(uint32_t tag, xmlNode *element, const xmlAttr *attribute,
                         const char *message) {
  return With(FaultAt(tag, element, message, NULL), QM_AGENT_FIELD_BAD_ATTRIBUTE,
              C(attribute->name));
}

QmErrNode *EditCheckAttributes(xmlNode *element) {
  for (const xmlAttr *attribute = element->properties; attribute; attribute = attribute->next) {
    int number = IsOperation(attribute) ? EditOperationOf(TextOf(attribute)) : EDIT_NONE;
    /* "none" is for the default operation only. */
    if (IsOperation(attribute) && (number < 0 || number == EDIT_NONE))
      return Refuse(QM_ERR_TAG_BAD_ATTRIBUTE, element, attribute,
                    "%s has an operation that is none.");
    if (!IsOperation(attribute) && !InsertKnows(element, attribute))
      return Refuse(QM_ERR_TAG_UNKNOWN_ATTRIBUTE, element, attribute,
                    "%s has an unknown attribute.");
  }
  return element->properties == NULL ? NULL : InsertCheck(element);
}

QmErrNode *EditCheckNoAttributes(xmlNode *parent) {
  QmErrNode *fault = NULL;
  for (xmlNode *child = FirstElement(parent); child && !fault; child = NextElement(child)) {
    if (child->properties != NULL)
      return Refuse(QM_ERR_TAG_UNKNOWN_ATTRIBUTE, child, child->properties,
                    "%s has an attribute of edit-config.");
    uint32_t kind = SchemaKind(child);
    if (kind != QMS_NODE_ANYXML && kind != QMS_NODE_ANYDATA) fault = EditCheckNoAttributes(child);
  }
  return fault;
}
