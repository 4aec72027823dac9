// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// The path of an element in a new text; NULL without memory and for a path that does not
// fit.
char* QMD_ERR_GeneralErrorPath(QmCheckAux* aux, xmlNode* dataNode);
// Writes the steps from an element up to the boundary of the run in front of what the
// buffer holds. 0, or the status of the first step that does not fit.
uint32_t QMD_ERR_PrintPath(QmCheckAux* aux, xmlNode* dataNode, QmdPathBuf* buf);
// The same for one element: its predicates and its step.
uint32_t QMD_ERR_PrintElementNode(QmCheckAux* aux, xmlNode* node, QmdPathBuf* buf);
// Writes "[name='value']": 0, 12 when it does not fit, 22 for NULL.
uint32_t QMD_ERR_PrintElementNodeAsPredicate(QmdPathBuf* buf, const char* name, const char* value);
// Writes "/modName:name", or "/name" without a module: 0, or 22 when it does not fit.
uint32_t QMD_ERR_PrintXpathNode(QmdPathBuf* buf, const char* modName, const char* name);
// The module name that the step of an element is written with; NULL for none, as when
// its parent is of the same module.
const char* QMD_ERR_GetElementNodePrefix(QmCheckAux* aux, xmlNode* node);
// The quote to put around a value: ' unless it has one itself, then ".
char QMD_ERR_GetValueBoundaryQuota(const char* value);

QM_END_INTERNAL_DECLS
