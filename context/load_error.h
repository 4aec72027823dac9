// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// The manager of a context's load errors. Init gives 22 for NULL, 12 without memory,
// or the error of the lock. DestoryErrMngTree frees the records only, under the
// caller's lock.
uint32_t QM_CTX_InitErrMng(QmCtx* ctx);
void QM_CTX_DestroyErrMng(QmCtxErrMng* errMng);
void QM_CTX_DestoryErrMngTree(QmCtxErrMng* errMng);
// Records a message for a module, cut at 511 characters, unless the module has two
// already, the context has no manager, or the calling thread is scanning it.
void QM_CTX_AddModError(QmCtx* ctx, const char* modName, const char* format, ...) QM_PRINTF(3, 4);
// The same with the message made and the lock held. 12 without memory.
uint32_t QM_CTX_AddErrorMsgToMod(QmCtxErrMng* errMng, const char* modName, const char* message);
// The record of a module, or NULL. It is not protected after the return: only the
// loading thread may use it, and only to tell whether there is one.
QmErrModNode* QM_CTX_GetErrNodeByModName(QmCtx* ctx, const char* modName);
void QM_CTX_DeleteErrNodeByModName(QmCtxErrMng* errMng, const char* modName);
// Orders the records: plain text order.
int32_t QM_CTX_CompareModuleName(const void* keyA, const void* keyB);
// One module's record: made empty, given a message (dropped silently when it is
// full), freed with its texts, and scanned until `cb` gives other than 0.
QmErrModNode* QMS_MOD_CreateErrNode(QmDict* dict, const char* moduleName);
uint32_t QMS_MOD_RecordErrorInfo(QmCtx* ctx, QmErrModNode* errNode, const char* message);
// One pair of texts: filled with copies (12 without memory), and emptied.
uint32_t QMS_MOD_SetErrInfoNode(QmErrInfo* info, const char* yinFile, const char* message);
void QMS_MOD_ClearErrInfoNode(QmErrInfo* info);
void QMS_MOD_FreeErrModNode(QmDict* dict, QmErrModNode* errNode);
uint32_t QMS_MOD_ScanModAllLoadFail(QmErrModNode* errNode, QmLoadFailScanFunc cb, void* arg);

QM_END_INTERNAL_DECLS
