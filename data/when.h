// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMD_PAS_EvalDataTreeWhen(QmCheckAux* aux, xmlNode* node);
uint32_t QMD_PAS_EvalDataNodeWhenCond(QmCheckAux* aux, xmlNode* node, uint32_t* outPass);
uint32_t QMD_PAS_EvalDataNodeOneWhenCond(QmCheckAux* aux, xmlNode* node, xmlNode* contextNode,
                                         const char* when, uint32_t* outPass);
uint32_t QMD_PAS_ProcDataNodeWhenCondNoPass(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next);
uint32_t QMD_PAS_ProcWhenCondNoPassForRpc(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                          xmlNode** next);
uint32_t QMD_PAS_ProcWhenCondNoPassForNotif(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next);
void QMD_PAS_SetWhenCondNoPassErrorInfo(QmCheckAux* aux, xmlNode* node);
uint32_t QMD_MDL_IsNeedCheckWhenCond(uint32_t kind);

QM_END_INTERNAL_DECLS
