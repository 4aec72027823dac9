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

// 22 for the second element of a node that may occur once.
uint32_t QMD_PAS_CheckMultipleInstanceNode(QmCheckAux* aux, xmlNode* element);
// The status of QM_NODE_ValidateValue() for a leaf or leaf-list; a notification's are
// not checked.
uint32_t QMD_PAS_CheckDataNodeValue(QmCheckAux* aux, xmlNode* element);
// Reports the value of an element; a long one is cut.
void QMD_PAS_SetInvalidValueErr(QmCheckAux* aux, xmlNode* element);
// Keeps the action of a data tree: 22 for a second one, and outside of a data tree.
uint32_t QMD_PAS_CheckActionNodeRepeat(QmCheckAux* aux, xmlNode* element);
// 22 for an element of an input that the schema has before the one before it.
uint32_t QMD_PAS_CheckElementNodeOrder(QmCheckAux* aux, xmlNode* element);
// 22 for an element of an input when another case of its choice has data.
uint32_t QMD_PAS_CheckMultiCases(QmCheckAux* aux, xmlNode* element);
// 1 when the flags of a run say that it is in an rpc or inside the action of a data
// tree.
uint32_t QMD_PAS_IsUnderRpcOrActionTree(uint32_t flags);
// 22 for a data tree in which no action was met.
uint32_t QMD_PAS_CheckActionNodeExist(QmCheckAux* aux);

QM_END_INTERNAL_DECLS
