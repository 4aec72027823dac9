// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/reading/type_chain.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/words/argument.h"

namespace compiler {

namespace {

constexpr std::string_view kNames[] = {
    "",
    "binary",
    "bits",
    "boolean",
    "decimal64",
    "empty",
    "enumeration",
    "identityref",
    "instance-identifier",
    "int8",
    "int16",
    "int32",
    "int64",
    "leafref",
    "string",
    "uint8",
    "uint16",
    "uint32",
    "uint64",
    "union",
};
static_assert(std::size(kNames) == static_cast<size_t>(BuiltIn::kUnion) + 1, "one name a type");

// 10^18 is the smallest unit's multiple that a decimal64 may have.
constexpr unsigned kMostDigits = 18;

constexpr size_t kLongestNumber = 30;  // what has more digits fits no type

Interval SignedOf(unsigned bits) {
  const Wide half = static_cast<Wide>(1) << (bits - 1);
  return {-half, half - 1};
}

Interval UnsignedOf(unsigned bits) {
  return {0, (static_cast<Wide>(1) << bits) - 1};
}

// `base` has at least one interval.
bool ReadBound(std::string_view text, unsigned digits, const std::vector<Interval>& base,
               Wide* value) {
  if (text == "min" || text == "max") {
    *value = text == "min" ? base.front().low : base.back().high;
    return true;
  }
  return ParseNumber(text, digits, value);
}

// Neighbouring intervals of whole numbers made one, so that a part may span both.
std::vector<Interval> Joined(const std::vector<Interval>& intervals) {
  std::vector<Interval> joined;
  for (const Interval& interval : intervals) {
    if (!joined.empty() && joined.back().high + 1 >= interval.low) {
      joined.back().high = std::max(joined.back().high, interval.high);
    } else {
      joined.push_back(interval);
    }
  }
  return joined;
}

bool LiesWithin(const std::vector<Interval>& base, const Interval& part) {
  return std::any_of(base.begin(), base.end(),
                     [&](const Interval& b) { return b.low <= part.low && part.high <= b.high; });
}

void Say(std::string* fault, std::string text) {
  if (fault != nullptr) *fault = std::move(text);
}

std::string Words(const RangePart& part) {
  std::string text(part.low);
  if (part.low != part.high) text += ".." + std::string(part.high);
  return "\"" + text + "\"";
}

}  // namespace

BuiltIn FindBuiltIn(std::string_view name) noexcept {
  const auto* row = std::find(std::begin(kNames) + 1, std::end(kNames), name);
  return row == std::end(kNames) ? BuiltIn::kNone : static_cast<BuiltIn>(row - std::begin(kNames));
}

std::string_view NameOfBuiltIn(BuiltIn type) noexcept {
  return kNames[static_cast<size_t>(type)];
}

std::vector<std::string_view> BuiltInNames() {
  return {std::begin(kNames) + 1, std::end(kNames)};
}

bool IsInteger(BuiltIn type) noexcept {
  return (type >= BuiltIn::kInt8 && type <= BuiltIn::kInt64) ||
         (type >= BuiltIn::kUint8 && type <= BuiltIn::kUint64);
}

// `seen` is filled where the chain is long: most have one link or two.
static bool IsNew(const std::vector<const xmlNode*>& chain, const xmlNode* definition,
                  std::unordered_set<const xmlNode*>* seen) {
  constexpr size_t kShort = 16;
  if (chain.size() < kShort)
    return std::find(chain.begin(), chain.end(), definition) == chain.end();
  if (seen->empty()) seen->insert(chain.begin(), chain.end());
  return seen->insert(definition).second;
}

TypeChain ChainOf(const xmlNode* type) {
  TypeChain chain;
  std::unordered_set<const xmlNode*> seen;
  while (type != nullptr) {
    chain.types.push_back(type);
    const char* name = ArgumentOf(type);
    if (name == nullptr) return chain;
    chain.base = FindBuiltIn(name);
    if (chain.base != BuiltIn::kNone) return chain;
    const xmlNode* definition = FindSymbol(type, SymbolKind::kTypedef, name);
    if (definition == nullptr) {
      chain.missing = type;
      return chain;
    }
    if (!IsNew(chain.typedefs, definition, &seen)) {
      chain.circle = true;
      return chain;
    }
    chain.typedefs.push_back(definition);
    type = FirstChild(definition, Keyword::kType);
  }
  return chain;
}

const xmlNode* InChain(const TypeChain& chain, Keyword keyword, size_t from) {
  for (size_t i = from; i < chain.types.size(); ++i) {
    const xmlNode* found = FirstChild(chain.types[i], keyword);
    if (found != nullptr) return found;
  }
  return nullptr;
}

unsigned FractionDigits(const TypeChain& chain) {
  if (chain.base != BuiltIn::kDecimal64) return 0;
  const char* digits = ArgumentOfChild(chain.types.back(), Keyword::kFractionDigits);
  uint64_t value = 0;
  if (digits == nullptr || !ParseUnsigned(digits, kMostDigits, &value)) return 0;
  return static_cast<unsigned>(value);
}

Interval WholeOf(BuiltIn base, bool length) {
  if (length) return UnsignedOf(64);
  switch (base) {
    case BuiltIn::kInt8:
      return SignedOf(8);
    case BuiltIn::kInt16:
      return SignedOf(16);
    case BuiltIn::kInt32:
      return SignedOf(32);
    case BuiltIn::kUint8:
      return UnsignedOf(8);
    case BuiltIn::kUint16:
      return UnsignedOf(16);
    case BuiltIn::kUint32:
      return UnsignedOf(32);
    case BuiltIn::kUint64:
      return UnsignedOf(64);
    default:
      return SignedOf(64);
  }
}

bool ParseNumber(std::string_view text, unsigned digits, Wide* value) {
  const bool negative = !text.empty() && text[0] == '-';
  if (negative) text.remove_prefix(1);
  const size_t point = text.find('.');
  const size_t whole = std::min(point, text.size());
  if (whole == 0 || text.size() > kLongestNumber || point + 1 == text.size()) return false;
  Wide sum = 0;
  unsigned behind = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (i == point) continue;
    if (text[i] < '0' || text[i] > '9') return false;
    sum = sum * 10 + (text[i] - '0');
    if (i > whole) ++behind;
  }
  if (behind > digits) return false;
  for (; behind < digits && sum < (static_cast<Wide>(1) << 100); ++behind) sum *= 10;
  *value = negative ? -sum : sum;
  return true;
}

