// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The characters of a text, before anything else is made of them.
#include <cstdint>
#include <string>
#include <string_view>

namespace compiler {

// Counts the lines and columns of a text from front to back. Columns count characters,
// a tab as one.
struct PositionCounter {
  const char* at = nullptr;  // counted until here
  uint32_t line = 1;
  uint32_t column = 1;
};

// Counts on to `place`, which must not lie before `at`.
void CountTo(PositionCounter* counter, const char* place) noexcept;

// The first byte at or after `from` that begins no character that YANG allows; `end`:
// none. YANG allows what XML does, without the noncharacters of Unicode.
const char* FindBadCharacter(const char* from, const char* end) noexcept;

// The bytes that FindBadCharacter() complains of as one, and what they are.
struct BadCharacter {
  size_t length = 1;
  std::string description;  // "byte 0xc3, which begins no UTF-8 character"
};
BadCharacter DescribeBadCharacter(const char* place, const char* end);

// True when no byte is above 0x7f.
bool IsAscii(std::string_view text) noexcept;

}  // namespace compiler
