// SPDX-License-Identifier: BSD-3-Clause
// Copies of texts in blocks of the memory hooks, and small questions about texts.
#include "context/string.h"

#include <cstring>

#include "context/memory.h"
#include "platform/string.h"

char* JoinModuleAndName(const char* moduleName, const char* name) {
  const size_t moduleLength = RTK_StrLen(moduleName);
  const size_t length = RTK_StrLen(name);
  auto* joined = static_cast<char*>(AllocZeroed(moduleLength + 1 + length + 1));
  if (joined == nullptr) return nullptr;
  std::memcpy(joined, moduleName, moduleLength);
  joined[moduleLength] = ':';
  std::memcpy(joined + moduleLength + 1, name, length);
  return joined;
}

char* QM_UTL_StrDup(const char* str) {
  return str != nullptr ? CopyText(str, RTK_StrLen(str)) : nullptr;
}

char* QM_UTL_StrDupWithSpecifyLength(const char* str, uint32_t n) {
  if (str == nullptr || n == 0 || RTK_StrNLen(str, n) < n) return nullptr;
  return CopyText(str, n);
}

char* QM_UTL_CreateEmptyString() {
  return CopyText("", 0);
}

uint32_t QM_UTL_IsNulStringEqual(const char* a, const char* b) {
  if (a == nullptr || b == nullptr) return a == b ? 1 : 0;
  return RTK_StrCmp(a, b) == 0 ? 1 : 0;
}

uint32_t QM_UTL_CountCharNumber(const char* str, char c) {
  uint32_t count = 0;
  if (str == nullptr) return count;
  for (; *str != '\0'; ++str) {
    if (*str == c) ++count;
  }
  return count;
}

const char* QM_UTL_Strnchr(const char* str, char c, uint32_t n) {
  if (str == nullptr) return nullptr;
  // Deliberate: the first position is examined even when n is 0.
  const uint32_t limit = n > 0 ? n : 1;
  for (uint32_t i = 0; i < limit; ++i) {
    if (str[i] == c) return str + i;
    if (str[i] == '\0') break;
  }
  return nullptr;
}
