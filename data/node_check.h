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

uint32_t QMD_PAS_CheckMultipleInstanceNode(QmCheckAux* aux, xmlNode* element);
uint32_t QMD_PAS_CheckDataNodeValue(QmCheckAux* aux, xmlNode* element);
void QMD_PAS_SetInvalidValueErr(QmCheckAux* aux, xmlNode* element);
uint32_t QMD_PAS_CheckActionNodeRepeat(QmCheckAux* aux, xmlNode* element);
uint32_t QMD_PAS_CheckElementNodeOrder(QmCheckAux* aux, xmlNode* element);
uint32_t QMD_PAS_CheckMultiCases(QmCheckAux* aux, xmlNode* element);
uint32_t QMD_PAS_IsUnderRpcOrActionTree(uint32_t flags);
uint32_t QMD_PAS_CheckActionNodeExist(QmCheckAux* aux);

QM_END_INTERNAL_DECLS
