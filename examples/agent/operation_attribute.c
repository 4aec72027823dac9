/* SPDX-License-Identifier: BSD-3-Clause */
#include "operation_attribute.h"

#include <string.h>

#include "agent.h"
#include "fault.h"

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

QmErrNode *EditCheckAttributes(xmlNode *element) {
  for (const xmlAttr *attribute = element->properties; attribute; attribute = attribute->next) {
    int known = attribute->ns != NULL && xmlStrEqual(attribute->ns->href, X(NETCONF_NS)) &&
                xmlStrEqual(attribute->name, X("operation"));
    int number = EditOperationOf(TextOf(attribute));
    /* "none" is for the default operation only. */
    if (known && number >= 0 && number != EDIT_NONE) continue;
    QmErrNode *fault =
        FaultAt(known ? QM_ERR_TAG_BAD_ATTRIBUTE : QM_ERR_TAG_UNKNOWN_ATTRIBUTE, element,
                known ? "%s has an operation that is none." : "%s has an unknown attribute.", NULL);
    return With(fault, QM_AGENT_FIELD_BAD_ATTRIBUTE, C(attribute->name));
  }
  return NULL;
}
