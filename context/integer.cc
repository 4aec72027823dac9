// SPDX-License-Identifier: BSD-3-Clause
// Decimal integers at the start of a text. What follows the digits is left to
// the caller, who asks for the end pointer to judge it.
#include "context/integer.h"

#include <cerrno>
#include <cstdlib>

#include "context/path_scan.h"

// One body for both: only the C library's conversion differs.
template <auto Convert, typename Int>
static uint32_t ReadInteger(const char* digits, char** end, Int* out) {
  char* stop = nullptr;
  errno = 0;
  const Int value = Convert(digits, &stop, 10);
  if (errno != 0 || stop == digits) return QM_INVALID;
  *out = value;
  if (end != nullptr) *end = stop;
  return QM_OK;
}

uint32_t QM_UTL_ReadInputStrAsSignedInteger(const char* str, char** end, uint32_t /*notUsed*/,
                                            int64_t* out) {
  if (str == nullptr || out == nullptr) return QM_INVALID;
  static_assert(sizeof(long long) == sizeof(int64_t));
  long long value = 0;
  const uint32_t ret = ReadInteger<std::strtoll>(QM_UTL_ConsumeAllSpaceChar(str), end, &value);
  if (ret == QM_OK) *out = value;
  return ret;
}

uint32_t QM_UTL_ReadInputStrAsUnsignedInteger(const char* str, char** end, uint32_t /*notUsed*/,
                                              uint64_t* out) {
  if (str == nullptr || out == nullptr) return QM_INVALID;
  const char* digits = QM_UTL_ConsumeAllSpaceChar(str);
  // strtoull would wrap a negative number around. Deliberate: "-0" goes too.
  if (*digits == '-') return QM_INVALID;
  unsigned long long value = 0;
  const uint32_t ret = ReadInteger<std::strtoull>(digits, end, &value);
  if (ret == QM_OK) *out = value;
  return ret;
}
