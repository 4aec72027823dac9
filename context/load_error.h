// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// Gives a context the manager of its load errors: 0, 22 for NULL, 12 without memory, or
// the error of the lock.
uint32_t QM_CTX_InitErrMng(QmCtx* ctx);
// Frees the manager with its records; the records alone, under the caller's lock.
void QM_CTX_DestroyErrMng(QmCtxErrMng* errMng);
void QM_CTX_DestoryErrMngTree(QmCtxErrMng* errMng);

// Records a message for a module, cut at 511 characters, unless the module has two
// already, the context has no manager, or the calling thread is scanning it.
void QM_CTX_AddModError(QmCtx* ctx, const char* modName, const char* format, ...) QM_PRINTF(3, 4);
// The same with the message made and the lock held: 0, 12 without memory, 22 for NULL.
uint32_t QM_CTX_AddErrorMsgToMod(QmCtxErrMng* errMng, const char* modName, const char* message);
// The record of a module, or NULL. It is not protected after the return: only the
// loading thread may use it, and only to tell whether there is one.
QmErrModNode* QM_CTX_GetErrNodeByModName(QmCtx* ctx, const char* modName);
// Forgets the messages of a module.
void QM_CTX_DeleteErrNodeByModName(QmCtxErrMng* errMng, const char* modName);
// Orders the records: plain text order.
int32_t QM_CTX_CompareModuleName(const void* keyA, const void* keyB);

// A new, empty record of one module, or NULL without memory; and its end.
QmErrModNode* QMS_MOD_CreateErrNode(QmDict* dict, const char* moduleName);
void QMS_MOD_FreeErrModNode(QmDict* dict, QmErrModNode* errNode);
// Adds a message with the current file; one for a full record is dropped. 0, 12 without
// memory, 22 for NULL.
uint32_t QMS_MOD_RecordErrorInfo(QmCtx* ctx, QmErrModNode* errNode, const char* message);
// Hands the messages to `cb`, in their order, until it gives other than 0, which is the
// result.
uint32_t QMS_MOD_ScanModAllLoadFail(QmErrModNode* errNode, QmLoadFailScanFunc cb, void* arg);
// Fills one pair of texts with copies: 0, or 12 with both empty.
uint32_t QMS_MOD_SetErrInfoNode(QmErrInfo* info, const char* yinFile, const char* message);
void QMS_MOD_ClearErrInfoNode(QmErrInfo* info);

QM_END_INTERNAL_DECLS
