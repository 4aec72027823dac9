// SPDX-License-Identifier: BSD-3-Clause
//
// The identity statement and its bases (RFC 7950 section 7.18). A base is kept
// as the name of its module and of the identity; the record it names need not
// be loaded yet.
#include <cstdint>
#include <iterator>

#include "schema/definitions.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/statements.h"

uint32_t QMS_LOADER_ParseIdentity(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  auto* identity = static_cast<QmsIdentity*>(dest);
  const char* name = nullptr;
  uint32_t ret = InternArgument(module, element, QMS_STMT_IDENTITY, &identity->name, &name);
  if (ret != QM_OK) return ret;
  uint16_t bases = 0;
  uint16_t ifFeatures = 0;
  QmsSubStmtDesc table[] = {
      ArraySubStmt(QMS_STMT_BASE, &identity->bases, &identity->baseCount, &bases),
      ArraySubStmt(QMS_STMT_IF_FEATURE, &identity->ifFeatures, &identity->ifFeatureCount,
                   &ifFeatures),
      SingleSubStmt(QMS_STMT_DESCRIPTION, &identity->description)};
  ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_IDENTITY, table, std::size(table));
  if (ret == QM_OK) return QM_OK;
  QMS_MDL_ClearIdentity(ModuleDict(module), identity);
  RecordBadValue(module, name, QMS_STMT_IDENTITY);
  return ret;
}

uint32_t QMS_LOADER_ParseIdentBase(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  const char* text = ReadArgument(module, element, QMS_STMT_BASE);
  if (text == nullptr) return QM_INVALID;
  QmsReference base;
  uint32_t ret = ReadReference(module, text, &base);
  if (ret != QM_OK) return ret;
  ret = QMS_MOD_FillIdentBase(ModuleDict(module), static_cast<QmsIdentBase*>(dest), base.module,
                              base.name);
  if (ret != QM_OK) RecordBadValue(module, text, QMS_STMT_BASE);
  return ret;
}
