// SPDX-License-Identifier: BSD-3-Clause
//
// The definitions of a module that others name: features, identities and extensions.
// Each fills one zeroed element of an array of the module, and leaves it zeroed when it
// fails.
#include "yin/stmt_definition.h"

#include <cstdint>
#include <iterator>

#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/dispatch.h"

// The feature statement (RFC 7950 section 7.20.1).
uint32_t QMS_LOADER_ParseFeature(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                 void* dest) {
  auto* feature = static_cast<QmsFeature*>(dest);
  const char* name = nullptr;
  uint32_t ret = InternArgument(module, element, QMS_STMT_FEATURE, &feature->name, &name);
  if (ret != QM_OK) return ret;
  uint16_t found = 0;
  QmsSubStmtDesc table[] = {
      ArraySubStmt(QMS_STMT_IF_FEATURE, &feature->ifFeatures, &feature->ifFeatureCount, &found)};
  ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_FEATURE, table, 1);
  if (ret == QM_OK) return QM_OK;
  QMS_MDL_ClearFeature(ModuleDict(module), feature);
  RecordBadValue(module, name, QMS_STMT_FEATURE);
  return ret;
}

// The identity statement and its bases (RFC 7950 section 7.18). A base is kept as the
// name of its module and of the identity; the record it names need not be loaded yet.
uint32_t QMS_LOADER_ParseIdentity(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                  void* dest) {
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

uint32_t QMS_LOADER_ParseIdentBase(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                   void* dest) {
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

// The extension statement with argument and yin-element (RFC 7950 section 7.19).
uint32_t QMS_LOADER_ParseExtension(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                   void* dest) {
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

uint32_t QMS_LOADER_ParseArgument(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                  void* dest) {
  auto* extension = static_cast<QmsExtension*>(dest);
  const char* name = nullptr;
  uint32_t ret = InternArgument(module, element, QMS_STMT_ARGUMENT, &extension->argument, &name);
  if (ret != QM_OK) return ret;
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_YIN_ELEMENT, &extension->yinElement)};
  ret = QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_ARGUMENT, table, 1);
  if (ret != QM_OK) RecordBadValue(module, name, QMS_STMT_ARGUMENT);
  return ret;
}

uint32_t QMS_LOADER_ParseYinElement(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                    void* dest) {
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
