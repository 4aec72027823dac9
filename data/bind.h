// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// Binding: each element's `_private` names its schema node, or is NULL. An element
// that is already bound is left alone with everything below it.

QM_BEGIN_INTERNAL_DECLS

uint32_t QMD_PAS_FlushTreeWithSchema(QmCheckAux* aux, xmlNode* root);
uint32_t QMD_PAS_FlushSubTreeWithSchema(QmCheckAux* aux, xmlNode* element,
                                        QmsNode* parentSchemaNode);
uint32_t QMD_PAS_FlushAllElementChildNodeWithSchema(QmCheckAux* aux, xmlNode* element,
                                                    QmsNode* schemaNode);
uint32_t QMD_PAS_CheckTopSchemaNode(QmCheckAux* aux, xmlNode* root);
void QMD_PAS_ClearXmlTreePrivate(xmlNode* node);

QM_END_INTERNAL_DECLS
