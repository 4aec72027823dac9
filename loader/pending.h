// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

void QMS_LOADER_InitModPendTbl(QmsModPendTbl* tbl);
void QMS_LOADER_DeInitModPendTbl(QmsModPendTbl* tbl);
QmsModPendNode* QMS_LOADER_AddModPendNode(QmsModPendTbl* tbl, const char* name);
QmsModPendNode* QMS_LOADER_FindModPendNodeByName(QmsModPendTbl* tbl, const char* name);
void QMS_LOADER_RemoveModPendNode(QmsModPendNode* node);
QmsModFeatPend* QMS_LOADER_AddModFeatPend(QmsModPendNode* node, const char* featName);
void QMS_LOADER_DestoryAllModFeatPend(QmsModPendNode* node);
uint32_t QMS_LOADER_SaveEnabledFeatureToPendNode(QmsModule* module, QmsModPendNode* node);

QM_END_INTERNAL_DECLS
