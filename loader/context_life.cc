// SPDX-License-Identifier: BSD-3-Clause
// Creation and deletion of a context. Deletion goes in a fixed order: the load
// errors first, so that the end of a module has none to look for; the modules
// before the relation tables, which their augments and deviations still consult;
// the dictionary last, since everything else holds texts of it.
#include <libxml/parser.h>

#include "context/dict.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "context/relation.h"
#include "context/search_dir.h"
#include "loader/module_end.h"
#include "schema/module_registry.h"

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
