// SPDX-License-Identifier: BSD-3-Clause
// Almost every text is plain: it is looked at in blocks that the compiler turns into
// vector instructions, and only a block with something unusual is taken apart.
#include "compiler/words/text_check.h"

#include <cstdio>
#include <cstring>

namespace compiler {

namespace {

constexpr size_t kBlock = 64;

constexpr bool IsPlain(unsigned char c) noexcept {
  return (c >= 0x20 && c < 0x80) || c == '\n' || c == '\t' || c == '\r';
}

bool BlockIsPlain(const char* block) noexcept {
  unsigned char unusual = 0;
  for (size_t i = 0; i < kBlock; ++i) {
    const auto c = static_cast<unsigned char>(block[i]);
    const auto control =
        static_cast<unsigned char>((c < 0x20) & (c != '\n') & (c != '\t') & (c != '\r'));
    unusual = static_cast<unsigned char>(unusual | (c >> 7) | control);
  }
  return unusual == 0;
}

// A character of UTF-8; length 0: the bytes are none.
struct Character {
  uint32_t code = 0;
  size_t length = 0;
};

Character Decode(const char* place, const char* end) noexcept {
  const auto first = static_cast<unsigned char>(*place);
  if (first < 0x80) return {first, 1};
  const size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4 || static_cast<size_t>(end - place) < length) return {};
  uint32_t code = first & (0x7fU >> length);
  for (size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(place[i]);
    if ((next & 0xc0) != 0x80) return {};
    code = code << 6 | (next & 0x3f);
  }
  constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kLeast[length] || code > 0x10ffff || (code >= 0xd800 && code <= 0xdfff)) return {};
  return {code, length};
}

bool IsAllowed(uint32_t code) noexcept {
  if (code < 0x80) return IsPlain(static_cast<unsigned char>(code));
  return (code & 0xfffe) != 0xfffe && (code < 0xfdd0 || code > 0xfdef);
}

}  // namespace

void CountTo(PositionCounter* counter, const char* place) noexcept {
  const char* from = counter->at;
  const char* feed = nullptr;
  while ((feed = static_cast<const char*>(
              std::memchr(from, '\n', static_cast<size_t>(place - from)))) != nullptr) {
    ++counter->line;
    counter->column = 1;
    from = feed + 1;
  }
  for (; from < place; ++from) {
    const bool continues = (static_cast<unsigned char>(*from) & 0xc0) == 0x80;
    counter->column += continues ? 0 : 1;
  }
  counter->at = place;
}

const char* FindBadCharacter(const char* from, const char* end) noexcept {
  while (from < end) {
    const bool whole = static_cast<size_t>(end - from) >= kBlock;
    if (whole && BlockIsPlain(from)) {
      from += kBlock;
      continue;
    }
    const char* stop = whole ? from + kBlock : end;
    while (from < stop) {
      const Character character = Decode(from, end);
      if (character.length == 0 || !IsAllowed(character.code)) return from;
      from += character.length;
    }
  }
  return end;
}

BadCharacter DescribeBadCharacter(const char* place, const char* end) {
  const Character character = Decode(place, end);
  char text[64];
  BadCharacter bad;
  if (character.length == 0) {
    (void)std::snprintf(text, sizeof(text), "byte 0x%02x, which is no UTF-8 here",
                        static_cast<unsigned>(static_cast<unsigned char>(*place)));
  } else {
    (void)std::snprintf(text, sizeof(text), "character U+%04X, which YANG does not allow",
                        static_cast<unsigned>(character.code));
    bad.length = character.length;
  }
  bad.description = text;
  return bad;
}

bool IsAscii(std::string_view text) noexcept {
  uint64_t high = 0;
  size_t i = 0;
  for (; i + sizeof(high) <= text.size(); i += sizeof(high)) {
    uint64_t eight = 0;
    std::memcpy(&eight, text.data() + i, sizeof(eight));
    high |= eight;
  }
  for (; i < text.size(); ++i) high |= static_cast<unsigned char>(text[i]);
  return (high & 0x8080808080808080U) == 0;
}

}  // namespace compiler
