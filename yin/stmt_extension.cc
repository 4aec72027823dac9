// SPDX-License-Identifier: BSD-3-Clause
//
// The extension statement with argument and yin-element (RFC 7950 section
// 7.19).
#include <cstdint>

#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/statements.h"

uint32_t QMS_LOADER_ParseExtension(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  auto* extension = static_cast<QmsExtension*>(dest);
  const char* name = nullptr;
  uint32_t ret = InternArgument(module, element, QMS_STMT_EXTENSION, &extension->name, &name);
  if (ret != QM_OK) return ret;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_ARGUMENT, extension)};
  ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_EXTENSION, table, 1);
  if (ret == QM_OK) return QM_OK;
  QMS_MDL_ClearExtension(ModuleDict(module), extension);
  RecordBadValue(module, name, QMS_STMT_EXTENSION);
  return ret;
}

uint32_t QMS_LOADER_ParseArgument(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  auto* extension = static_cast<QmsExtension*>(dest);
  const char* name = nullptr;
  uint32_t ret = InternArgument(module, element, QMS_STMT_ARGUMENT, &extension->argument, &name);
  if (ret != QM_OK) return ret;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_YIN_ELEMENT, &extension->yinElement)};
  ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_ARGUMENT, table, 1);
  if (ret != QM_OK) RecordBadValue(module, name, QMS_STMT_ARGUMENT);
  return ret;
}

uint32_t QMS_LOADER_ParseYinElement(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  const char* value = ReadArgument(module, element, QMS_STMT_YIN_ELEMENT);
  if (value == nullptr) return QM_INVALID;
  const bool isTrue = RTK_StrCmp(value, "true") == 0;
  if (!isTrue && RTK_StrCmp(value, "false") != 0) {
    RecordBadValue(module, value, QMS_STMT_YIN_ELEMENT);
    return QM_INVALID;
  }
  *static_cast<uint32_t*>(dest) = isTrue ? 1 : 0;
  return QM_OK;
}
