// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// All conditions from `node` on, parents first; nothing in anydata, anyxml and
// schema-mount points. 0 when what is left passes; 28928 (QM_XPATH_FALSE) for a client's
// element in a request, with a record; 22 when `node` itself fails; else the status of a
// condition that could not be evaluated, with a record.
uint32_t QMD_PAS_EvalDataTreeWhen(QmCheckAux* aux, xmlNode* node);
// Whether the element passes its own condition and those of the choices and cases that it
// lies in; *outPass 1 or 0. 0, or the status of a condition that could not be evaluated,
// with a record.
uint32_t QMD_PAS_EvalDataNodeWhenCond(QmCheckAux* aux, xmlNode* node, uint32_t* outPass);
// The same for one condition, evaluated on `contextNode`; NULL passes.
uint32_t QMD_PAS_EvalDataNodeOneWhenCond(QmCheckAux* aux, xmlNode* node, xmlNode* contextNode,
                                         const char* when, uint32_t* outPass);
// Deals with an element that fails, and stores the one to go on with, within the tree of
// `startNode`. 22 for the start node, *next NULL; else by the mode, as follows.
uint32_t QMD_PAS_ProcDataNodeWhenCondNoPass(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next);
// In a request: a default is freed with the added ancestors that it leaves empty, 0; for
// a client's element 28928 and a record, *next as it was.
uint32_t QMD_PAS_ProcWhenCondNoPassForRpc(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                          xmlNode** next);
// In a notification: the element is freed; 0.
uint32_t QMD_PAS_ProcWhenCondNoPassForNotif(QmCheckAux* aux, xmlNode* startNode, xmlNode* node,
                                            xmlNode** next);
// "%s is not satisfied when condition." with the element's name.
void QMD_PAS_SetWhenCondNoPassErrorInfo(QmCheckAux* aux, xmlNode* node);
// 0 for the kinds whose elements always pass (operations and what they consist of,
// notifications), 1 for all others.
uint32_t QMD_MDL_IsNeedCheckWhenCond(uint32_t kind);

QM_END_INTERNAL_DECLS
