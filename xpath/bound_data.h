// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"
#include "xpath/records.h"

// What the evaluator asks of the bound data tree above it.

QM_BEGIN_INTERNAL_DECLS

xmlNode* QMD_PAS_FindChildDataNode(const xmlNode* element, const char* name);
char* QMD_NODE_GetValueContent(xmlNode* element, QmsNode* schemaNode);
uint32_t QMD_MDL_IsIdentityref(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
