// SPDX-License-Identifier: BSD-3-Clause
// qmodel tree: the schema trees of modules, as the library prints them.
#include <cstdio>

#include <qmodel/schema.h>

#include "client/commands.h"
#include "client/session.h"

static uint32_t WriteChunk(const char* text, uint32_t length, void* /*arg*/) {
  return std::fwrite(text, 1, length, stdout) == length ? 0 : 1;
}

// Asked before anything is printed: wrong usage leaves standard output empty.
static bool AllLoaded(QmCtx* ctx, const Options& options) {
  for (const std::string& name : options.operands) {
    if (QM_CTX_GetModuleByModName(ctx, name.c_str()) != nullptr) continue;
    PrintError("module '%s' is no longer loaded", name.c_str());
    return false;
  }
  return true;
}

static int PrintTrees(QmCtx* ctx, const Options& options) {
  int status = kExitOk;
  for (const std::string& name : options.operands) {
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, name.c_str());
    if (QM_MOD_PrintModelTree(module, WriteChunk, nullptr) == 0) continue;
    PrintError("the tree of module '%s' cannot be printed", name.c_str());
    status = kExitUnusable;
  }
  return status;
}

int RunTree(const Options& options) {
  int status = kExitOk;
  QmCtx* ctx = OpenSession(options, true, &status);
  if (ctx == nullptr) return status;
  status = AllLoaded(ctx, options) ? PrintTrees(ctx, options) : kExitUsage;
  QM_CTX_Delete(ctx);
  return status;
}
