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

const char* QMD_NODE_GetModuleName(QmCtx* ctx, const xmlNode* element);
uint32_t QMD_NODE_IsKeyLeafNode(const xmlNode* element);
xmlNode* QMD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode* element, const QmsNode* schemaNode);
xmlNode* QMD_NODE_CreateNewChildNode(xmlNode* parentElement, QmsNode* schemaNode);
xmlNode* QMD_PAS_AddNewChildNodeWithValue(xmlNode* parent, QmsNode* schemaNode, const char* text);
QmsNode* QMD_NODE_GetChoiceInstanceCaseBranch(const xmlNode* parentElement,
                                              const QmsNode* choiceSchemaNode);

QM_END_INTERNAL_DECLS
