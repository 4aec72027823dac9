// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"
#include "xpath/records.h"

// What the evaluator asks of the bound data tree above it.

// A run keeps the numbers that long texts stand for: a hundred thousand entries may
// all compare themselves with one leaf of megabytes. False when none is kept; outside
// of a run none is.
bool FindKeptNumber(const xmlNode* element, double* number);
void KeepNumber(const xmlNode* element, double number);

QM_BEGIN_INTERNAL_DECLS

xmlNode* QMD_PAS_FindChildDataNode(const xmlNode* element, const char* name);
char* QMD_NODE_GetValueContent(xmlNode* element, QmsNode* schemaNode);
uint32_t QMD_MDL_IsIdentityref(QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
