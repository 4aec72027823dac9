// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_UnloadModUncoupleProc(QmCtx* ctx, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_PropagateModuleRemove(QmCtx* ctx, const char* name, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_UpdateIndirectDeviatedMod(QmCtx* ctx, QmsModule* module, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_IsAugAndRmvModShareSameDevaition(QmCtx* ctx, const char* augModName,
                                                     QmsModule* module);
uint32_t QMS_LOADER_CheckRelTblHaveDevByWithSameName(const QmCtxModRelTbl* tbl,
                                                     const char* srcModName);
uint32_t QMS_LOADER_UnloadModDeviation(QmCtx* ctx, QmsModule* module, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_ProcModuleAugAndRelationUncouple(QmCtx* ctx, const char* name);
uint32_t QMS_LOADER_UnloadSelfModAugmentAndRelation(QmCtx* ctx, QmsModule* module);
uint32_t QMS_LOADER_UnloadModRemoveProc(QmCtx* ctx, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_ReloadRelatedMod(QmCtx* ctx, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_EnableReloadModFeature(QmCtx* ctx, QmsModPendNode* node);

QM_END_INTERNAL_DECLS
