// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

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
