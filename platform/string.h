// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

// Texts are NUL-terminated bytes and never NULL here; the locale plays no part.

// Characters, by ASCII alone.
inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// What separates the words of a YANG argument here: a carriage return does not.
inline bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}

// White space of XML and XPath.
inline bool IsSpace(char c) {
  return IsBlank(c) || c == '\r';
}

// A part of a longer text.
struct TextSpan {
  const char* text;
  size_t length;
};

// The first `length` bytes of `text` and a NUL in a new block; NULL without memory.
char* CopyText(const char* text, size_t length);

extern "C" {
// Byte-wise compare: negative, 0 or positive. The second looks at `n` bytes at most.
inline int32_t RTK_StrCmp(const char* a, const char* b) {
  return std::strcmp(a, b);
}
inline int32_t RTK_StrNCmp(const char* a, const char* b, size_t n) {
  return std::strncmp(a, b, n);
}

// The bytes before the NUL. The second looks at `n` bytes at most, and gives `n` when
// there is no NUL among them.
inline size_t RTK_StrLen(const char* str) {
  return std::strlen(str);
}
inline size_t RTK_StrNLen(const char* str, size_t n) {
  return strnlen(str, n);
}

// The first or last `c`, or the first `sub`, in `str`; NULL when there is none.
inline const char* RTK_StrChr(const char* str, char c) {
  return std::strchr(str, c);
}
inline const char* RTK_StrRChr(const char* str, char c) {
  return std::strrchr(str, c);
}
inline const char* RTK_StrStr(const char* str, const char* sub) {
  return std::strstr(str, sub);
}

// Converts the whole text: white space around a decimal number with optional
// sign, fraction and exponent. A number too large for a double becomes an
// infinity, one too small becomes 0. 0 on success; 22 for anything else ("inf",
// "nan", hexadecimal, an empty text), with *out as it was.
uint32_t RTK_StrToFloat(const char* str, double* out);
}

// Whether two texts are equal. Names that are not mostly differ within a few bytes: those are
// compared here, since the call alone would cost more.
inline bool TextsEqual(const char* a, const char* b) {
  constexpr int kHead = 8;
  for (int i = 0; i < kHead; ++i) {
    if (a[i] != b[i]) return false;
    if (a[i] == '\0') return true;
  }
  return RTK_StrCmp(a + kHead, b + kHead) == 0;
}

// Whether `text` has the bytes of `span` and no more.
inline bool TextIs(const char* text, TextSpan span) {
  for (size_t i = 0; i < span.length; ++i) {
    if (text[i] != span.text[i]) return false;
  }
  return text[span.length] == '\0';
}

inline TextSpan WholeText(const char* text) {
  return {text, RTK_StrLen(text)};
}
