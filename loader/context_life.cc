// SPDX-License-Identifier: BSD-3-Clause
// Creation and deletion of a context, and the end of its modules. Deletion goes in a fixed
// order: the load errors first, so that the end of a module has none to look for; the
// modules before the relation tables, which their augments and deviations still consult;
// the dictionary last, since everything else holds texts of it. What makes the end of a
// module hard are augments: while one is coupled, its children hang in a foreign tree. So
// all augments are taken apart before the first module goes.
#include "loader/context_life.h"

#include <libxml/parser.h>

#include <qmodel/schema.h>

#include "context/dict.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "context/relation.h"
#include "context/search_dir.h"
#include "coupling/couple_augment.h"
#include "coupling/detach.h"
#include "loader/register.h"
#include "schema/module.h"
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
  // Off, since the hooks that the end of the modules calls may check values.
  static_cast<void>(QM_CTX_SetKeepPatterns(ctx, 0));
  // All texts go together at last. A dictionary without its table takes nothing back, and
  // so the end of the modules does not look for each of their texts.
  QmDict texts = ctx->dict;
  ctx->dict.buckets = nullptr;
  QM_CTX_DeInitModuleTree(ctx);
  QM_CTX_DeInitModRelationTree(ctx);
  QM_CTX_FreeSearchDirs(ctx, ctx->searchDirs, ctx->searchDirCount);
  ctx->searchDirs = nullptr;
  ctx->searchDirCount = 0;
  QM_DICT_Destroy(&texts);
  g_qmMemFreeFunc(ctx);
}

static QmsModule* FirstModule(const QmCtx* ctx) {
  return static_cast<QmsModule*>(RTK_AVL3_First(&ctx->modByName));
}

static QmsModule* NextModule(const QmCtx* ctx, const QmsModule* module) {
  return static_cast<QmsModule*>(RTK_AVL3_Next(&ctx->modByName, module));
}

static uint32_t UnCoupleOneAugment(QmsNode* augment, uint32_t /*travType*/, void* /*arg*/) {
  // One that fails is detached by force afterwards.
  static_cast<void>(QMS_NODE_UnCoupleAugmentNode(augment));
  return QM_OK;
}

static void UnCoupleAllAugments(QmCtx* ctx) {
  for (QmsModule* module = FirstModule(ctx); module != nullptr; module = NextModule(ctx, module)) {
    static_cast<void>(QM_MOD_IterScanAugmentNode(module, UnCoupleOneAugment, nullptr));
  }
  for (QmsModule* module = FirstModule(ctx); module != nullptr; module = NextModule(ctx, module)) {
    DetachModuleAugments(ctx, module);
  }
}

void QM_CTX_DeInitModuleTree(QmCtx* ctx) {
  if (ctx == nullptr) return;
  UnCoupleAllAugments(ctx);
  for (QmsModule* module = FirstModule(ctx); module != nullptr; module = NextModule(ctx, module)) {
    RaiseModuleEvent(ctx, module, QM_AGENT_EVENT_MODULE_GOING);
  }
  while (QmsModule* module = FirstModule(ctx)) QM_CTX_DestroyModuleNode(ctx, module);
}

void QM_CTX_DestroyModuleNode(QmCtx* ctx, QmsModule* module) {
  if (ctx == nullptr || module == nullptr) return;
  DetachModuleAugments(ctx, module);
  // By the record's own links: by key, a record that could not be registered
  // would take away the one that has its namespace.
  RTK_AVL3_Delete(&ctx->modByName, module);
  RTK_AVL3_Delete(&ctx->modByNs, module);
  QM_CTX_DeleteErrNodeByModName(ctx->errMng, QM_MOD_GetModuleName(module));
  QMS_MOD_Free(module);
}
