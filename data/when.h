// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// The when phase over `node` and all below it. 0, or the status of the first failure.
uint32_t QMD_PAS_EvalDataTreeWhen(QmCheckAux* aux, xmlNode* node);
// Whether the conditions of an element, and of the choices and cases directly above its
// node, are true: *outPass 1 or 0. 0, or the status of one that cannot be evaluated,
// which is reported.
uint32_t QMD_PAS_EvalDataNodeWhenCond(QmCheckAux* aux, xmlNode* node, uint32_t* outPass);
// The same for one condition, evaluated on `contextNode`; NULL is true.
uint32_t QMD_PAS_EvalDataNodeOneWhenCond(QmCheckAux* aux, xmlNode* node, xmlNode* contextNode,
                                         const char* when, uint32_t* outPass);
// Settles an element whose condition is false and stores the one to go on with: 22 for
// the start node, else as one of the next two.
uint32_t QMD_PAS_ProcDataNodeWhenCondNoPass(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next);
// An added default goes, with the added containers that it leaves empty: 0. An element
// of the client's is reported: QM_XPATH_FALSE.
uint32_t QMD_PAS_ProcWhenCondNoPassForRpc(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                          xmlNode** next);
// The element goes: 0.
uint32_t QMD_PAS_ProcWhenCondNoPassForNotif(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next);
// Reports an element whose condition is false.
void QMD_PAS_SetWhenCondNoPassErrorInfo(QmCheckAux* aux, xmlNode* node);
// 0 for the kinds that have no when: rpc, action, notification, input, output; else 1.
uint32_t QMD_MDL_IsNeedCheckWhenCond(uint32_t kind);

QM_END_INTERNAL_DECLS
