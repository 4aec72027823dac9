// SPDX-License-Identifier: BSD-3-Clause
#include <iterator>

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/dict.h"
#include "context/load_error.h"
#include "context/xml_tree.h"
#include "types/type.h"
#include "yin/dispatch.h"
#include "yin/load_type.h"
#include "yin/module_access.h"
#include "yin/prefix_rewrite.h"

// The typedef statement, RFC 7950 section 7.3: its name, then type, default and
// units. Its base need not exist yet; nothing is resolved while parsing.

static uint32_t ParseTypedefBody(QmsModule* module, xmlNode* element, QmsTypedef* td,
                                 const char* name) {
  QmsSubStmtDesc table[] = {
      {QMS_STMT_TYPE, &td->type, nullptr, nullptr, 0, 0},
      {QMS_STMT_DEFAULT, &td->defaultValue, nullptr, nullptr, 0, 0},
      {QMS_STMT_UNITS, &td->units, nullptr, nullptr, 0, 0},
  };
  const uint32_t ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_TYPEDEF, table,
                                                     static_cast<uint32_t>(std::size(table)));
  if (ret != QM_OK) {
    QM_CTX_AddModError(ContextOfModule(module), QM_MOD_GetModuleName(module),
                       "Failed to parse value \"%s\" of statement \"%s\".", name, "typedef");
    return ret;
  }
  if (QMT_TYPE_IsInvalidType(&td->type) != 0) {
    QM_CTX_AddModError(ContextOfModule(module), QM_MOD_GetModuleName(module),
                       "typedef \"%s\" must define with type statement.", name);
    return QM_INVALID;
  }
  return QMS_LOADER_RefreshTypeDefDefaultValue(module, td);
}

uint32_t QMT_LOADER_ParseTypeDefStmt(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest) {
  static_cast<void>(parentStmt);
  auto* td = static_cast<QmsTypedef*>(dest);
  if (td == nullptr) return QM_INVALID;
  const char* name = QM_XML_GetFirstPropertyValue(element);
  if (name == nullptr) {
    QM_CTX_AddModError(ContextOfModule(module), QM_MOD_GetModuleName(module),
                       "Failed to get value of statement \"%s\".", "typedef");
    return QM_INVALID;
  }
  if (!InternText(DictOfModule(module), &td->name, name)) return QM_NO_MEMORY;
  const uint32_t ret = ParseTypedefBody(module, element, td, name);
  if (ret != QM_OK) QMS_TYPE_DestroyTypDefInner(DictOfModule(module), td);
  return ret;
}
