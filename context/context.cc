// SPDX-License-Identifier: BSD-3-Clause
// The schema context: creation and deletion, the client's hooks, and the name of
// the file being read. Deletion goes in a fixed order: the load errors first, so
// that the end of a module has none to look for; the modules before the relation
// tables, which their augments and deviations still consult; the dictionary
// last, since everything else holds texts of it.
#include "context/context.h"

#include <libxml/parser.h>

#include "context/dict.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "context/module_registry.h"
#include "context/relation.h"
#include "context/search_dir.h"
#include "platform/bounds.h"
#include "platform/string.h"

QmCtx* QM_CTX_Create(uint32_t loadFlags) noexcept {
  // Once, before any thread parses; a repeated call does nothing.
  xmlInitParser();
  auto* ctx = NewRecord<QmCtx>();
  if (ctx == nullptr) return nullptr;
  ctx->loadFlags = loadFlags;
  if (QM_DICT_Init(&ctx->dict) != QM_OK || QM_CTX_InitModuleTree(ctx) != QM_OK ||
      QM_CTX_InitModRelationTree(ctx) != QM_OK) {
    QM_CTX_Delete(ctx);
    return nullptr;
  }
  // A context can live without error records; nothing is recorded then.
  static_cast<void>(QM_CTX_InitErrMng(ctx));
  return ctx;
}

void QM_CTX_Delete(QmCtx* ctx) noexcept {
  if (ctx == nullptr) return;
  QM_CTX_DestroyErrMng(ctx->errMng);
  ctx->errMng = nullptr;
  QM_CTX_DeInitModuleTree(ctx);
  QM_CTX_DeInitModRelationTree(ctx);
  QM_CTX_FreeSearchDirs(ctx, ctx->searchDirs, ctx->searchDirCount);
  ctx->searchDirs = nullptr;
  ctx->searchDirCount = 0;
  QM_DICT_Destroy(&ctx->dict);
  g_qmMemFreeFunc(ctx);
}

void QM_CTX_SetCurYinFile(QmCtx* ctx, const char* path) {
  if (ctx == nullptr || path == nullptr) return;
  QM_CTX_ClearCurYinFile(ctx);
  const char* lastSlash = RTK_StrRChr(path, '/');
  // A name that does not fit leaves the buffer empty.
  strcpy_s(ctx->curYinFile, sizeof ctx->curYinFile, lastSlash != nullptr ? lastSlash + 1 : path);
}

void QM_CTX_ClearCurYinFile(QmCtx* ctx) {
  if (ctx != nullptr) ctx->curYinFile[0] = '\0';
}

const char* QM_CTX_GetCurYinFile(QmCtx* ctx) {
  return ctx != nullptr ? ctx->curYinFile : nullptr;
}

void QM_CTX_SetPridataFreeFunc(QmCtx* ctx, QmPridataFreeFunc func) noexcept {
  if (ctx != nullptr) ctx->pridataFreeFunc = func;
}

void QM_CTX_SetFirstAugChildRelinkFunc(QmCtx* ctx, QmFirstAugChildRelinkFunc func) noexcept {
  if (ctx != nullptr) ctx->firstAugChildRelinkFunc = func;
}

void QM_CTX_SetBeforeDeviateNotSupportFunc(QmCtx* ctx,
                                           QmBeforeDeviateNotSupportFunc func) noexcept {
  if (ctx != nullptr) ctx->beforeDeviateNotSupportFunc = func;
}

void QM_CTX_SetBeforeDeviateExtInstFunc(QmCtx* ctx, QmBeforeDeviateExtInstFunc func) noexcept {
  if (ctx != nullptr) ctx->beforeDeviateExtInstFunc = func;
}

void QM_CTX_SetReloadModuleCbFunc(QmCtx* ctx, QmReloadModuleCbFunc func) noexcept {
  if (ctx != nullptr) ctx->reloadModuleCbFunc = func;
}

void QM_CTX_SetExtInstFilterCbFunc(QmCtx* ctx, QmExtInstFilterCbFunc func) noexcept {
  if (ctx != nullptr) ctx->extInstFilterCbFunc = func;
}
