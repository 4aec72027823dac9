// SPDX-License-Identifier: BSD-3-Clause
// One module from memory: loaded, its tree printed, unloaded.
#include <qmodel/qmodel.h>

#include "fuzz/fuzz_target.h"

static uint32_t Drop(const char* /*text*/, uint32_t /*length*/, void* /*arg*/) {
  return 0;
}

static uint32_t PrintTree(QmsNode* node, uint32_t /*travType*/, void* /*arg*/) {
  static_cast<void>(QM_NODE_PrintNodesTree(node, Drop, nullptr));
  return 0;
}

static uint32_t VisitError(const char* module, const char* /*file*/, const char* /*message*/,
                           void* ctx) {
  QmsModule* loaded = QM_CTX_GetModuleByModName(static_cast<QmCtx*>(ctx), module);
  static_cast<void>(QM_MOD_PrintModelTree(loaded, Drop, nullptr));
  static_cast<void>(QM_MOD_IterScanTopmostNode(loaded, PrintTree, nullptr));
  return 0;
}

void FuzzOne(const FuzzInput& input) {
  QmCtx* ctx = QM_CTX_Create(input.flags & ~static_cast<uint32_t>(QM_LOAD_IMPORTS));
  static_cast<void>(QM_CTX_LoadMemory(ctx, input.text));
  // The seeds are named m; a module of another name is still walked when it is freed.
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, "m");
  static_cast<void>(QM_MOD_EnableFeature(module, "*"));
  static_cast<void>(QM_MOD_PrintModelTree(module, Drop, nullptr));
  static_cast<void>(QM_MOD_IterScanTopmostNode(module, PrintTree, nullptr));
  static_cast<void>(QM_CTX_ScanAllSchemaLoadFail(ctx, VisitError, ctx));
  static_cast<void>(QM_CTX_UnloadModule(ctx, "m"));
  QM_CTX_Delete(ctx);
}
