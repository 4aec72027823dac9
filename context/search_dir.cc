// SPDX-License-Identifier: BSD-3-Clause
// The search directories of a context: a table of interned absolute paths in
// the order they were set, which is the order they are searched in. Paths are
// normalised only at their end, so that "/etc/yin/" and "/etc/yin" are one entry.
#include "context/search_dir.h"

#include <cstring>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/string.h"
#include "platform/file.h"
#include "platform/string.h"

uint32_t QM_CTX_SetSearchDir(QmCtx* ctx, const char* dir) noexcept {
  if (ctx == nullptr || dir == nullptr) return QM_INVALID;
  return QM_CTX_UpdateSearchDirAgainstTbl(ctx, dir, 0);
}

static void ReleaseAllDirs(QmDict* dict, const char** dirs, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) ReleaseText(dict, &dirs[i]);
}

uint32_t QM_CTX_UnSetSearchDir(QmCtx* ctx, const char* dir) noexcept {
  if (ctx == nullptr) return QM_INVALID;
  if (dir != nullptr) return QM_CTX_UpdateSearchDirAgainstTbl(ctx, dir, 1);
  ReleaseAllDirs(&ctx->dict, ctx->searchDirs, ctx->searchDirCount);
  ctx->searchDirCount = 0;
  return QM_OK;
}

uint32_t QM_CTX_UpdateSearchDirAgainstTbl(QmCtx* ctx, const char* dir, uint32_t remove) {
  const QmHeld<char> path(QM_CTX_FormatInputPath(dir));
  if (!path) return QM_NOT_A_DIRECTORY;
  // Deliberate: a directory that has vanished cannot be removed by name either.
  if (RTK_VFS_IsDirExist(path.Get()) != 1) return QM_NOT_A_DIRECTORY;
  const int32_t pos = QM_CTX_FindSearchDirInTbl(ctx, path.Get());
  if (remove == 0) return pos >= 0 ? QM_OK : QM_CTX_AppendSearchDirToTbl(ctx, path.Get());
  if (pos >= 0) QM_CTX_ClearSearchDirAtPos(ctx, static_cast<uint32_t>(pos));
  return QM_OK;
}

char* QM_CTX_FormatInputPath(const char* path) {
  if (path == nullptr || path[0] != '/') return nullptr;
  size_t length = RTK_StrLen(path);
  if (length > UINT32_MAX) return nullptr;
  while (length > 1 && path[length - 1] == '/') --length;
  return QM_UTL_StrDupWithSpecifyLength(path, static_cast<uint32_t>(length));
}

int32_t QM_CTX_FindSearchDirInTbl(QmCtx* ctx, const char* dir) {
  for (uint32_t i = 0; i < ctx->searchDirCount; ++i) {
    if (RTK_StrCmp(ctx->searchDirs[i], dir) == 0) return static_cast<int32_t>(i);
  }
  return -1;
}

// Deliberate: one slot at a time, since a context has a handful of directories.
uint32_t QM_CTX_AllocSearchDirBufferIfNeed(QmCtx* ctx) {
  if (ctx->searchDirs == nullptr) {
    const uint32_t ret = NewArrayOf(&ctx->searchDirs, 1);
    ctx->searchDirCap = ret == QM_OK ? 1 : 0;
    return ret;
  }
  if (ctx->searchDirCount < ctx->searchDirCap) return QM_OK;
  const size_t capacity = size_t{ctx->searchDirCap} + 1;
  void* block = ResizeBlock(ctx->searchDirs, capacity * sizeof(const char*));
  if (block == nullptr) return QM_NO_MEMORY;
  ctx->searchDirs = static_cast<const char**>(block);
  ctx->searchDirs[ctx->searchDirCap++] = nullptr;
  return QM_OK;
}

uint32_t QM_CTX_AppendSearchDirToTbl(QmCtx* ctx, const char* dir) {
  const uint32_t ret = QM_CTX_AllocSearchDirBufferIfNeed(ctx);
  if (ret != QM_OK) return ret;
  const char** slot = &ctx->searchDirs[ctx->searchDirCount];
  if (*slot != nullptr || !InternText(&ctx->dict, slot, dir)) return QM_INVALID;
  ++ctx->searchDirCount;
  return QM_OK;
}

void QM_CTX_ClearSearchDirAtPos(QmCtx* ctx, uint32_t pos) {
  if (pos >= ctx->searchDirCount) return;
  const char** slot = &ctx->searchDirs[pos];
  ReleaseText(&ctx->dict, slot);
  const uint32_t later = ctx->searchDirCount - pos - 1;
  std::memmove(slot, slot + 1, later * sizeof(const char*));
  slot[later] = nullptr;
  --ctx->searchDirCount;
}

void QM_CTX_FreeSearchDirs(QmCtx* ctx, const char** array, uint32_t count) {
  if (array == nullptr) return;
  ReleaseAllDirs(&ctx->dict, array, count);
  g_qmMemFreeFunc(array);
}
