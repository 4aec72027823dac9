// SPDX-License-Identifier: BSD-3-Clause
// A notification as text.
#include <cstdlib>

#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"

static uint32_t Take(const char* text, void* /*arg*/) {
  if (text == nullptr) std::abort();
  return 0;
}

void FuzzOne(const FuzzInput& input) {
  QmCtx* ctx = LoadFixedModel();
  static_cast<void>(QM_CTX_ValidateNotifDataTree(ctx, input.text, Take, nullptr));
  QM_CTX_Delete(ctx);
}
