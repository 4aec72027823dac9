/* SPDX-License-Identifier: BSD-3-Clause */
/* Values as RFC 7950 section 9 has them in canonical form: "01" and "1" are one number, and
   an identity is the same whatever prefix a client has for its module. */
#ifndef AGENT_VALUE_H
#define AGENT_VALUE_H

#include <libxml/tree.h>

#include <qmodel/qmodel.h>

/* The value of a leaf as it is kept, shown and compared: canonical, with the name of its module as
   the prefix of an identity. What does not fit its type, and an instance-identifier, is as it is
   written. Freed with free(). */
char *ValueOf(QmCtx *ctx, QmsNode *node, xmlNode *element);
/* Declares on a leaf the prefixes that such a value uses; it comes from an element of a request. */
void ValueDeclarePrefixes(QmCtx *ctx, xmlNode *leaf, xmlNode *in, const char *value);

#endif
