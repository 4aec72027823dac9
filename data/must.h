// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMD_PAS_EvalDataTreeWhenMust(QmCheckAux* aux, xmlNode* node);
uint32_t QMD_PAS_EvalDataTreeMust(QmCheckAux* aux, xmlNode* node);
QmsNode* QMD_PAS_GetRpcSubTreeInputMdl(QmsNode* schemaNode);
uint32_t QMD_PAS_EvalDataTreeMustWithTopMustMdl(QmCheckAux* aux, xmlNode* node,
                                                QmsNode* mustSchemaNode);
uint32_t QMD_PAS_EvalAllChildDataNodeMust(QmCheckAux* aux, xmlNode* node);
uint32_t QMD_PAS_EvalDataSubtreeMust(QmCheckAux* aux, xmlNode* node);
uint32_t QMD_PAS_EvalDataNodeMustCond(QmCheckAux* aux, xmlNode* node, QmsNode* mustSchemaNode);

QM_END_INTERNAL_DECLS
