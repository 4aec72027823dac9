// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_CTX_InitModRelationTree(QmCtx* ctx);
void QM_CTX_DeInitModRelationTree(QmCtx* ctx);
QmCtxModRelTbl* QM_CTX_FindModRelationTbl(QmCtx* ctx, const char* tgtModName);
QmCtxModRelTbl* QM_CTX_AddModRelationTbl(QmCtx* ctx, const char* tgtModName);
void QM_CTX_DeleteModRelationTbl(QmCtx* ctx, QmCtxModRelTbl* tbl);
QmCtxModRelItem* QM_CTX_AddModRelationItem(QmCtxModRelTbl* tbl, uint32_t relType,
                                           const char* srcModName);
uint32_t QM_CTX_AddTwoModRelation(QmCtx* ctx, const char* tgtModName, const char* srcModName,
                                  uint32_t relType);
void QM_CTX_DelTwoModRelation(QmCtx* ctx, const char* tgtModName, const char* srcModName,
                              uint32_t relType);
uint32_t QM_CTX_CollectDepModNamesRecursive(QmCtx* ctx, const char* modName, uint32_t relType,
                                            const char*** names, uint32_t* count);
uint32_t QM_CTX_WriteOneDepModIntoNameHolder(QmCtxNameHolder* holder, const char* modName);
int32_t QM_CTX_CompareModRelationTbl(const void* keyA, const void* keyB);

QM_END_INTERNAL_DECLS
