// SPDX-License-Identifier: BSD-3-Clause
//
// The feature statement (RFC 7950 section 7.20.1).
#include <cstdint>

#include "schema/definitions.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/statements.h"

uint32_t QMS_LOADER_ParseFeature(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
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
