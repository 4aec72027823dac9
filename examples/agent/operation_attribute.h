/* SPDX-License-Identifier: BSD-3-Clause */
/* The attribute "operation" of RFC 6241 section 7.2, and which others there are. */
#ifndef AGENT_OPERATION_ATTRIBUTE_H
#define AGENT_OPERATION_ATTRIBUTE_H

#include <qmodel/qmodel.h>

typedef enum EditOperation {
  EDIT_MERGE,
  EDIT_REPLACE,
  EDIT_CREATE,
  EDIT_DELETE,
  EDIT_REMOVE,
  EDIT_NONE
} EditOperation;

/* The number of a name; -1 for another text. */
int EditOperationOf(const char *name);
/* The operation of an element, which is that of its parent when it has no attribute. */
EditOperation EditOperationAt(const xmlNode *element, EditOperation inherited);
/* An error when the element has an attribute that the agent does not know. */
QmErrNode *EditCheckAttributes(xmlNode *element);
/* An error when one has any below a bound element: a whole configuration says what is to be there,
   and not what is to be done. */
QmErrNode *EditCheckNoAttributes(xmlNode *parent);

#endif
