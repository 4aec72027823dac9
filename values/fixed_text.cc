// SPDX-License-Identifier: BSD-3-Clause
// Types whose values are fixed texts: boolean (RFC 7950 section 9.5) has two, empty
// (section 9.11) has none.
#include "platform/string.h"
#include "values/value_check.h"

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictBoolean(uint32_t, const char* valueStr,
                                                       QmtCheckCtx*) {
  if (valueStr == nullptr) return QM_VALUE_BAD_BOOLEAN;
  const bool valid = RTK_StrCmp(valueStr, "true") == 0 || RTK_StrCmp(valueStr, "false") == 0;
  return valid ? QM_OK : QM_VALUE_BAD_BOOLEAN;
}

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictEmpty(uint32_t, const char* valueStr, QmtCheckCtx*) {
  return valueStr == nullptr || *valueStr == '\0' ? QM_OK : QM_VALUE_BAD_EMPTY;
}
