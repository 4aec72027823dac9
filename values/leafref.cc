// SPDX-License-Identifier: BSD-3-Clause
// leafref (RFC 7950 section 9.9): a value must suit the type of the leaf it refers to.
//
// The target is looked up from the schema node under check and followed to the end of a
// chain of leafrefs, so the check of its type meets no further leafref. Whether an
// instance with the value exists is no matter of the type.
#include <qmodel/schema.h>

#include "schema/node.h"
#include "types/type.h"
#include "values/check_ctx.h"
#include "values/type_check.h"
#include "values/value_check.h"

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
