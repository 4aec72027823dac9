// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What single characters of models are, in ASCII and whatever the locale.

namespace compiler {

constexpr bool IsBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

constexpr bool IsDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

constexpr bool IsLetter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Of an identifier (RFC 7950, section 6.2): its first character, and any.
constexpr bool IsNameStart(char c) noexcept {
  return IsLetter(c) || c == '_';
}

constexpr bool IsNameCharacter(char c) noexcept {
  return IsNameStart(c) || IsDigit(c) || c == '-' || c == '.';
}

}  // namespace compiler
