// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// The path from the root of the validated tree to `dataNode`, in a new block. NULL for
// the boundary itself, for a path that does not fit, and without memory.
char* QMD_ERR_GeneralErrorPath(QmCheckAux* aux, xmlNode* dataNode);

// The steps of the builder write in front of what the buffer holds. 0; a predicate that
// does not fit gives 12, a step that does not fit 22; what was written before stays.
//
// The steps of `dataNode` and its ancestors below the boundary.
uint32_t QMD_ERR_PrintPath(QmCheckAux* aux, xmlNode* dataNode, QmdPathBuf* buf);
// One element: its step, the predicates of its key children, and that of its own value
// when it is an entry of a leaf-list.
uint32_t QMD_ERR_PrintElementNode(QmCheckAux* aux, xmlNode* node, QmdPathBuf* buf);
// [name='value'], with the quotes that suit the value; 22 for a NULL argument.
uint32_t QMD_ERR_PrintElementNodeAsPredicate(QmdPathBuf* buf, const char* name, const char* value);
// /modName:name, or /name when `modName` is NULL.
uint32_t QMD_ERR_PrintXpathNode(QmdPathBuf* buf, const char* modName, const char* name);

// The module name that the element's step carries: at the top and where the module
// changes; NULL elsewhere, and for an element whose module is not known.
const char* QMD_ERR_GetElementNodePrefix(QmCheckAux* aux, xmlNode* node);
// The quotation mark for a value: ' unless the value holds one, then ".
char QMD_ERR_GetValueBoundaryQuota(const char* value);

QM_END_INTERNAL_DECLS
