// SPDX-License-Identifier: BSD-3-Clause
//
// The must and when statements (RFC 7950 sections 7.5.3 and 7.21.5). The condition is
// interned as the evaluation reads it; what must says beside it, the message and the tag
// of its error, is read like any other sub-statement.
#include "yin/stmt_must_when.h"

#include <cstdint>

#include "context/guard.h"
#include "context/load_error.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/keyword.h"
#include "yin/prefix_rewrite.h"

// Deliberate: a condition that cannot be rewritten is kept as it is written, and
// the load goes on; only the message tells.
static uint32_t InternCondition(QmsModule* module, const char* text, uint32_t stmt,
                                const char** field) {
  const QmHeld<char> rewritten(QMS_LOADER_TransPrefix2ModNameInLiteral(module, text));
  if (!rewritten) {
    QM_CTX_AddModError(module->ctx, module->name,
                       "Failed to transfer prefix to module name in statement \"%s\".",
                       QMS_LOADER_GetKeywordByStmt(stmt));
  }
  return InternOrRefuse(module, field, rewritten ? rewritten.Get() : text);
}

uint32_t QMS_LOADER_ParseWhen(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                              void* dest) {
  const char* text = ReadArgument(module, element, QMS_STMT_WHEN);
  if (text == nullptr) return QM_INVALID;
  return InternCondition(module, text, QMS_STMT_WHEN, static_cast<const char**>(dest));
}

uint32_t QMS_LOADER_ParseMust(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                              void* dest) {
  auto* must = static_cast<QmsMust*>(dest);
  const char* text = ReadArgument(module, element, QMS_STMT_MUST);
  if (text == nullptr) return QM_INVALID;
  uint32_t ret = InternCondition(module, text, QMS_STMT_MUST, &must->condition);
  if (ret != QM_OK) return ret;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_ERROR_MESSAGE, &must->errorMessage),
                            SingleSubStmt(QMS_STMT_ERROR_APP_TAG, &must->errorAppTag)};
  ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_MUST, table, 2);
  if (ret == QM_OK) return QM_OK;
  RecordBadValue(module, text, QMS_STMT_MUST);
  QMS_NODE_ClearMust(ModuleDict(module), must);
  return ret;
}
