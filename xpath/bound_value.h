// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"

QM_BEGIN_INTERNAL_DECLS

char* QMD_NODE_ConvertPrefixValueToModValue(xmlNode* element, QmsNode* schemaNode,
                                            const char* text);

char* QMD_NODE_GetValueContent(xmlNode* element, QmsNode* schemaNode);
uint32_t QMD_MDL_IsIdentityref(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