std::string TextOf(Wide value, unsigned digits) {
  std::string text;
  const bool negative = value < 0;
  if (negative) value = -value;
  do {
    text.insert(text.begin(), static_cast<char>('0' + static_cast<int>(value % 10)));
    value /= 10;
    if (digits != 0 && --digits == 0) text.insert(text.begin(), '.');
  } while (value != 0 || digits != 0);
  if (text[0] == '.') text.insert(text.begin(), '0');
  return negative ? "-" + text : text;
}

bool ReadIntervals(std::string_view text, bool length, unsigned digits,
                   const std::vector<Interval>& base, std::vector<Interval>* parts,
                   std::string* fault) {
  std::vector<RangePart> written;
  if (!ParseRange(text, length, &written)) return false;
  const std::vector<Interval> within = Joined(base);
  for (const RangePart& part : written) {
    Interval interval = {};
    if (!ReadBound(part.low, digits, base, &interval.low) ||
        !ReadBound(part.high, digits, base, &interval.high)) {
      Say(fault, "the part " + Words(part) + " has more digits than the type");
      return false;
    }
    if (interval.low > interval.high) {
      Say(fault, "the part " + Words(part) + " descends");
      return false;
    }
    if (!parts->empty() && interval.low <= parts->back().high) {
      Say(fault, "the part " + Words(part) + " overlaps or stands below the one before it");
      return false;
    }
    if (!LiesWithin(within, interval)) {
      Say(fault, "the part " + Words(part) + " lies outside what the base type allows");
      return false;
    }
    parts->push_back(interval);
  }
  return true;
}

std::vector<Interval> IntervalsOf(const TypeChain& chain, Keyword keyword, size_t from) {
  const bool length = keyword == Keyword::kLength;
  const unsigned digits = FractionDigits(chain);
  std::vector<Interval> intervals = {WholeOf(chain.base, length)};
  for (size_t i = chain.types.size(); i-- > from;) {
    const char* text = ArgumentOfChild(chain.types[i], keyword);
    std::vector<Interval> parts;
    if (text != nullptr && ReadIntervals(text, length, digits, intervals, &parts, nullptr))
      intervals.swap(parts);
  }
  return intervals;
}

bool Contains(const std::vector<Interval>& intervals, Wide value) noexcept {
  return std::any_of(intervals.begin(), intervals.end(), [value](const Interval& interval) {
    return interval.low <= value && value <= interval.high;
  });
}

}  // namespace compiler
