// SPDX-License-Identifier: BSD-3-Clause
// Several modules in one input, each ended by a vertical tab: they may augment
// and deviate each other. The flag bits choose which are unloaded again.
#include <cstdlib>

#include <qmodel/qmodel.h>

#include "fuzz/fuzz_target.h"

static uint32_t Drop(const char* /*text*/, uint32_t /*length*/, void* /*arg*/) {
  return 0;
}

void FuzzOne(const FuzzInput& input) {
  QmCtx* ctx = QM_CTX_Create(0);
  char* copy = CopyText(input);
  char* rest = copy;
  for (char* piece = NextPiece(&rest, '\v'); piece != nullptr; piece = NextPiece(&rest, '\v')) {
    static_cast<void>(QM_CTX_LoadMemory(ctx, piece));
  }
  std::free(copy);
  const char* const names[] = {"a", "b", "c", "d"};
  uint32_t bit = 1;
  for (const char* name : names) {
    if ((input.flags & bit) != 0) static_cast<void>(QM_CTX_UnloadModule(ctx, name));
    bit <<= 1;
  }
  for (const char* name : names) {
    static_cast<void>(QM_MOD_PrintModelTree(QM_CTX_GetModuleByModName(ctx, name), Drop, nullptr));
  }
  QM_CTX_Delete(ctx);
}
