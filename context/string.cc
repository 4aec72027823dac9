// SPDX-License-Identifier: BSD-3-Clause
// Copies of texts in blocks of the memory hooks, small questions about texts,
// and matching against XML Schema regular expressions.
#include "context/string.h"

#include <libxml/xmlregexp.h>
#include <libxml/xmlstring.h>

#include <climits>
#include <cstring>

#include "context/guard.h"
#include "context/memory.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
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

// libxml2 counts the characters of a text in an int.
static bool CanBeMatched(const char* text) {
  return text != nullptr && RTK_StrNLen(text, INT_MAX) < INT_MAX &&
         xmlCheckUTF8(XmlChars(text)) != 0;
}

// Whether the pattern has a part at `c`, outside of classes, that may match nothing.
static bool IsOptionalPart(const char* c) {
  switch (*c) {
    case '?':
    case '*':
      return true;
    case '{':
      return c[1] == '0';
    case '(':
    case '|':
      return c[1] == '|' || c[1] == ')';
    default:
      return false;
  }
}

// libxml2 recurses where it compiles: once for each class that is taken from a class, and
// along parts that may match nothing, 124 bytes of stack for each. A pattern of some
// hundred kilobytes would overflow any stack; no real one is near these bounds.
static bool CanBeCompiled(const char* pattern) {
  constexpr uint32_t kMaxOpenClasses = 1024;
  constexpr uint32_t kMaxOptionalParts = 512;
  uint32_t openClasses = 0;
  uint32_t optionalParts = 0;
  for (const char* c = pattern; *c != '\0'; ++c) {
    if (*c == '\\' && c[1] != '\0') {
      ++c;
      continue;
    }
    if (*c == '[') ++openClasses;
    if (*c == ']' && openClasses > 0) --openClasses;
    if (openClasses == 0 && IsOptionalPart(c)) ++optionalParts;
    if (openClasses > kMaxOpenClasses || optionalParts > kMaxOptionalParts) return false;
  }
  return true;
}

uint32_t QM_UTL_MatchStrWithPattern(const char* str, const char* pattern) {
  // libxml2 reads on without end, and without bound on memory, in bytes that are no
  // UTF-8. A text from XML has none, but a client's value may.
  if (!CanBeMatched(pattern) || !CanBeMatched(str)) return QM_INVALID;
  if (!CanBeCompiled(pattern)) return QM_INVALID;
  const XmlSilence silence;
  const QmOwn<xmlRegFreeRegexp> compiled(xmlRegexpCompile(XmlChars(pattern)));
  if (!compiled) return QM_INVALID;
  return xmlRegexpExec(compiled.Get(), XmlChars(str)) == 1 ? QM_OK : QM_INVALID;
}
