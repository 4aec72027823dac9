// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_CTX_InitErrMng(QmCtx* ctx);
void QM_CTX_DestroyErrMng(QmCtxErrMng* errMng);
void QM_CTX_DestoryErrMngTree(QmCtxErrMng* errMng);
void QM_CTX_AddModError(QmCtx* ctx, const char* modName, const char* format, ...) QM_PRINTF(3, 4);
uint32_t QM_CTX_AddErrorMsgToMod(QmCtxErrMng* errMng, const char* modName, const char* message);
QmErrModNode* QM_CTX_GetErrNodeByModName(QmCtx* ctx, const char* modName);
void QM_CTX_DeleteErrNodeByModName(QmCtxErrMng* errMng, const char* modName);
int32_t QM_CTX_CompareModuleName(const void* keyA, const void* keyB);
QmErrModNode* QMS_MOD_CreateErrNode(QmDict* dict, const char* moduleName);
uint32_t QMS_MOD_RecordErrorInfo(QmCtx* ctx, QmErrModNode* errNode, const char* message);
uint32_t QMS_MOD_SetErrInfoNode(QmErrInfo* info, const char* yinFile, const char* message);
void QMS_MOD_ClearErrInfoNode(QmErrInfo* info);
void QMS_MOD_FreeErrModNode(QmDict* dict, QmErrModNode* errNode);
uint32_t QMS_MOD_ScanModAllLoadFail(QmErrModNode* errNode, QmLoadFailScanFunc cb, void* arg);

QM_END_INTERNAL_DECLS
