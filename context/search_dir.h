// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_CTX_UpdateSearchDirAgainstTbl(QmCtx* ctx, const char* dir, uint32_t remove);
char* QM_CTX_FormatInputPath(const char* path);
int32_t QM_CTX_FindSearchDirInTbl(QmCtx* ctx, const char* dir);
uint32_t QM_CTX_AllocSearchDirBufferIfNeed(QmCtx* ctx);
uint32_t QM_CTX_AppendSearchDirToTbl(QmCtx* ctx, const char* dir);
void QM_CTX_ClearSearchDirAtPos(QmCtx* ctx, uint32_t pos);
void QM_CTX_FreeSearchDirs(QmCtx* ctx, const char** array, uint32_t count);

QM_END_INTERNAL_DECLS
