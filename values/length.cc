// SPDX-License-Identifier: BSD-3-Clause
// The length constraint of strings and binary values (RFC 7950 section 9.4.4).
//
// Deliberate: the length of a string counts bytes, not characters. That of a binary
// value is its decoded length, which the binary check left in the check context.
#include "platform/string.h"
#include "types/type.h"
#include "values/segment.h"
#include "values/type_check.h"
#include "values/value_check.h"

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictLength(uint32_t, const char*,
                                                      QmtCheckCtx* checkCtx) {
  checkCtx->parentLimits = {0, UINT32_MAX, QMT_SEG_UNSIGNED};
  return QM_OK;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataLength(void* body, uint32_t inputKind,
                                                     const void* input, QmtCheckCtx* checkCtx) {
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr) return QM_VALUE_BAD_LENGTH;
  // Deliberate: the outermost concrete length alone decides.
  if (checkCtx->explicitRangeLevel > 1) return QM_OK;
  const bool isBinary = checkCtx->baseType == QMT_BASE_BINARY;
  const uint64_t length = isBinary ? checkCtx->binaryLength : RTK_StrLen(text);
  const QmtGenericSeg value = {length, 0, QMT_SEG_UNSIGNED};
  const auto* list = static_cast<const QmtSegList*>(body);
  const uint32_t ret = CheckSegments(list, LengthLayout(list->segSize), &value, checkCtx);
  return ret == QM_OK ? QM_OK : QM_VALUE_BAD_LENGTH;
}

uint32_t QMT_CONS_ScanStartEndPairsWithLength(void* body, uint32_t, QmStartEndScanFunc cb,
                                              void* arg) {
  const auto* list = static_cast<const QmtSegList*>(body);
  return ScanSegments(list, list == nullptr ? nullptr : LengthLayout(list->segSize), cb, arg);
}
