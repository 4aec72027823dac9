// SPDX-License-Identifier: BSD-3-Clause
//
// The scanner of range and length expressions, "1..4 | 10 | 20..max". It fills a
// working segment token by token and pushes it at "|" and at the end. A working segment
// carries both numbers as 64 bits with flags that say how to read them and which bound
// is "min" or "max". The writers, in a file of their own, store it in the layout of the
// type.
#include "yin/range_expression.h"

#include <cstring>

#include <qmodel/error.h>

#include "context/text_scan.h"
#include "platform/string.h"
#include "values/decimal64.h"

namespace {

constexpr uint32_t kMaxTokens = 256;  // the end of the text counts as one
constexpr uint32_t kMaxDecimalChars = 31;

}  // namespace

static uint32_t ScanMinMax(QmtRangeParseState* state, QmtGenericSeg* seg, const char** pos) {
  const bool isMin = RTK_StrNCmp(*pos, "min", 3) == 0;
  if (!isMin && RTK_StrNCmp(*pos, "max", 3) != 0) return QM_INVALID;
  if (state->atEnd != 0) {
    seg->segFlags |= isMin ? QMT_SEG_END_MIN : QMT_SEG_END_MAX;
  } else {
    seg->segFlags |= isMin ? QMT_SEG_START_MIN : QMT_SEG_START_MAX;
  }
  state->usesMinMax = 1;
  *pos = QM_UTL_ConsumeAllSpaceChar(*pos + 3);
  return QM_OK;
}

static uint32_t ScanDots(QmtRangeParseState* state, const char** pos) {
  if ((*pos)[1] != '.') return QM_INVALID;
  state->atEnd = 1;
  *pos = QM_UTL_ConsumeAllSpaceChar(*pos + 2);
  return QM_OK;
}

// The end of a decimal number. A "." belongs to it only before a digit, so that
// the ".." of "1..5" is left alone.
static const char* SkipDecimal(const char* text) {
  const char* end = text;
  if (*end == '-' || *end == '+') ++end;
  while (IsDigit(*end)) ++end;
  if (*end != '.' || !IsDigit(end[1])) return end;
  ++end;
  while (IsDigit(*end)) ++end;
  return end;
}

static uint32_t ReadDecimal(const QmtRangeParseState* state, const char** pos, uint64_t* value) {
  const char* end = SkipDecimal(*pos);
  const size_t length = static_cast<size_t>(end - *pos);
  if (length == 0 || length > kMaxDecimalChars || !IsDigit(end[-1])) return QM_INVALID;
  char digits[kMaxDecimalChars + 1] = "";
  std::memcpy(digits, *pos, length);
  int64_t scaled = 0;
  if (QMT_CONS_ConvertValStrToDecimal64PowerInteger(digits, state->fractionDigits, &scaled) !=
      QM_OK) {
    return QM_INVALID;
  }
  *value = static_cast<uint64_t>(scaled);
  *pos = end;
  return QM_OK;
}

static uint32_t ReadInteger(const char** pos, uint64_t* value, uint32_t* signFlag) {
  char* end = nullptr;
  if (**pos == '-') {
    int64_t number = 0;
    if (QM_UTL_ReadInputStrAsSignedInteger(*pos, &end, 0, &number) != QM_OK) return QM_INVALID;
    *value = static_cast<uint64_t>(number);
    *signFlag = QMT_SEG_SIGNED;
  } else {
    if (QM_UTL_ReadInputStrAsUnsignedInteger(*pos, &end, 0, value) != QM_OK) return QM_INVALID;
    *signFlag = QMT_SEG_UNSIGNED;
  }
  *pos = end;
  return QM_OK;
}

static uint32_t ScanNumber(QmtRangeParseState* state, QmtGenericSeg* seg, const char** pos) {
  uint64_t value = 0;
  uint32_t signFlag = QMT_SEG_SIGNED;
  const uint32_t ret = state->baseType == QMT_BASE_DECIMAL64 ? ReadDecimal(state, pos, &value)
                                                             : ReadInteger(pos, &value, &signFlag);
  if (ret != QM_OK || IsDigit(**pos)) return QM_INVALID;
  // The first number of a segment decides how both of its bounds are read.
  if ((seg->segFlags & kQmtSegSignMask) == 0) seg->segFlags |= signFlag;
  if (state->atEnd != 0) {
    seg->end = value;
  } else {
    seg->start = value;
  }
  *pos = QM_UTL_ConsumeAllSpaceChar(*pos);
  return QM_OK;
}

static void EndAtStart(QmtGenericSeg* seg) {
  seg->end = seg->start;
  if ((seg->segFlags & QMT_SEG_START_MIN) != 0) seg->segFlags |= QMT_SEG_END_MIN;
  if ((seg->segFlags & QMT_SEG_START_MAX) != 0) seg->segFlags |= QMT_SEG_END_MAX;
}

uint32_t QMT_LOADER_PushOneSegIntPairIntoCb(QmtRangeParseState* state, QmtGenericSeg* seg,
                                            const char** pos) {
  if (seg->segFlags == 0) return QM_INVALID;
  if (state->atEnd == 0) EndAtStart(seg);
  const uint32_t ret = state->pushFn(state->list, seg);
  if (ret != QM_OK) return ret;
  *seg = QmtGenericSeg{};
  state->atEnd = 0;
  if (**pos == '|') ++*pos;
  *pos = QM_UTL_ConsumeAllSpaceChar(*pos);
  return QM_OK;
}

static uint32_t ScanToken(QmtRangeParseState* state, QmtGenericSeg* seg, const char** pos) {
  switch (**pos) {
    case 'm':
      return ScanMinMax(state, seg, pos);
    case '.':
      return ScanDots(state, pos);
    case '|':
      return QMT_LOADER_PushOneSegIntPairIntoCb(state, seg, pos);
    default:
      return ScanNumber(state, seg, pos);
  }
}

uint32_t QMT_LOADER_ScanParseRangeExprWithCb(const char* expr, QmtPushSegFunc pushFn,
                                             QmtRangeParseState* state) {
  if (expr == nullptr || pushFn == nullptr || state == nullptr) return QM_INVALID;
  QmtGenericSeg seg = {};
  const char* pos = QM_UTL_ConsumeAllSpaceChar(expr);
  state->pushFn = pushFn;
  state->atEnd = 0;
  for (uint32_t token = 0; token < kMaxTokens; ++token) {
    if (*pos == '\0') return QMT_LOADER_PushOneSegIntPairIntoCb(state, &seg, &pos);
    if (ScanToken(state, &seg, &pos) != QM_OK) return QM_INVALID;
  }
  return QM_INVALID;
}
