// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Which statement may stand in which, how often, and in which version of YANG (RFC 7950
// and, for version 1, RFC 6020).
#include <cstdint>
#include <limits>
#include <span>

#include "compiler/words/keyword.h"

namespace compiler {

inline constexpr uint8_t kAnyNumber = std::numeric_limits<uint8_t>::max();

// What a statement may hold.
struct SubStatement {
  Keyword keyword;
  uint8_t min;   // 0 or 1
  uint8_t max;   // 1 or kAnyNumber
  uint8_t max1;  // in YANG 1; 0: not there at all
};

// What `parent` may hold; nothing for an extension instance.
std::span<const SubStatement> SubStatementsOf(Keyword parent) noexcept;

// The row of `child` in `parent`; NULL when it may not stand there in either version.
const SubStatement* FindSubStatement(Keyword parent, Keyword child) noexcept;

// The sections of a module, in the order in which they must come.
enum class Section : uint8_t { kHeader, kLinkage, kMeta, kRevision, kBody };

Section SectionOf(Keyword keyword) noexcept;
const char* NameOf(Section section) noexcept;

// A statement that defines a node of the data or schema tree.
bool IsDataDefinition(Keyword keyword) noexcept;

}  // namespace compiler
