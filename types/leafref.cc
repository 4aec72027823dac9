// SPDX-License-Identifier: BSD-3-Clause
// leafref (RFC 7950 section 9.9): a value must suit the type of the leaf it refers to.
//
// The target is looked up from the schema node under check and followed to the end of a
// chain of leafrefs, so the check of its type meets no further leafref. Whether an
// instance with the value exists is no matter of the type.
#include <qmodel/schema.h>

#include "context/memory.h"
#include "types/check_ctx.h"
#include "types/constraint_ops.h"
#include "types/item_body.h"
#include "types/type.h"
#include "types/upcalls.h"
#include "types/value_check.h"

uint32_t QMT_CONS_ValidateValueNodeAgainstDataPath(void*, uint32_t inputKind, const void* input,
                                                   QmtCheckCtx* checkCtx) {
  if (checkCtx->schemaNode == nullptr) return QM_VALUE_BAD_LEAFREF;
  QmsNode* target = QM_NODE_GetLeafrefTargetNode(checkCtx->schemaNode, 1);
  QmtType* type = target == nullptr ? nullptr : QMS_NODE_GetLeafSchemaRealType(target);
  if (type == nullptr) return QM_VALUE_BAD_LEAFREF;
  QmtCheckCtx nested = NestedCheckCtx(checkCtx);
  nested.schemaNode = target;
  const uint32_t ret = QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, &nested);
  if (ret != QM_OK) return ret;
  RecordMatch(checkCtx, nested.matchedType != nullptr ? nested.matchedType : type);
  return QM_OK;
}

static void* CreatePath(uint32_t, uint32_t) {
  auto* body = NewRecord<QmtConsPath>();
  if (body != nullptr) body->requireInstance = 1;
  return body;
}

static void DestroyPath(QmDict* dict, void* body) {
  auto* own = static_cast<QmtConsPath*>(body);
  if (own == nullptr) return;
  ReleaseText(dict, &own->path);
  g_qmMemFreeFunc(own);
}

static void* CopyPath(QmDict* dict, const void* body) {
  const auto* src = static_cast<const QmtConsPath*>(body);
  auto* copy = NewRecord<QmtConsPath>();
  if (copy == nullptr) return nullptr;
  copy->requireInstance = src->requireInstance;
  if (CopyText(dict, &copy->path, src->path)) return copy;
  DestroyPath(dict, copy);
  return nullptr;
}

const QmtConsOps g_qmtPathOps = {
    CreatePath, DestroyPath, CopyPath, QMT_CONS_ValidateValueNodeAgainstDataPath,
    nullptr,    nullptr,     nullptr,
};
