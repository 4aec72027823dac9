// SPDX-License-Identifier: BSD-3-Clause
//
// Defaults of identityref types are stored with the name of the identity's
// module, so that they mean the same wherever they are used. Only the own type
// decides: a default under a typedef of identityref stays as written.
#include <cstdint>

#include "context/guard.h"
#include "schema/node.h"
#include "schema/node_path.h"
#include "types/type.h"
#include "yin/argument.h"
#include "yin/stmt_property.h"

static uint32_t RefreshDefault(QmsModule* module, const QmtType* type, const char** value) {
  if (*value == nullptr || QMT_TYPE_IsTypeWithIdentref(type) != 1) return QM_OK;
  const QmHeld<char> converted(QMS_MOD_ConvertPrefixValToJsonFormat(module, *value));
  return converted ? InternOrRefuse(module, value, converted.Get()) : uint32_t{QM_INVALID};
}

uint32_t QMS_LOADER_RefreshTypeDefDefaultValue(QmsModule* module, QmsTypedef* td) {
  return RefreshDefault(module, &td->type, &td->defaultValue);
}

uint32_t QMS_LOADER_RefreshLeafDefaultValue(QmsModule* module, QmsNode* leaf) {
  auto* payload = static_cast<QmsLeaf*>(leaf->payload);
  return RefreshDefault(module, &payload->type, &payload->defaultValue);
}

uint32_t QMS_LOADER_RefreshLeafListDefaultValue(QmsModule* module, QmsNode* leafList) {
  auto* payload = static_cast<QmsLeafList*>(leafList->payload);
  if (payload->defaults == nullptr) return QM_OK;
  for (uint32_t i = 0; i < payload->defaultCount; ++i) {
    const uint32_t ret = RefreshDefault(module, &payload->type, &payload->defaults[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
