// SPDX-License-Identifier: BSD-3-Clause
// decimal64 (RFC 7950 section 9.3): a literal as an integer scaled by ten to the power
// of the fraction digits.
//
// The literal is rewritten into the digits of the scaled number: the sign, the integer
// digits, then exactly as many fraction digits as the type has, filled up with zeros.
// The integer reader then finds what does not fit 64 bits. The digit limits keep the
// rewritten number inside its buffer whatever the length of the literal.
#include "values/decimal64.h"

#include "context/text_scan.h"
#include "platform/string.h"

constexpr uint32_t kMaxDigits = 19;          // digits of a signed 64-bit number
constexpr uint32_t kMaxFractionDigits = 18;  // RFC 7950 section 9.3.4
constexpr uint32_t kBufferSize = 31;         // 30 characters and the terminator

namespace {
// The rewritten number. A sign and at most 19 digits are ever put into it.
struct ScaledText {
  char text[kBufferSize];  // zero-filled, so always terminated
  uint32_t used;
};
}  // namespace
static_assert(1 + kMaxDigits < kBufferSize, "a sign, all digits and the terminator fit");

static void Put(ScaledText* out, char c) {
  out->text[out->used++] = c;
}

// Copies at most `limit` digits and gives the place after them; NULL when there are more.
static const char* CopyDigits(ScaledText* out, const char* pos, uint32_t limit, uint32_t* copied) {
  for (*copied = 0; IsDigit(*pos); ++pos) {
    if (*copied == limit) return nullptr;
    Put(out, *pos);
    ++*copied;
  }
  return pos;
}

static const char* CopySign(ScaledText* out, const char* pos) {
  if (*pos == '-') Put(out, *pos);
  return *pos == '-' || *pos == '+' ? pos + 1 : pos;
}

static const char* SkipZeros(const char* pos) {
  while (*pos == '0') ++pos;
  return pos;
}

static bool RewriteLiteral(const char* literal, uint32_t fractionDigits, ScaledText* out) {
  uint32_t copied = 0;
  const char* pos = SkipZeros(CopySign(out, QM_UTL_ConsumeAllSpaceChar(literal)));
  pos = CopyDigits(out, pos, kMaxDigits - fractionDigits, &copied);
  if (pos == nullptr) return false;
  copied = 0;
  // Deliberate: a longer fraction is refused, not rounded.
  if (*pos == '.') pos = CopyDigits(out, pos + 1, fractionDigits, &copied);
  if (pos == nullptr || *QM_UTL_ConsumeAllSpaceChar(pos) != '\0') return false;
  for (; copied < fractionDigits; ++copied) Put(out, '0');
  return true;
}

uint32_t QMT_CONS_ConvertValStrToDecimal64PowerInteger(const char* valueStr,
                                                       uint32_t fractionDigits, int64_t* out) {
  if (valueStr == nullptr || out == nullptr || fractionDigits > kMaxFractionDigits) {
    return QM_INVALID;
  }
  ScaledText scaled{};
  if (!RewriteLiteral(valueStr, fractionDigits, &scaled)) return QM_INVALID;
  char* end = nullptr;
  int64_t number = 0;
  const uint32_t ret = QM_UTL_ReadInputStrAsSignedInteger(scaled.text, &end, 0, &number);
  if (ret != QM_OK || *end != '\0') return QM_INVALID;
  *out = number;
  return QM_OK;
}

uint32_t QMT_CONS_CheckValStrAgainstDefRestrictDecimal64(uint32_t /*baseType*/,
                                                         const char* valueStr,
                                                         QmtCheckCtx* checkCtx) {
  int64_t scaled = 0;
  const uint32_t digits = checkCtx->fractionDigits;
  if (digits == 0 ||
      QMT_CONS_ConvertValStrToDecimal64PowerInteger(valueStr, digits, &scaled) != QM_OK) {
    return QM_VALUE_BAD_RANGE;
  }
  return QM_OK;
}

// Fraction digits restrict nothing by themselves; they tell how the literal is read.
uint32_t QMT_CONS_ValidateValueNodeAgainstDataFraction(void* /*body*/, uint32_t /*inputKind*/,
                                                       const void* /*input*/,
                                                       QmtCheckCtx* /*checkCtx*/) {
  return QM_OK;
}
