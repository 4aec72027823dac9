// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// The first child element of that name; other kinds of nodes have names too
// ("text", "comment") and are passed over.
xmlNode* FindChildElement(const xmlNode* parent, const char* name);
// From `node` on, the first sibling that is bound to `schemaNode`.
xmlNode* NextBoundSibling(xmlNode* node, const QmsNode* schemaNode);
// The case, or shorthand child, of `choice` that `schemaNode` lies in; NULL when
// it does not lie in the choice.
QmsNode* BranchOfChoice(QmsNode* schemaNode, const QmsNode* choice);
// Declares a namespace at the element, the default one without `prefix`. NULL
// without memory: the element is then of no use any more.
xmlNs* DeclareNamespace(xmlNode* element, const char* href, const char* prefix);

// A new element for a child of `parent`, which does not hang in it yet: named after the
// schema node and bound to it; in another module than the parent's it declares its
// namespace. `ownName` may be its name from the dictionary of the parent's document. NULL
// without memory, for a parent that is no element, a schema node that is NULL or has no
// name, and another module without namespace.
xmlNode* NewElementFor(xmlNode* parent, QmsNode* schemaNode, const xmlChar* ownName);
// Gives an element its content. False without memory: the element is then of no use.
bool AddText(xmlNode* element, const char* text);

QM_BEGIN_INTERNAL_DECLS

// The name of the module of its schema node when the element is bound, else of the one
// that has its default namespace; NULL when there is none, and for other nodes.
const char* QMD_NODE_GetModuleName(QmCtx* ctx, const xmlNode* element);
// 1 for an element that is bound to a key of a list, else 0.
uint32_t QMD_NODE_IsKeyLeafNode(const xmlNode* element);
// The first child that is bound to exactly that schema node; NULL without one, and for a
// NULL argument.
xmlNode* QMD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode* element, const QmsNode* schemaNode);
// New last children, made as by NewElementFor(). The second gets a text as its content,
// unless that is NULL. NULL where that gives NULL: the parent is then as it was.
xmlNode* QMD_NODE_CreateNewChildNode(xmlNode* parentElement, QmsNode* schemaNode);
xmlNode* QMD_PAS_AddNewChildNodeWithValue(xmlNode* parent, QmsNode* schemaNode, const char* text);
// The case, or shorthand child, of the choice that the first child with data of the
// choice lies in; NULL without such a child, and for a NULL argument.
QmsNode* QMD_NODE_GetChoiceInstanceCaseBranch(const xmlNode* parentElement,
                                              const QmsNode* choiceSchemaNode);

QM_END_INTERNAL_DECLS
