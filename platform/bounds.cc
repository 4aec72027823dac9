// SPDX-License-Identifier: BSD-3-Clause
// Bounds-checked copies and prints. They check first and then let the C library
// do the work, so that the address sanitizer still sees every access.
#include "platform/bounds.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <functional>

static bool IsUsableDest(const void* dest, size_t destSize) {
  return dest != nullptr && destSize > 0 && destSize <= kBoundsMaxSize;
}

// std::less orders the addresses of different objects too.
static bool Overlap(const void* a, size_t sizeA, const void* b, size_t sizeB) {
  const std::less<const char*> isBefore;
  const auto* posA = static_cast<const char*>(a);
  const auto* posB = static_cast<const char*>(b);
  return isBefore(posA, posB + sizeB) && isBefore(posB, posA + sizeA);
}

static int32_t RefuseText(char* dest, int32_t status) {
  dest[0] = '\0';
  return status;
}

static int32_t FaultOfCopy(const void* dest, size_t destSize, const void* src, size_t count) {
  if (src == nullptr) return EINVAL;
  if (count > destSize) return ERANGE;
  return Overlap(dest, count, src, count) ? EINVAL : 0;
}

int32_t memcpy_s(void* dest, size_t destSize, const void* src, size_t count) {
  if (!IsUsableDest(dest, destSize)) return EINVAL;
  if (count == 0) return 0;
  const int32_t fault = FaultOfCopy(dest, destSize, src, count);
  if (fault != 0) {
    std::memset(dest, 0, destSize);
    return fault;
  }
  std::memcpy(dest, src, count);
  return 0;
}

int32_t memset_s(void* dest, size_t destSize, int value, size_t count) {
  if (!IsUsableDest(dest, destSize)) return EINVAL;
  std::memset(dest, value, count <= destSize ? count : destSize);
  return count <= destSize ? 0 : ERANGE;
}

int32_t strcpy_s(char* dest, size_t destSize, const char* src) {
  return strncpy_s(dest, destSize, src, kBoundsMaxSize);
}

int32_t strncpy_s(char* dest, size_t destSize, const char* src, size_t count) {
  if (!IsUsableDest(dest, destSize)) return EINVAL;
  if (src == nullptr || count > kBoundsMaxSize) return RefuseText(dest, EINVAL);
  // Never looks further than the copy could reach, as the source need not end.
  const size_t length = strnlen(src, count < destSize ? count : destSize);
  if (length >= destSize) return RefuseText(dest, ERANGE);
  if (Overlap(dest, length + 1, src, length)) return RefuseText(dest, EINVAL);
  std::memcpy(dest, src, length);
  dest[length] = '\0';
  return 0;
}

int32_t strcat_s(char* dest, size_t destSize, const char* src) {
  if (!IsUsableDest(dest, destSize)) return EINVAL;
  const size_t used = strnlen(dest, destSize);
  if (used == destSize) return RefuseText(dest, EINVAL);
  const int32_t status = strcpy_s(dest + used, destSize - used, src);
  return status == 0 ? 0 : RefuseText(dest, status);
}

// The length that the whole text has, or -1; what fits of it is in `dest`.
static int32_t PrintWhatFits(char* dest, size_t destSize, const char* format, va_list args) {
  if (!IsUsableDest(dest, destSize)) return -1;
  const int length = format != nullptr ? std::vsnprintf(dest, destSize, format, args) : -1;
  return length >= 0 ? length : RefuseText(dest, -1);
}

static bool Fits(int32_t length, size_t destSize) {
  return static_cast<size_t>(length) < destSize;
}

int32_t sprintf_s(char* dest, size_t destSize, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int32_t length = PrintWhatFits(dest, destSize, format, args);
  va_end(args);
  if (length < 0 || Fits(length, destSize)) return length;
  return RefuseText(dest, -1);
}

int32_t snprintf_s(char* dest, size_t destSize, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int32_t length = vsnprintf_s(dest, destSize, format, args);
  va_end(args);
  return length;
}

int32_t vsnprintf_s(char* dest, size_t destSize, const char* format, va_list args) {
  const int32_t length = PrintWhatFits(dest, destSize, format, args);
  // A length that does not fit is above destSize - 1, which then is an int too.
  return length < 0 || Fits(length, destSize) ? length : static_cast<int32_t>(destSize - 1);
}
