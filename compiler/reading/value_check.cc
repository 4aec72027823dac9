// SPDX-License-Identifier: BSD-3-Clause
// One function a built-in type, all of one form, in a table. A union asks for each of its
// members, whose depth is bounded since a faulty union may contain itself.
#include "compiler/reading/value_check.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <set>
#include <unordered_set>

#include "compiler/reading/derived_identity.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/reading/type_chain.h"
#include "compiler/words/argument.h"
#include "compiler/words/character.h"
#include "compiler/words/pattern.h"
#include "compiler/words/quote.h"

namespace compiler {

namespace {

constexpr unsigned kMaxUnionDepth = 32;

struct Value {
  std::string_view text;
  const xmlNode* at;
  unsigned depth;
  std::unordered_set<const xmlNode*>* unfit;  // unions that do not take it, as far as is known
};

std::string FaultIn(const xmlNode* type, const Value& value);

// Decimal, or as the defaults of YANG may be written: 0x and hexadecimal digits, 0 and
// octal ones.
bool ParseYangInteger(std::string_view text, Wide* number) {
  const bool negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    base = 16;
    text.remove_prefix(2);
  } else if (text.size() > 1 && text[0] == '0') {
    base = 8;
  }
  uint64_t magnitude = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, magnitude, base);
  if (text.empty() || result.ec != std::errc() || result.ptr != end) return false;
  *number = negative ? -static_cast<Wide>(magnitude) : static_cast<Wide>(magnitude);
  return true;
}

std::string FaultOfInteger(const TypeChain& chain, const Value& value) {
  Wide number = 0;
  if (!ParseYangInteger(value.text, &number))
    return "is no " + std::string(NameOfBuiltIn(chain.base));
  if (!Contains(IntervalsOf(chain, Keyword::kRange), number)) return "is out of range";
  return {};
}

std::string FaultOfDecimal(const TypeChain& chain, const Value& value) {
  const unsigned digits = FractionDigits(chain);
  if (digits == 0) return {};
  std::string_view text = value.text;
  if (text.size() > 1 && text[0] == '+') text.remove_prefix(1);
  Wide number = 0;
  if (!ParseNumber(text, digits, &number))
    return "is no decimal64 with " + std::to_string(digits) + " fraction digits";
  if (!Contains(IntervalsOf(chain, Keyword::kRange), number)) return "is out of range";
  return {};
}

size_t CountCharacters(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
  }));
}

std::string FaultOfString(const TypeChain& chain, const Value& value) {
  const auto length = static_cast<Wide>(CountCharacters(value.text));
  if (!Contains(IntervalsOf(chain, Keyword::kLength), length))
    return "has a length that is not allowed";
  for (const xmlNode* type : chain.types) {
    for (const xmlNode* s = FirstChild(type, Keyword::kPattern); s != nullptr;
         s = NextSibling(s, Keyword::kPattern)) {
      const char* pattern = ArgumentOf(s);
      if (pattern == nullptr || JudgePattern(pattern) != PatternState::kCompiles) continue;
      const bool invert = FirstChild(s, Keyword::kModifier) != nullptr;
      if (PatternMatches(pattern, value.text) == invert)
        return (invert ? "matches the pattern " : "does not match the pattern ") + Quote(pattern) +
               (invert ? ", which it must not" : "");
    }
  }
  return {};
}

std::string FaultOfBinary(const TypeChain& chain, const Value& value) {
  std::string digits;
  for (const char c : value.text)
    if (!IsBlank(c)) digits.push_back(c);
  const size_t padding = digits.size() - digits.find_last_not_of('=') - 1;
  const auto isDigit = [](char c) { return IsLetter(c) || IsDigit(c) || c == '+' || c == '/'; };
  const auto end = digits.end() - static_cast<std::ptrdiff_t>(std::min(padding, digits.size()));
  if (digits.size() % 4 != 0 || padding > 2 || !std::all_of(digits.begin(), end, isDigit))
    return "is not written in base64";
  const auto length = static_cast<Wide>(digits.size() / 4 * 3 - padding);
  if (!Contains(IntervalsOf(chain, Keyword::kLength), length))
    return "has a length that is not allowed";
  return {};
}

std::string FaultOfBoolean(const TypeChain&, const Value& value) {
  if (value.text == "true" || value.text == "false") return {};
  return "is neither \"true\" nor \"false\"";
}

// So many are looked through one by one.
constexpr unsigned kFewItems = 16;

bool HasItem(const TypeChain& chain, Keyword item, std::string_view name) {
  const xmlNode* first = InChain(chain, item);
  unsigned looked = 0;
  const xmlNode* s = first;
  for (; s != nullptr && looked < kFewItems; s = NextSibling(s, item), ++looked)
    if (ArgumentOf(s) != nullptr && name == ArgumentOf(s)) return true;
  if (s == nullptr) return false;
  const auto entered = StatementOf(first)->words->items.try_emplace(first);
  for (; entered.second && s != nullptr; s = NextSibling(s, item))
    if (ArgumentOf(s) != nullptr) entered.first->second.insert(ArgumentOf(s));
  return entered.first->second.count(name) != 0;
}

