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

QM_BEGIN_INTERNAL_DECLS

// The name of the module that an element belongs to, by its schema node or else by its
// namespace; NULL when neither tells.
const char* QMD_NODE_GetModuleName(QmCtx* ctx, const xmlNode* element);
// 1 for an element that is bound to a key of its list, else 0.
uint32_t QMD_NODE_IsKeyLeafNode(const xmlNode* element);
// The first child that is bound to `schemaNode`, or NULL.
xmlNode* QMD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode* element, const QmsNode* schemaNode);
// A new, bound child, the last one, in the namespace of its module. NULL without memory
// and for a schema node that has no name or no namespace.
xmlNode* QMD_NODE_CreateNewChildNode(xmlNode* parentElement, QmsNode* schemaNode);
// The same with a text as its content; none for NULL.
xmlNode* QMD_PAS_AddNewChildNodeWithValue(xmlNode* parent, QmsNode* schemaNode, const char* text);
// The branch of a choice that the first child with one lies in; NULL when none has.
QmsNode* QMD_NODE_GetChoiceInstanceCaseBranch(const xmlNode* parentElement,
                                              const QmsNode* choiceSchemaNode);

QM_END_INTERNAL_DECLS
