/* SPDX-License-Identifier: BSD-3-Clause */
/* The attributes "insert", "key" and "value" of RFC 7950 sections 7.7.9 and 7.8.6: where an
   entry goes in a list that is ordered by the user. */
#ifndef AGENT_INSERT_H
#define AGENT_INSERT_H

#include "instances.h"

/* Tells whether an element of a request may have the attribute. */
int InsertKnows(const xmlNode *element, const xmlAttr *attribute);
/* An error when the attributes do not make sense together. */
QmErrNode *InsertCheck(xmlNode *element);
/* Puts an entry where the element of a request wants it; where it is without such a wish. */
QmErrNode *InsertPlace(Instances *instances, xmlNode *parent, xmlNode *in);

#endif
