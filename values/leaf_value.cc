// SPDX-License-Identifier: BSD-3-Clause
// The check of a leaf's value, and the type of a union that takes it.
#include <qmodel/schema.h>

#include "schema/node.h"
#include "values/type_check.h"

static uint32_t CheckValue(QmsNode* node, QmtType* type, uint32_t inputKind, const void* input,
                           QmtType** matched) {
  QmtCheckCtx check{};
  check.ctx = NodeCtx(node);
  check.schemaNode = node;
  const uint32_t ret = QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, &check);
  *matched = check.matchedType != nullptr ? check.matchedType : type;
  return ret;
}

uint32_t QM_NODE_ValidateValue(QmsNode* node, uint32_t inputKind, const void* input) noexcept {
  QmtType* type = UsableType(node);
  if (type == nullptr) return QM_INVALID;
  QmtType* matched = nullptr;
  return CheckValue(node, type, inputKind, input, &matched);
}

QmtType* QM_NODE_FindRealTypeMatchedValue(QmsNode* node, uint32_t inputKind,
                                          const void* input) noexcept {
  QmtType* type = UsableType(node);
  if (type == nullptr) return nullptr;
  QmtType* matched = nullptr;
  return CheckValue(node, type, inputKind, input, &matched) == QM_OK ? matched : nullptr;
}
