// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// What the mandatory check does for one kind of node, whether the node is enabled or
// not, in the element `dataParent`. 0; 22 when something is missing, which is reported,
// or without memory for a temporary element; the status of a when that cannot be
// evaluated; and what the walk answers (schema_walk.h).
uint32_t QMD_PAS_CheckContainerMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckDataNodeWithMandatory(QmCheckAux* aux, xmlNode* dataParent,
                                            QmsNode* schemaNode);
uint32_t QMD_PAS_CheckListMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckChoiceMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckCaseMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckRpcMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckNotifMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);
uint32_t QMD_PAS_CheckInputMandatory(QmCheckAux* aux, xmlNode* dataParent, QmsNode* schemaNode);

QM_END_INTERNAL_DECLS
