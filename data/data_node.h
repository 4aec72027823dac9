// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"
#include "xpath/bound_data.h"

QM_BEGIN_INTERNAL_DECLS

const char* QMD_NODE_GetModuleName(QmCtx* ctx, const xmlNode* element);
uint32_t QMD_NODE_IsKeyLeafNode(const xmlNode* element);
xmlNode* QMD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode* element, const QmsNode* schemaNode);
xmlNode* QMD_NODE_CreateNewChildNode(xmlNode* parentElement, QmsNode* schemaNode);
xmlNode* QMD_PAS_AddNewChildNodeWithValue(xmlNode* parent, QmsNode* schemaNode, const char* text);
char* QMD_NODE_ConvertPrefixValueToModValue(xmlNode* element, QmsNode* schemaNode,
                                            const char* text);
QmsNode* QMD_NODE_GetChoiceInstanceCaseBranch(const xmlNode* parentElement,
                                              const QmsNode* choiceSchemaNode);

QM_END_INTERNAL_DECLS
