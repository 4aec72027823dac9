// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What a `type` statement comes to: the typedefs that it goes through, down to a built-in
// type, and the bounds that hold for its values (RFC 7950, section 9).
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/reading/records.h"

namespace compiler {

enum class BuiltIn : uint8_t {
  kNone,
  kBinary,
  kBits,
  kBoolean,
  kDecimal64,
  kEmpty,
  kEnumeration,
  kIdentityref,
  kInstanceIdentifier,
  kInt8,
  kInt16,
  kInt32,
  kInt64,
  kLeafref,
  kString,
  kUint8,
  kUint16,
  kUint32,
  kUint64,
  kUnion,
};

// kNone: no built-in type has that name.
BuiltIn FindBuiltIn(std::string_view name) noexcept;
std::string_view NameOfBuiltIn(BuiltIn type) noexcept;
bool IsInteger(BuiltIn type) noexcept;

// The names of the built-in types, for suggestions.
std::vector<std::string_view> BuiltInNames();

// A type and what it is made of, from the statement that is used to the one that names
// the built-in type.
struct TypeChain {
  BuiltIn base = BuiltIn::kNone;         // kNone: the chain is broken or a circle
  std::vector<const xmlNode*> types;     // `type` statements; the first is the one asked for
  std::vector<const xmlNode*> typedefs;  // between them, one less
  const xmlNode* missing = nullptr;      // the `type` whose typedef is not known
  bool circle = false;
};

TypeChain ChainOf(const xmlNode* type);

// The nearest statement of this kind along the chain, from `from` on; NULL: there is none.
const xmlNode* InChain(const TypeChain& chain, Keyword keyword, size_t from = 0);

// Numbers of all types, decimal64 as multiples of its smallest fraction.
__extension__ typedef __int128 Wide;

struct Interval {
  Wide low;
  Wide high;
};

// The digits behind the point; 0 for all but decimal64, and when they are not known.
unsigned FractionDigits(const TypeChain& chain);

// The values of the built-in type itself: of numbers, or of the length of a string.
Interval WholeOf(BuiltIn base, bool length);

// A number as a bound of a range or a value writes it; false: it is none, or has more
// digits behind the point than `digits`.
bool ParseNumber(std::string_view text, unsigned digits, Wide* value);
std::string TextOf(Wide value, unsigned digits);

// The intervals that the `range` or `length` statements of the chain leave, from `from`
// on. Those that are faulty count as absent.
std::vector<Interval> IntervalsOf(const TypeChain& chain, Keyword keyword, size_t from = 0);

// The parts of one range or length, "min" and "max" taken from `base`; false: its form or
// its numbers are faulty, or the parts do not ascend or lie outside `base`. `fault` says
// what, and may be NULL.
bool ReadIntervals(std::string_view text, bool length, unsigned digits,
                   const std::vector<Interval>& base, std::vector<Interval>* parts,
                   std::string* fault);

bool Contains(const std::vector<Interval>& intervals, Wide value) noexcept;

}  // namespace compiler
