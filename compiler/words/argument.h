// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The forms that arguments of statements may have (RFC 7950, section 14), as far as a
// form can be judged without looking at the rest of the schema.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/words/keyword.h"

namespace compiler {

// [A-Za-z_][A-Za-z0-9_.-]*; in YANG 1 not beginning with "xml" in any case of letters.
bool IsIdentifier(std::string_view text, bool version11) noexcept;

// A name with or without a prefix.
bool IsIdentifierRef(std::string_view text, bool version11) noexcept;

// YYYY-MM-DD that the calendar has.
bool IsDate(std::string_view text) noexcept;

// A URI as RFC 3986 writes it: with a scheme, and of the characters that it allows.
bool IsUri(std::string_view text) noexcept;

// A path of names: "/a:b/c" (absolute) or "a:b/c".
bool IsAbsoluteNodeId(std::string_view text) noexcept;
bool IsDescendantNodeId(std::string_view text) noexcept;

// "0" or digits that do not begin with 0; false also when it is above `max`.
bool ParseUnsigned(std::string_view text, uint64_t max, uint64_t* value) noexcept;

// Likewise with a sign; "-0" is allowed.
bool ParseInteger(std::string_view text, int64_t min, int64_t max, int64_t* value) noexcept;

// The words of an argument, which blanks, tabs and line feeds part.
std::vector<std::string_view> WordsOf(std::string_view text);

// One part of a range or length: two bounds as they are written ("min", "max" or a
// number); of a single value both are the same.
struct RangePart {
  std::string_view low;
  std::string_view high;
};

// The parts of "1..4 | 8"; false when that is no range expression. `length`: bounds are
// numbers without sign and fraction.
bool ParseRange(std::string_view text, bool length, std::vector<RangePart>* parts);

// What is wrong with the form of a statement's argument, or an empty text. `parent` is
// the statement around it, on which a few forms depend. Conditions, feature
// expressions and paths of leafrefs have parsers of their own.
std::string JudgeArgument(Keyword keyword, Keyword parent, std::string_view text, bool version11);

// What may stand there instead, for the advice.
std::string AdviseArgument(Keyword keyword, Keyword parent);

}  // namespace compiler
