// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// The check by the rule of one kind, whether or not the node is enabled, for the children
// of `dataParent`: 0; 22 for what is missing, with a record, and, without one, for a
// schema deeper than a run goes and for an element that cannot be made; 12 without memory
// for the walk itself; else the failure of a condition. No argument may be NULL.
//
// An existing container is gone through; a missing one without presence too, unless its
// condition does not hold.
uint32_t QMD_PAS_CheckContainerMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
// A leaf, anydata or anyxml must be there when it is mandatory and its condition holds.
uint32_t QMD_PAS_CheckDataNodeWithMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                            QmsNode* schemaNode);
// Every entry is gone through; their number is not checked.
uint32_t QMD_PAS_CheckListMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
// The case that holds data is gone through, or else the default one; without either the
// choice must not be mandatory.
uint32_t QMD_PAS_CheckChoiceMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
// All children, in the same parent; those of an rpc or action are its input's.
uint32_t QMD_PAS_CheckCaseMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckRpcMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckNotifMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckInputMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
