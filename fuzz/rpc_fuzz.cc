// SPDX-License-Identifier: BSD-3-Clause
// A request as text.
#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"

void FuzzOne(const FuzzInput& input) {
  QmCtx* ctx = LoadFixedModel();
  QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, const_cast<char*>(input.text),
                                              nullptr, nullptr);
  QM_FreeErrNode(err);
  QM_CTX_Delete(ctx);
}
