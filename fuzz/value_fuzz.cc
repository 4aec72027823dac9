// SPDX-License-Identifier: BSD-3-Clause
// A value against leaves of every built-in type.
#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"

static uint32_t Check(QmsNode* node, uint32_t travType, void* text) {
  if (travType == QMS_TRAV_PARENT) return 0;
  const uint32_t status = QM_NODE_ValidateValue(node, QM_INPUT_TEXT, text);
  const QmtType* type = QM_NODE_FindRealTypeMatchedValue(node, QM_INPUT_TEXT, text);
  static_cast<void>(status);
  static_cast<void>(QM_TYPE_GetBuiltInBaseType(type));
  return 0;
}

static uint32_t CheckTree(QmsNode* node, uint32_t /*travType*/, void* text) {
  return QM_NODE_TreeScanAllNode(node, Check, text);
}

void FuzzOne(const FuzzInput& input) {
  QmCtx* ctx = LoadFixedModel();
  static_cast<void>(QM_MOD_IterScanTopmostNode(QM_CTX_GetModuleByModName(ctx, "f"), CheckTree,
                                               const_cast<char*>(input.text)));
  QM_CTX_Delete(ctx);
}
