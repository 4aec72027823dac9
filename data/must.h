// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// The when phase and then the must phase from the start node on: 0, 22 when it is not
// bound, or the status of the first failure.
uint32_t QMD_PAS_EvalDataTreeWhenMust(QmCheckAux* aux, xmlNode* node);
// The must phase: the statements of the start node (of a notification its own, of an rpc
// or action its input's), then all below it. Statuses as those of the functions below.
uint32_t QMD_PAS_EvalDataTreeMust(QmCheckAux* aux, xmlNode* node);
// The input of an rpc or action, or NULL.
QmsNode* QMD_PAS_GetRpcSubTreeInputMdl(QmsNode* schemaNode);
// The must statements of `mustSchemaNode` on the start node, then those of all elements
// below it on these.
uint32_t QMD_PAS_EvalDataTreeMustWithTopMustMdl(QmCheckAux* aux, xmlNode* node,
                                                QmsNode* mustSchemaNode);
// The must statements of all elements below `node`, parents first. 0; 22 when one is
// false in a request; in a notification such an element is removed. Else the status of
// one that cannot be evaluated.
uint32_t QMD_PAS_EvalAllChildDataNodeMust(QmCheckAux* aux, xmlNode* node);
// The same for `node` and all below it.
uint32_t QMD_PAS_EvalDataSubtreeMust(QmCheckAux* aux, xmlNode* node);
// The must statements of a schema node on one element: 0, QM_XPATH_FALSE for the first
// that is false (in a request it is reported), 22 for one without a condition, or the
// status of one that cannot be evaluated.
uint32_t QMD_PAS_EvalDataNodeMustCond(QmCheckAux* aux, xmlNode* node, QmsNode* mustSchemaNode);

QM_END_INTERNAL_DECLS
