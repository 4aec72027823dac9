// SPDX-License-Identifier: BSD-3-Clause
// Prints the modules that a folder's module needs: cxx_program DIR MODULE
#include <cstdio>

#include <qmodel/qmodel.h>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  if (ctx == nullptr || QM_CTX_SetSearchDir(ctx, argv[1]) != QM_OK) return 3;
  const bool loaded = QM_CTX_LoadModule(ctx, argv[2]) == QM_OK;
  const QmsModule* module = QM_CTX_GetModuleByModName(ctx, argv[2]);
  if (loaded && module != nullptr) std::puts(QM_MOD_GetModuleName(module));
  QM_CTX_Delete(ctx);
  return loaded ? 0 : 3;
}
