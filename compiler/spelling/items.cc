// SPDX-License-Identifier: BSD-3-Clause
// The loader does not read if-feature of an enum or bit, and for the library a type
// without any takes every text. So a type that has no value left keeps what it had, and
// this is reported. What a typedef lost is no longer there for the types that are derived
// from it.
#include "compiler/spelling/items.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/features.h"
#include "compiler/spelling/typedefs.h"

namespace compiler {

namespace {

// How far typedefs that name typedefs are followed; circles are errors before.
constexpr unsigned kMaxChain = 1000;

using Names = std::unordered_set<std::string_view>;

bool IsItem(const xmlNode* statement) {
  return Is(statement, Keyword::kEnum) || Is(statement, Keyword::kBit);
}

xmlNode* NextItem(xmlNode* s) {
  while (s != nullptr && !IsItem(s)) s = NextSibling(s);
  return s;
}

xmlNode* FirstItem(const xmlNode* type) {
  return NextItem(FirstChild(type));
}

std::string_view TypeName(const xmlNode* type) {
  const char* name = ArgumentOf(OriginOf(type));
  return name == nullptr ? "" : name;
}

// Those of a type as it was read, found once: many types may be derived from it.
const Names& OwnNamesOff(Output* out, const xmlNode* type) {
  const auto entered = out->itemsOff.try_emplace(type);
  Names& names = entered.first->second;
  xmlNode* item = entered.second ? FirstItem(type) : nullptr;
  for (; item != nullptr; item = NextItem(NextSibling(item))) {
    if (ArgumentOf(item) != nullptr && IsOff(out, item)) names.insert(ArgumentOf(item));
  }
  return names;
}

// What the type cannot have, by itself or by what it is derived from; sets with names only.
using NamesOff = std::vector<const Names*>;

NamesOff NamesOffFor(Output* out, const xmlNode* type) {
  NamesOff off;
  const xmlNode* at = FirstItem(type) == nullptr ? nullptr : OriginOf(type);
  for (unsigned chain = 0; at != nullptr && chain < kMaxChain; ++chain) {
    const Names& names = OwnNamesOff(out, at);
    if (!names.empty()) off.push_back(&names);
    if (IsBuiltInType(TypeName(at))) break;
    const xmlNode* definition = FindSymbol(at, SymbolKind::kTypedef, TypeName(at));
    at = definition == nullptr ? nullptr : FirstChild(definition, Keyword::kType);
  }
  return off;
}

bool IsAmong(const NamesOff& off, const xmlNode* item) {
  const char* name = ArgumentOf(item);
  return name != nullptr && std::any_of(off.begin(), off.end(), [name](const Names* names) {
           return names->count(name) != 0;
         });
}

// True when the type has enums or bits, and all of them are off.
bool HasNoValue(const xmlNode* type, const NamesOff& off) {
  xmlNode* item = FirstItem(type);
  if (item == nullptr) return false;
  for (; item != nullptr; item = NextItem(NextSibling(item))) {
    if (!IsAmong(off, item)) return false;
  }
  return true;
}

void Leave(Output* out, xmlNode* statement) {
  TakeOut(statement);
  out->removed.emplace_back(statement);
}

void KeepAll(Output* out, const xmlNode* type) {
  Lose(out, type,
       std::string("every ") + NameOf(FirstItem(type)) +
           " of the type depends on a feature that is off; they stay, since the library takes "
           "every text for a type without");
  for (xmlNode* item = FirstItem(type); item != nullptr; item = NextItem(NextSibling(item))) {
    while (xmlNode* condition = FirstChild(item, Keyword::kIfFeature)) RemoveStatement(condition);
  }
}

// The number that an item has or would get (RFC 7950, sections 9.6.4.2 and 9.7.4.2): one
// more than the highest before it. Those that have left count.
class ItemNumbers {
 public:
  int64_t Next(const xmlNode* item) {
    const char* written = NumberOf(item);
    int64_t number = highest_ + 1;
    if (written != nullptr) {
      const std::string_view text = written;
      std::from_chars(text.data(), text.data() + text.size(), number);
    }
    highest_ = isFirst_ ? number : std::max(highest_, number);
    isFirst_ = false;
    return number;
  }

  static const char* NumberOf(const xmlNode* item) {
    return ArgumentOfChild(item, Is(item, Keyword::kEnum) ? Keyword::kValue : Keyword::kPosition);
  }

