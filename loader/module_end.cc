// SPDX-License-Identifier: BSD-3-Clause
// The end of modules. What makes it hard are augments: while one is coupled, its
// children hang in a foreign tree. So all augments are taken apart before the first
// module goes.
#include "loader/module_end.h"

#include <qmodel/schema.h>

#include "context/load_error.h"
#include "coupling/couple_augment.h"
#include "coupling/detach.h"
#include "schema/module.h"

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
