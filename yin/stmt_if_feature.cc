// SPDX-License-Identifier: BSD-3-Clause
//
// if-feature with a single feature as argument. The boolean expressions of RFC
// 7950 section 7.20.2 are not supported: what follows the first name is refused.
#include <cstdint>

#include "schema/module.h"
#include "schema/node_array.h"
#include "yin/argument.h"
#include "yin/statements.h"

uint32_t QMS_LOADER_ParseIfFeature(QmsModule* module, xmlNode* element, uint32_t, void* dest) {
  const char* text = ReadArgument(module, element, QMS_STMT_IF_FEATURE);
  if (text == nullptr) return QM_INVALID;
  QmsReference feature;
  const uint32_t ret = ReadReference(module, text, &feature);
  if (ret != QM_OK) {
    RecordBadValue(module, text, QMS_STMT_IF_FEATURE);
    return ret;
  }
  return QMS_NODE_FillIfFeature(ModuleDict(module), static_cast<QmsIfFeature*>(dest),
                                feature.module, feature.name);
}
