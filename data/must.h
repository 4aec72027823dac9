// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// The conditions of a completed tree. 0 when they hold; 28928 (QM_XPATH_FALSE) or 22 for
// one that does not, as each says; any other status is that of a condition that could not
// be evaluated, with a record. In a request a false condition leaves a record; in a
// notification it leaves none, and below the start node it removes its element.

QM_BEGIN_INTERNAL_DECLS

// All `when`, then all `must`, from the start node on; 22 when it is not bound.
uint32_t QMD_PAS_EvalDataTreeWhenMust(QmCheckAux* aux, xmlNode* node);
// All `must` from the start node on: in a notification the node's own, in a request those
// of its input, and 0 at once in any other mode or without input. 22 when it is not
// bound, else as QMD_PAS_EvalDataTreeMustWithTopMustMdl().
uint32_t QMD_PAS_EvalDataTreeMust(QmCheckAux* aux, xmlNode* node);
// The input of an rpc or action, or NULL.
QmsNode* QMD_PAS_GetRpcSubTreeInputMdl(QmsNode* schemaNode);
// The statements of `mustSchemaNode` on the element, 28928 when one is false, then those
// of all elements below it.
uint32_t QMD_PAS_EvalDataTreeMustWithTopMustMdl(QmCheckAux* aux, xmlNode* node,
                                                QmsNode* mustSchemaNode);
// The own statements of all elements below `node`, and of `node` with all below it,
// parents first; nothing in anydata, anyxml and schema-mount points. 22 when one is false
// in a request; in a notification the second may free `node` itself.
uint32_t QMD_PAS_EvalAllChildDataNodeMust(QmCheckAux* aux, xmlNode* node);
uint32_t QMD_PAS_EvalDataSubtreeMust(QmCheckAux* aux, xmlNode* node);
// The statements of `mustSchemaNode`, which may be NULL, in the order of the schema, on
// this element only; 28928 at the first that is false, 22 for one without expression.
uint32_t QMD_PAS_EvalDataNodeMustCond(QmCheckAux* aux, xmlNode* node, QmsNode* mustSchemaNode);

QM_END_INTERNAL_DECLS
