// SPDX-License-Identifier: BSD-3-Clause
// What a context knows by itself: the client's hooks, and the name of the file being
// read. It is created and deleted with the modules, by the layer that owns their life.
#include "context/context.h"

#include "platform/bounds.h"
#include "platform/string.h"

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

void RaiseEvent(QmCtx* ctx, const QmAgentEvent& event) {
  if (ctx->eventFunc != nullptr) ctx->eventFunc(ctx, &event, ctx->eventArg);
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
