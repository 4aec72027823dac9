// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// The checks of one element while its tree is bound. Each gives 0 or a status,
// and most failures leave a record in `aux`.

// Whether `later` follows `schemaNode` among the enabled data nodes of its module
// that may stand beside it.
bool FollowsInSchema(QmsNode* schemaNode, const QmsNode* later);

QM_BEGIN_INTERNAL_DECLS

// 22 when a sibling is bound to the same schema node; the top element, entries of lists
// and of leaf-lists may occur again.
uint32_t QMD_PAS_CheckMultipleInstanceNode(QmCheckAux* aux, xmlNode* element);
// The status of the value of a leaf or leaf-list; 0 for all others and in notifications.
uint32_t QMD_PAS_CheckDataNodeValue(QmCheckAux* aux, xmlNode* element);
// "%s has invalid value %s.": a value of more than 256 characters is cut to 253 and "...".
void QMD_PAS_SetInvalidValueErr(QmCheckAux* aux, xmlNode* element);
// Keeps the first action of a data tree in `aux`. 22 for a second one and, without a
// record, where no action may be.
uint32_t QMD_PAS_CheckActionNodeRepeat(QmCheckAux* aux, xmlNode* element);
// 22 inside the input of an operation when the element before it follows it in the schema.
uint32_t QMD_PAS_CheckElementNodeOrder(QmCheckAux* aux, xmlNode* element);
// 22 inside the input of an operation when an earlier sibling is of another case of the
// choice directly above the element.
uint32_t QMD_PAS_CheckMultiCases(QmCheckAux* aux, xmlNode* element);
// 1 inside the input of an rpc, or of the action of a data tree; else 0.
uint32_t QMD_PAS_IsUnderRpcOrActionTree(uint32_t flags);
// 22 when a data tree was to hold an action and none was met.
uint32_t QMD_PAS_CheckActionNodeExist(QmCheckAux* aux);

QM_END_INTERNAL_DECLS
