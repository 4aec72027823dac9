// SPDX-License-Identifier: BSD-3-Clause
// Patterns (RFC 7950 section 9.4.5): regular expressions of XML Schema, in the dialect
// of libxml2. All patterns of a type must accept the value.
//
// Deliberate: patterns are compiled in every check and nothing is kept, so that checks
// share no state. A pattern that does not compile matches nothing: it refuses every
// value, or with invert-match accepts every value.
#include "context/string.h"
#include "types/type.h"
#include "values/type_check.h"
#include "values/value_check.h"

uint32_t QMT_CONS_ValidateValueNodeAgainstDataPattern(void* body, uint32_t inputKind,
                                                      const void* input, QmtCheckCtx*) {
  const auto* own = static_cast<const QmtConsPattern*>(body);
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr) return QM_VALUE_BAD_PATTERN;
  for (uint32_t i = 0; own->items != nullptr && i < own->count; ++i) {
    const bool matches = QM_UTL_MatchStrWithPattern(text, own->items[i].pattern) == QM_OK;
    const bool wanted = own->items[i].invertMatch == 0;
    if (matches != wanted) return QM_VALUE_BAD_PATTERN;
  }
  return QM_OK;
}
