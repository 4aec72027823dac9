/* SPDX-License-Identifier: BSD-3-Clause */
/* Elements and the schema: which node an element is an instance of, its path, and what
   tells it from its siblings. An element's _private points to its schema node; NULL: it has
   none, as the data of a package that is not installed now. */
#ifndef AGENT_SCHEMA_H
#define AGENT_SCHEMA_H

#include <libxml/tree.h>

#include <qmodel/qmodel.h>

/* The schema node of a child, looked up by namespace and name below a node, choices and cases
   passed through; below NULL in the module of the namespace. NULL when there is none. */
QmsNode *SchemaChild(QmCtx *ctx, QmsNode *parent, const xmlNode *element);
/* Binds an element's whole subtree, the element itself excluded; its own binding is given. */
void SchemaBind(QmCtx *ctx, xmlNode *element, QmsNode *node);
/* The node that an element is bound to, and its kind; NULL and 0 when it is not. */
QmsNode *SchemaOf(const xmlNode *element);
uint32_t SchemaKind(const xmlNode *element);

/* The path of a bound element with the keys of entries, freed with free(). */
char *SchemaPath(xmlNode *element);
/* What tells an instance from its siblings: its name, with the keys of an entry or the value
   of a leaf-list. NULL when a key is missing; missing then names it. Freed with free(). */
char *SchemaInstance(QmCtx *ctx, xmlNode *element, QmsNode *node, const char **missing);

/* Steps over what is no element. */
xmlNode *FirstElement(const xmlNode *parent);
xmlNode *NextElement(const xmlNode *element);
/* The first child of that name in the given namespace. Without one in the parent's, where an
   element that has none counts as one of its parent's; NULL if there is no such child. */
xmlNode *ChildNamed(const xmlNode *parent, const char *ns, const char *name);
/* The namespace of an element; empty when it has none. */
const char *NamespaceOf(const xmlNode *element);

#endif
