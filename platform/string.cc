// SPDX-License-Identifier: BSD-3-Clause
// Text functions of the platform. Comparing and searching is the C library's;
// the conversion to a double is std::from_chars, since strtod reads the decimal
// point of the client's locale. from_chars takes no "+" and gives no value for a
// number outside the range of a double, so both are settled here.
#include "platform/string.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>

#include <qmodel/error.h>

#include "platform/hooks.h"

char* CopyText(const char* text, size_t length) {
  auto* copy = static_cast<char*>(TakeBlock(length + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

// The exponent of a number whose form is known to be right. One that does not
// fit counts as larger than any number of digits.
static int64_t ReadExponent(const char* str, const char* end) {
  if (str < end && *str == '+') ++str;
  int64_t exponent = 0;
  const std::from_chars_result result = std::from_chars(str, end, exponent);
  if (result.ec == std::errc()) return exponent;
  return *str == '-' ? INT64_MIN / 2 : INT64_MAX / 2;
}

// Tells on which side an unsigned decimal number left the range of a double: by
// the place of its first digit other than 0.
static bool IsTooLarge(const char* str, const char* end) {
  int64_t magnitude = 0;
  bool afterPoint = false;
  bool significant = false;
  for (; str < end && (IsDigit(*str) || *str == '.'); ++str) {
    if (*str == '.') {
      afterPoint = true;
      continue;
    }
    significant = significant || *str != '0';
    if (significant && !afterPoint) ++magnitude;
    if (!significant && afterPoint) --magnitude;
  }
  if (str < end) magnitude += ReadExponent(str + 1, end);
  return magnitude > 0;
}

uint32_t RTK_StrToFloat(const char* str, double* out) {
  const char* end = str + std::strlen(str);
  while (IsSpace(*str)) ++str;
  while (end > str && IsSpace(end[-1])) --end;
  const bool negative = *str == '-';
  if (negative || *str == '+') ++str;
  // Keeps out a second sign, "inf" and "nan", which from_chars would take.
  if (str >= end || (!IsDigit(*str) && *str != '.')) return QM_INVALID;
  double value = 0;
  const std::from_chars_result result = std::from_chars(str, end, value);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) return QM_INVALID;
  if (result.ec == std::errc::result_out_of_range) value = IsTooLarge(str, end) ? HUGE_VAL : 0;
  *out = negative ? -value : value;
  return QM_OK;
}