std::string FaultOfEnum(const TypeChain& chain, const Value& value) {
  if (InChain(chain, Keyword::kEnum) == nullptr || HasItem(chain, Keyword::kEnum, value.text))
    return {};
  return "is no enum of the type";
}

std::string FaultOfBits(const TypeChain& chain, const Value& value) {
  if (InChain(chain, Keyword::kBit) == nullptr) return {};
  std::set<std::string_view> seen;
  for (const std::string_view name : WordsOf(value.text)) {
    if (!HasItem(chain, Keyword::kBit, name))
      return "names a bit that the type has not: " + Quote(name);
    if (!seen.insert(name).second) return "names the bit " + Quote(name) + " twice";
  }
  return {};
}

std::string FaultOfIdentity(const TypeChain& chain, const Value& value) {
  if (!IsIdentifierRef(value.text, true)) return "is no name of an identity";
  Module* module = ModuleOfPrefix(StatementOf(value.at)->words, SplitReference(value.text).prefix);
  if (module == nullptr) {
    const bool known = KnowsPrefix(StatementOf(value.at)->words, SplitReference(value.text).prefix);
    return known ? "" : "has a prefix that no import declares";
  }
  const xmlNode* identity = FindSymbol(value.at, SymbolKind::kIdentity, value.text);
  if (identity == nullptr) return IsLossy(module) ? "" : "is no identity that is known";
  for (const xmlNode* s = FirstChild(chain.types.back(), Keyword::kBase); s != nullptr;
       s = NextSibling(s, Keyword::kBase)) {
    if (ArgumentOf(s) == nullptr) continue;
    const xmlNode* base = FindSymbol(s, SymbolKind::kIdentity, ArgumentOf(s));
    if (base != nullptr && !IsDerivedFrom(identity, base))
      return "is not derived from " + Quote(ArgumentOf(s));
  }
  return {};
}

std::string FaultOfEmpty(const TypeChain&, const Value&) {
  return "cannot be a default, since the type is \"empty\"";
}

std::string FaultOfInstance(const TypeChain&, const Value& value) {
  return value.text.empty() || value.text[0] != '/' ? "is no path of an instance" : "";
}

std::string FaultOfUnion(const TypeChain& chain, const Value& value) {
  const xmlNode* type = chain.types.back();
  if (value.depth >= kMaxUnionDepth) return {};
  for (const xmlNode* s = FirstChild(type, Keyword::kType);
       s != nullptr && value.unfit->count(type) == 0; s = NextSibling(s, Keyword::kType)) {
    if (FaultIn(s, {value.text, value.at, value.depth + 1, value.unfit}).empty()) return {};
  }
  value.unfit->insert(type);
  return "fits no member of the union";
}

std::string FaultOfNothing(const TypeChain&, const Value&) {
  return {};
}

using FaultFunction = std::string (*)(const TypeChain& chain, const Value& value);

constexpr FaultFunction kFaults[] = {
    FaultOfNothing,   // none
    FaultOfBinary,    // binary
    FaultOfBits,      // bits
    FaultOfBoolean,   // boolean
    FaultOfDecimal,   // decimal64
    FaultOfEmpty,     // empty
    FaultOfEnum,      // enumeration
    FaultOfIdentity,  // identityref
    FaultOfInstance,  // instance-identifier
    FaultOfInteger,   // int8
    FaultOfInteger,   // int16
    FaultOfInteger,   // int32
    FaultOfInteger,   // int64
    FaultOfNothing,   // leafref
    FaultOfString,    // string
    FaultOfInteger,   // uint8
    FaultOfInteger,   // uint16
    FaultOfInteger,   // uint32
    FaultOfInteger,   // uint64
    FaultOfUnion,     // union
};
static_assert(std::size(kFaults) == static_cast<size_t>(BuiltIn::kUnion) + 1, "one a type");

std::string FaultIn(const xmlNode* type, const Value& value) {
  const TypeChain chain = ChainOf(type);
  return kFaults[static_cast<size_t>(chain.base)](chain, value);
}

}  // namespace

std::string FaultOfValue(const xmlNode* type, std::string_view value, const xmlNode* at) {
  std::unordered_set<const xmlNode*> unfit;
  return FaultIn(type, {value, at, 0, &unfit});
}

std::string CanonicalOf(const xmlNode* type, std::string_view value) {
  const TypeChain chain = ChainOf(type);
  Wide number = 0;
  if (IsInteger(chain.base) && ParseYangInteger(value, &number)) return TextOf(number, 0);
  const unsigned digits = FractionDigits(chain);
  if (digits != 0 && ParseNumber(value, digits, &number)) return TextOf(number, digits);
  return std::string(value);
}

}  // namespace compiler
