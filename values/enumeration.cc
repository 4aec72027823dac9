// SPDX-License-Identifier: BSD-3-Clause
// Enumerations (RFC 7950 section 9.6): the value is one of the names, byte for byte.
#include <qmodel/context.h>

#include "platform/string.h"
#include "types/type.h"
#include "values/type_check.h"
#include "values/value_check.h"

uint32_t QMT_CONS_ValidateValueNodeAgainstDataEnum(void* body, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx*) {
  const auto* own = static_cast<const QmtConsEnum*>(body);
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr || own->items == nullptr) return QM_VALUE_BAD_ENUM;
  for (uint32_t i = 0; i < own->count; ++i) {
    const char* name = own->items[i].name;
    if (name != nullptr && RTK_StrCmp(name, text) == 0) return QM_OK;
  }
  return QM_VALUE_BAD_ENUM;
}

uint32_t ScanEnums(void* body, QmNameValueScanFunc cb, void* arg) {
  const auto* own = static_cast<const QmtConsEnum*>(body);
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const char* description = own->descriptions == nullptr ? nullptr : own->descriptions[i];
    const uint32_t ret = cb(own->items[i].name, own->items[i].value, description, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}
