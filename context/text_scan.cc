// SPDX-License-Identifier: BSD-3-Clause
// Scanners for what a text begins with. The steps of schema paths, "node", "prefix:node",
// and steps with bracketed predicates: they look at one step, copy its names into the
// caller's buffers and judge what follows. A step whose form is wrong is refused before
// the room for its name is looked at; a refused step leaves its names empty. And decimal
// integers: what follows the digits is left to the caller, who asks for the end pointer
// to judge it.
#include "context/text_scan.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/string.h"

namespace {
// Whether a byte may stand in an identifier, by its value.
struct IdentChars {
  bool may[UINT8_MAX + 1];
};
}  // namespace

static constexpr IdentChars IdentCharsByValue() {
  IdentChars chars = {};
  for (int c = 0; c <= INT8_MAX; ++c) {
    chars.may[c] = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                   c == '-' || c == '.' || c == '_';
  }
  return chars;
}

constexpr IdentChars kIdentChars = IdentCharsByValue();

static bool IsIdentChar(char c) {
  return kIdentChars.may[static_cast<uint8_t>(c)];
}

static bool EndsStep(char c) {
  return c == '\0' || c == '/';
}

static void Empty(char* out, uint32_t outSize) {
  if (out != nullptr && outSize > 0) out[0] = '\0';
}

// What strncpy_s would do with a name that has no NUL among its characters.
static bool CopyName(char* out, uint32_t outSize, const char* name, uint32_t length) {
  if (length >= outSize || out == nullptr) {
    Empty(out, outSize);
    return false;
  }
  std::memcpy(out, name, length);
  out[length] = '\0';
  return true;
}

uint32_t QM_UTL_ConsumeIdentNameBestEffort(const char* str) {
  const char* end = str;
  while (IsIdentChar(*end)) ++end;
  const auto length = static_cast<size_t>(end - str);
  return length < UINT32_MAX ? static_cast<uint32_t>(length) : UINT32_MAX;
}

bool TakeIdentName(const char** text, char* name, uint32_t size) {
  const uint32_t length = QM_UTL_ConsumeIdentNameBestEffort(*text);
  if (length == 0 || !CopyName(name, size, *text, length)) return false;
  *text += length;
  return true;
}

uint32_t QM_UTL_ConsumeIdentNameFromTail(const char* str, uint32_t len) {
  uint32_t start = len;
  while (start > 0 && IsIdentChar(str[start - 1])) --start;
  return len - start;
}

// Deliberate: a carriage return is not skipped.
const char* QM_UTL_ConsumeAllSpaceChar(const char* str) {
  while (IsBlank(*str)) ++str;
  return str;
}

uint32_t QM_UTL_GetXPathNextNodeName(const char* str, char* out, uint32_t outSize) {
  Empty(out, outSize);
  const uint32_t length = QM_UTL_ConsumeIdentNameBestEffort(str);
  if (length == 0) return QM_FAILED;
  if (!EndsStep(str[length])) return QM_INVALID;
  return CopyName(out, outSize, str, length) ? QM_OK : QM_NAME_TOO_LONG;
}

uint32_t QM_UTL_GetXPathNextPrefixAndNode(const char* str, char* prefixOut, uint32_t prefixSize,
                                          char* nodeOut, uint32_t nodeSize) {
  Empty(prefixOut, prefixSize);
  Empty(nodeOut, nodeSize);
  const uint32_t length = QM_UTL_ConsumeIdentNameBestEffort(str);
  if (length == 0) return QM_FAILED;
  if (EndsStep(str[length])) {
    return CopyName(nodeOut, nodeSize, str, length) ? QM_OK : QM_NAME_TOO_LONG;
  }
  if (str[length] != ':') return QM_INVALID;
  if (!CopyName(prefixOut, prefixSize, str, length)) return QM_NAME_TOO_LONG;
  const uint32_t ret = QM_UTL_GetXPathNextNodeName(str + length + 1, nodeOut, nodeSize);
  if (ret != QM_OK) Empty(prefixOut, prefixSize);
  return ret;
}

const char* QM_UTL_SkipPredicateParis(const char* str) {
  while (*str == '[') {
    const char* close = RTK_StrChr(str, ']');
    if (close == nullptr) return nullptr;
    str = close + 1;
  }
  return str;
}

static TextSpan NameAt(const char* str) {
  return {str, QM_UTL_ConsumeIdentNameBestEffort(str)};
}

const char* ReadPathStep(const char* str, QmPathStep* step) {
  TextSpan prefix = {str, 0};
  TextSpan name = NameAt(str);
  if (name.length == 0) return nullptr;
  const char* rest = str + name.length;
  if (*rest == ':') {
    prefix = name;
    name = NameAt(rest + 1);
    if (name.length == 0) return nullptr;
    rest = name.text + name.length;
  }
  *step = {prefix, name};
  if (*rest == '[') rest = QM_UTL_SkipPredicateParis(rest);
  return rest != nullptr && EndsStep(*rest) ? rest : nullptr;
}

static bool CopySpan(char* out, uint32_t outSize, TextSpan span) {
  return CopyName(out, outSize, span.text, static_cast<uint32_t>(span.length));
}

const char* QM_UTL_GetXPathNextPredicatedPrefixNode(const char* str, char* prefixOut,
                                                    uint32_t prefixSize, char* nodeOut,
                                                    uint32_t nodeSize) {
  Empty(prefixOut, prefixSize);
  Empty(nodeOut, nodeSize);
  QmPathStep step;
  const char* rest = ReadPathStep(str, &step);
  if (rest == nullptr) return nullptr;
  if (step.prefix.length > 0 && !CopySpan(prefixOut, prefixSize, step.prefix)) return nullptr;
  if (CopySpan(nodeOut, nodeSize, step.name)) return rest;
  Empty(prefixOut, prefixSize);
  return nullptr;
}

// Reads what most texts are, a sign and some digits, without the C library; 18 digits fit
// both numbers. NULL, with *out untouched, for anything else.
template <typename Int>
static const char* ReadShortInteger(const char* text, Int* out) {
  constexpr int kMaxDigits = 18;
  const bool isNegative = *text == '-';
  const char* digit = text + (isNegative || *text == '+' ? 1 : 0);
  const char* const first = digit;
  Int value = 0;
  for (; IsDigit(*digit); ++digit) {
    if (digit - first == kMaxDigits) return nullptr;
    value = value * 10 + static_cast<Int>(*digit - '0');
  }
  if (digit == first) return nullptr;
  *out = isNegative ? Int{0} - value : value;
  return digit;
}

// One body for both: only the C library's conversion differs.
template <auto Convert, typename Int>
static uint32_t ReadInteger(const char* digits, char** end, Int* out) {
  char* stop = const_cast<char*>(ReadShortInteger(digits, out));
  if (stop == nullptr) {
    errno = 0;
    const Int value = Convert(digits, &stop, 10);
    if (errno != 0 || stop == digits) return QM_INVALID;
    *out = value;
  }
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