 private:
  int64_t highest_ = -1;
  bool isFirst_ = true;
};

// What stays keeps the number that it had beside what has left.
void SettleEach(Output* out, xmlNode* type, const NamesOff& off) {
  const bool isNumbered = IsBuiltInType(TypeName(type));
  ItemNumbers before;
  ItemNumbers after;
  for (xmlNode* item = FirstItem(type); item != nullptr;) {
    xmlNode* next = NextItem(NextSibling(item));
    const int64_t number = before.Next(item);
    if (IsAmong(off, item) || !SettleIfFeatures(out, item)) {
      Leave(out, item);
    } else if (after.Next(item) != number && isNumbered) {
      const Keyword keyword = Is(item, Keyword::kEnum) ? Keyword::kValue : Keyword::kPosition;
      AppendChild(item, MakeStatement(out->all->session, item, keyword, std::to_string(number)));
      after = before;
    }
    item = next;
  }
}

// A union can do without a member, as long as there is another.
void SettleMembers(Output* out, const xmlNode* type) {
  for (xmlNode* member = FirstChild(type, Keyword::kType); member != nullptr;) {
    xmlNode* next = NextSibling(member, Keyword::kType);
    const bool isLast = FirstChild(type, Keyword::kType) == member && next == nullptr;
    if (!isLast && HasNoValue(member, NamesOffFor(out, member))) Leave(out, member);
    member = next;
  }
}

}  // namespace

void SettleItems(Output* out, xmlNode* type) {
  SettleMembers(out, type);
  if (FirstItem(type) == nullptr) return;
  const NamesOff off = NamesOffFor(out, type);
  const bool isEmpty = HasNoValue(type, off);
  if (isEmpty && IsBuiltInType(TypeName(type))) {
    KeepAll(out, type);
    return;
  }
  if (isEmpty)
    Lose(out, type,
         std::string("every ") + NameOf(FirstItem(type)) +
             " of the type depends on a feature that is off; it is written without, and so "
             "takes all that its typedef does");
  SettleEach(out, type, off);
}

void WriteAsBuiltIn(Output* out, xmlNode* type) {
  const BottomType bottom = FindBottomType(type);
  Session* session = out->all->session;
  std::unordered_map<std::string_view, int64_t> numbers;
  ItemNumbers before;
  for (xmlNode* item = FirstItem(bottom.type); item != nullptr; item = NextItem(NextSibling(item)))
    numbers.emplace(ArgumentOf(item), before.Next(item));
  ItemNumbers after;
  for (xmlNode* item = FirstItem(type); item != nullptr; item = NextItem(NextSibling(item))) {
    const auto known = numbers.find(ArgumentOf(item));
    if (known == numbers.end() || ItemNumbers::NumberOf(item) != nullptr) {
      after.Next(item);
      continue;
    }
    ItemNumbers next = after;
    if (next.Next(item) != known->second) {
      const Keyword keyword = Is(item, Keyword::kEnum) ? Keyword::kValue : Keyword::kPosition;
      AppendChild(item, MakeStatement(session, item, keyword, std::to_string(known->second)));
    }
    after.Next(item);
  }
  SetArgument(session, type, ArgumentOf(bottom.type));
  xmlNode* holder = ParentOf(type);
  if (bottom.units != nullptr && FirstChild(holder, Keyword::kUnits) == nullptr)
    AppendChild(holder, CopyStatement(session, holder->doc, bottom.units, nullptr));
}

bool LosesEveryItem(Output* out, const xmlNode* type) {
  return HasNoValue(type, NamesOffFor(out, type));
}

bool LosesItem(Output* out, const xmlNode* type, std::string_view name) {
  const xmlNode* at = OriginOf(type);
  for (unsigned chain = 0; at != nullptr && chain < kMaxChain; ++chain) {
    // A type that would lose all keeps them, or goes without its restriction.
    if (OwnNamesOff(out, at).count(name) != 0 && !LosesEveryItem(out, at)) return true;
    if (IsBuiltInType(TypeName(at))) break;
    const xmlNode* definition = FindSymbol(at, SymbolKind::kTypedef, TypeName(at));
    at = definition == nullptr ? nullptr : FirstChild(definition, Keyword::kType);
  }
  return false;
}

}  // namespace compiler
