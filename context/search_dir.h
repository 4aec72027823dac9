// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// Adds a directory (`remove` 0) or takes it off the table (1), by its normalised
// path. 20 when it cannot be normalised or is no directory; else 0, 12 or 22.
uint32_t QM_CTX_UpdateSearchDirAgainstTbl(QmCtx* ctx, const char* dir, uint32_t remove);
// A new text without the trailing slashes of an absolute path; NULL for any other.
char* QM_CTX_FormatInputPath(const char* path);
// Index of a path that is equal to `dir`, or -1.
int32_t QM_CTX_FindSearchDirInTbl(QmCtx* ctx, const char* dir);
// Makes sure that a slot is free. 0 or 12.
uint32_t QM_CTX_AllocSearchDirBufferIfNeed(QmCtx* ctx);
// Adds a path at the end. 0, 12 (no slot) or 22 (slot in use, path not interned).
uint32_t QM_CTX_AppendSearchDirToTbl(QmCtx* ctx, const char* dir);
// Removes the path at an index; later ones move up.
void QM_CTX_ClearSearchDirAtPos(QmCtx* ctx, uint32_t pos);
// Releases `count` paths and frees the array.
void QM_CTX_FreeSearchDirs(QmCtx* ctx, const char** array, uint32_t count);

QM_END_INTERNAL_DECLS
