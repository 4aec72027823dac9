// SPDX-License-Identifier: BSD-3-Clause
// Integers and the range constraint (RFC 7950 sections 9.2 and 9.2.4).
//
// The bottom check compares a value with the limits of its built-in type. The range
// check compares it with the segments of one type statement; the chain's built-in type
// says how the text is read, the statement's own base type how the segments are stored.
#include "values/range_check.h"

#include "context/text_scan.h"
#include "platform/string.h"
#include "types/builtin.h"
#include "types/type.h"
#include "values/decimal64.h"
#include "values/segment.h"
#include "values/type_check.h"

static const char* SkipBlanks(const char* text) {
  while (IsBlank(*text)) ++text;
  return text;
}

// Reads what nearly all texts of integers are, at most 18 digits behind an optional sign,
// with blanks around; they fit both numbers. False for anything else, which the readers of
// any text judge.
static bool ReadShort(const char* text, uint32_t signKind, QmtGenericSeg* out) {
  constexpr int kMaxDigits = 18;
  const char* digit = SkipBlanks(text);
  const bool isNegative = *digit == '-';
  if (isNegative && signKind != QMT_SIGN_SIGNED) return false;
  if (isNegative || *digit == '+') ++digit;
  const char* const first = digit;
  uint64_t number = 0;
  for (; IsDigit(*digit); ++digit) number = number * 10 + static_cast<uint64_t>(*digit - '0');
  if (digit == first || digit - first > kMaxDigits || *SkipBlanks(digit) != '\0') return false;
  out->start = isNegative ? 0 - number : number;
  out->segFlags = signKind == QMT_SIGN_SIGNED ? QMT_SEG_SIGNED : QMT_SEG_UNSIGNED;
  return true;
}

static uint32_t ReadSigned(const char* text, char** end, QmtGenericSeg* out) {
  int64_t number = 0;
  const uint32_t ret = QM_UTL_ReadInputStrAsSignedInteger(text, end, 0, &number);
  out->start = static_cast<uint64_t>(number);
  out->segFlags = QMT_SEG_SIGNED;
  return ret;
}

static uint32_t ReadUnsigned(const char* text, char** end, QmtGenericSeg* out) {
  uint64_t number = 0;
  const uint32_t ret = QM_UTL_ReadInputStrAsUnsignedInteger(text, end, 0, &number);
  out->start = number;
  out->segFlags = QMT_SEG_UNSIGNED;
  return ret;
}

static uint32_t ParseInteger(const char* text, uint32_t signKind, QmtGenericSeg* out) {
  QmtGenericSeg value{};
  if (ReadShort(text, signKind, &value)) {
    *out = value;
    return QM_OK;
  }
  char* end = nullptr;
  const uint32_t ret = signKind == QMT_SIGN_SIGNED ? ReadSigned(text, &end, &value)
                                                   : ReadUnsigned(text, &end, &value);
  if (ret != QM_OK || *QM_UTL_ConsumeAllSpaceChar(end) != '\0') return QM_INVALID;
  *out = value;
  return QM_OK;
}

uint32_t QMT_CONS_ParseInputValStrToBasedInteger(const char* valueStr, uint32_t baseType,
                                                 QmtGenericSeg* out) {
  const QmtLimits* limits = IntegerLimits(baseType);
  if (valueStr == nullptr || out == nullptr || limits == nullptr) return QM_INVALID;
  return ParseInteger(valueStr, limits->signKind, out);
}

static uint32_t CompareWithLimits(const QmtGenericSeg& value, const QmtLimits& limits) {
  if (limits.signKind == QMT_SIGN_SIGNED) {
    return CompareWithBounds<int64_t>(value.start, static_cast<int64_t>(limits.min),
                                      static_cast<int64_t>(limits.max));
  }
  return CompareWithBounds<uint64_t>(value.start, limits.min, limits.max);
}

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictRange(uint32_t baseType, const char* valueStr,
                                                     QmtCheckCtx* checkCtx) {
  QmtGenericSeg value{};
  const QmtLimits* limits = IntegerLimits(baseType);
  if (valueStr == nullptr || limits == nullptr ||
      ParseInteger(valueStr, limits->signKind, &value) != QM_OK ||
      CompareWithLimits(value, *limits) != QM_OK) {
    return QM_VALUE_BAD_RANGE;
  }
  if (checkCtx->minMaxPending != 0) {
    checkCtx->parentLimits = {limits->min, limits->max, value.segFlags};
  }
  return QM_OK;
}

// The value as the built-in type at the bottom of the chain reads it.
static uint32_t ReadValue(const char* text, const QmtCheckCtx* checkCtx, QmtGenericSeg* value) {
  if (checkCtx->baseType != QMT_BASE_DECIMAL64) {
    return QMT_CONS_ParseInputValStrToBasedInteger(text, checkCtx->baseType, value);
  }
  int64_t scaled = 0;
  const uint32_t ret =
      QMT_CONS_ConvertValStrToDecimal64PowerInteger(text, checkCtx->fractionDigits, &scaled);
  value->start = static_cast<uint64_t>(scaled);
  value->segFlags = QMT_SEG_SIGNED;
  return ret;
}

uint32_t QMT_CONS_ValidateValueNodeAgainstDataRange(void* body, uint32_t inputKind,
                                                    const void* input, QmtCheckCtx* checkCtx) {
  const char* text = QMT_TYPE_GetInputValueAsSimpleStr(inputKind, input);
  if (text == nullptr) return QM_VALUE_BAD_RANGE;
  // Deliberate: the outermost concrete range alone decides.
  if (checkCtx->explicitRangeLevel >= 2) return QM_OK;
  QmtGenericSeg value{};
  if (checkCtx->currentType == nullptr || ReadValue(text, checkCtx, &value) != QM_OK) {
    return QM_VALUE_BAD_RANGE;
  }
  const QmtSegLayout* layout = RangeLayout(checkCtx->currentType->baseType);
  const auto* list = static_cast<const QmtSegList*>(body);
  return CheckSegments(list, layout, &value, checkCtx) == QM_OK ? QM_OK : QM_VALUE_BAD_RANGE;
}

uint32_t QMT_CONS_ScanStartEndPairsWithRange(void* body, uint32_t baseType, QmStartEndScanFunc cb,
                                             void* arg) {
  return ScanSegments(static_cast<const QmtSegList*>(body), RangeLayout(baseType), cb, arg);
}

// The length constraint of strings and binary values (RFC 7950 section 9.4.4).
//
// Deliberate: the length of a string counts bytes, not characters. That of a binary
// value is its decoded length, which the binary check left in the check context.

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictLength(uint32_t /*baseType*/,
                                                      const char* /*valueStr*/,
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

uint32_t QMT_CONS_ScanStartEndPairsWithLength(void* body, uint32_t /*baseType*/,
                                              QmStartEndScanFunc cb, void* arg) {
  const auto* list = static_cast<const QmtSegList*>(body);
  return ScanSegments(list, list == nullptr ? nullptr : LengthLayout(list->segSize), cb, arg);
}
