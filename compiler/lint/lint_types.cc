// SPDX-License-Identifier: BSD-3-Clause
// Types: that each comes to a built-in one, what its statement must and may hold, and
// the names and numbers of enums and bits (RFC 7950, section 9).
#include <algorithm>
#include <map>
#include <set>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"
#include "compiler/words/argument.h"

namespace compiler {

namespace {

// Which statements the types take, and which of them they cannot be without when the
// type is the built-in one itself. A type that is derived restricts what it has.
struct TypeRule {
  BuiltIn base;
  Keyword keyword;
  bool required;
  bool derived;  // a derived type takes it too
};

constexpr TypeRule kRules[] = {
    {BuiltIn::kBinary, Keyword::kLength, false, true},
    {BuiltIn::kBits, Keyword::kBit, true, true},
    {BuiltIn::kDecimal64, Keyword::kFractionDigits, true, false},
    {BuiltIn::kDecimal64, Keyword::kRange, false, true},
    {BuiltIn::kEnumeration, Keyword::kEnum, true, true},
    {BuiltIn::kIdentityref, Keyword::kBase, true, false},
    {BuiltIn::kInstanceIdentifier, Keyword::kRequireInstance, false, true},
    {BuiltIn::kLeafref, Keyword::kPath, true, false},
    {BuiltIn::kLeafref, Keyword::kRequireInstance, false, true},
    {BuiltIn::kString, Keyword::kLength, false, true},
    {BuiltIn::kString, Keyword::kPattern, false, true},
    {BuiltIn::kUnion, Keyword::kType, true, false},
};

const TypeRule* FindRule(BuiltIn base, Keyword keyword) {
  static constexpr TypeRule kRange = {BuiltIn::kNone, Keyword::kRange, false, true};
  if (keyword == Keyword::kRange && IsInteger(base)) return &kRange;
  for (const TypeRule& row : kRules)
    if (row.base == base && row.keyword == keyword) return &row;
  return nullptr;
}

bool IsRestriction(Keyword keyword) {
  return keyword == Keyword::kRange ||
         std::any_of(std::begin(kRules), std::end(kRules),
                     [keyword](const TypeRule& row) { return row.keyword == keyword; });
}

std::string NameOf(const TypeChain& chain) {
  return std::string(NameOfBuiltIn(chain.base));
}

void JudgeHeld(Lint* lint, const Module* file, const TypeChain& chain, const xmlNode* statement) {
  const Keyword keyword = KeywordOf(statement);
  if (!IsRestriction(keyword)) return;
  const bool derived = chain.types.size() > 1;
  const TypeRule* rule = FindRule(chain.base, keyword);
  const std::string word = Quote(compiler::NameOf(statement));
  if (rule == nullptr) {
    Error(lint, cls::kType, statement,
          "type " + Quote(ArgumentOf(chain.types[0])) + " takes no " + word +
              (derived ? ", since it is a " + NameOf(chain) : ""),
          "remove it");
  } else if (derived && !rule->derived) {
    Error(lint, cls::kType, statement,
          "type " + Quote(ArgumentOf(chain.types[0])) + " has its " + word +
              " already and takes no other",
          "remove it, or derive from " + NameOf(chain));
  } else if (!file->version11 && derived &&
             (keyword == Keyword::kEnum || keyword == Keyword::kBit)) {
    Error(lint, cls::kType, statement, "YANG version 1 cannot restrict the " + word + "s of a type",
          "write \"yang-version 1.1;\" at the head of the file");
  } else if (!file->version11 && chain.base == BuiltIn::kLeafref &&
             keyword == Keyword::kRequireInstance) {
    Error(lint, cls::kType, statement, "a leafref of YANG version 1 takes no " + word,
          "write \"yang-version 1.1;\" at the head of the file");
  }
}

void JudgeRequired(Lint* lint, const TypeChain& chain) {
  if (chain.types.size() > 1) return;
  for (const TypeRule& row : kRules) {
    if (row.base != chain.base || !row.required) continue;
    if (FirstChild(chain.types[0], row.keyword) != nullptr) continue;
    Error(lint, cls::kType, chain.types[0],
          "type " + Quote(NameOf(chain)) + " has no " + Quote(RowOf(row.keyword).name), "add one");
  }
}

// ---- enums and bits

// The name and number statements of enumerations and of bits.
struct NumberedKind {
  Keyword item;
  Keyword number;
  int64_t lowest;
  int64_t highest;
};
constexpr NumberedKind kEnums = {Keyword::kEnum, Keyword::kValue, INT32_MIN, INT32_MAX};
constexpr NumberedKind kBits = {Keyword::kBit, Keyword::kPosition, 0, UINT32_MAX};

using Numbers = std::map<std::string_view, int64_t>;

bool WrittenNumber(const NumberedKind& kind, const xmlNode* item, int64_t* number) {
  const char* text = ArgumentOfChild(item, kind.number);
  return text != nullptr && ParseInteger(text, kind.lowest, kind.highest, number);
}

// The numbers of the items of one `type` statement: written, or one more than the
// highest before.
Numbers NumbersOf(const NumberedKind& kind, const xmlNode* type) {
  Numbers numbers;
  int64_t next = 0;
  bool first = true;
  for (const xmlNode* s = FirstChild(type, kind.item); s != nullptr;
       s = NextSibling(s, kind.item)) {
    int64_t number = next;
    WrittenNumber(kind, s, &number);
    if (ArgumentOf(s) != nullptr) numbers.emplace(ArgumentOf(s), number);
    next = first ? number + 1 : std::max(next, number + 1);
    first = false;
  }
  return numbers;
}

void JudgeOwnNumbers(Lint* lint, const NumberedKind& kind, const xmlNode* type) {
  std::map<int64_t, const xmlNode*> used;
  int64_t next = 0;
  for (const xmlNode* s = FirstChild(type, kind.item); s != nullptr;
       s = NextSibling(s, kind.item)) {
    int64_t number = next;
    const bool written = WrittenNumber(kind, s, &number);
    if (!written && FirstChild(s, kind.number) != nullptr) continue;  // its form is faulty
    if (!written && number > kind.highest) {
      Error(lint, cls::kType, s,
            Describe(s) + " would get a " + std::string(RowOf(kind.number).name) + " above " +
                std::to_string(kind.highest),
            "write its " + std::string(RowOf(kind.number).name));
      continue;
    }
    const auto entered = used.emplace(number, s);
    if (!entered.second)
      Error(lint, cls::kType, s,
            Describe(s) + " has the " + std::string(RowOf(kind.number).name) + " " +
                std::to_string(number) + " of " + Describe(entered.first->second),
            "give it another");
    next = used.size() == 1 ? number + 1 : std::max(next, number + 1);
  }
}

void JudgeRestricted(Lint* lint, const NumberedKind& kind, const xmlNode* type,
                     const Numbers& base) {
  for (const xmlNode* s = FirstChild(type, kind.item); s != nullptr;
       s = NextSibling(s, kind.item)) {
    if (ArgumentOf(s) == nullptr) continue;
    const auto found = base.find(ArgumentOf(s));
    int64_t number = 0;
    if (found == base.end()) {
      Error(lint, cls::kType, s, "the base type has no " + Describe(s),
            "a derived type can only leave out what its base has");
    } else if (WrittenNumber(kind, s, &number) && number != found->second) {
      Error(lint, cls::kType, s,
            Describe(s) + " has the " + std::string(RowOf(kind.number).name) + " " +
                std::to_string(found->second) + " in the base type",
            "write the same number, or none");
    }
  }
}

void JudgeItemNames(Lint* lint, const NumberedKind& kind, const xmlNode* type) {
  std::set<std::string_view> names;
  for (const xmlNode* s = FirstChild(type, kind.item); s != nullptr;
       s = NextSibling(s, kind.item)) {
    if (ArgumentOf(s) == nullptr || names.insert(ArgumentOf(s)).second) continue;
    Error(lint, cls::kName, s, "the type has " + Describe(s) + " already", "rename one");
  }
}

void JudgeItems(Lint* lint, const NumberedKind& kind, const TypeChain& chain) {
  const xmlNode* type = chain.types[0];
  if (FirstChild(type, kind.item) == nullptr) return;
  JudgeItemNames(lint, kind, type);
  for (size_t i = 1; i < chain.types.size(); ++i) {
    if (FirstChild(chain.types[i], kind.item) == nullptr) continue;
    const auto entered = lint->numbers.try_emplace(chain.types[i]);
    if (entered.second) entered.first->second = NumbersOf(kind, chain.types[i]);
    JudgeRestricted(lint, kind, type, entered.first->second);
    return;
  }
  JudgeOwnNumbers(lint, kind, type);
}

void JudgeUnion(Lint* lint, const Module* file, const TypeChain& chain) {
  if (file->version11 || chain.types.size() > 1) return;
  for (const xmlNode* s = FirstChild(chain.types[0], Keyword::kType); s != nullptr;
       s = NextSibling(s, Keyword::kType)) {
    const BuiltIn base = ChainOf(s).base;
    if (base != BuiltIn::kEmpty && base != BuiltIn::kLeafref) continue;
    Error(lint, cls::kType, s,
          "a union of YANG version 1 cannot have a member of type " + Quote(NameOfBuiltIn(base)),
          "write \"yang-version 1.1;\" at the head of the file");
  }
}

void JudgeType(Lint* lint, const Module* file, const xmlNode* type) {
  const char* name = ArgumentOf(type);
  if (name == nullptr || !IsIdentifierRef(name, true)) return;
  if (FindBuiltIn(name) == BuiltIn::kNone &&
      Resolve(lint, cls::kType, type, SymbolKind::kTypedef, name, true) == nullptr)
    return;
  const TypeChain chain = ChainOf(type);
  if (chain.base == BuiltIn::kNone) return;  // told where it is defined
  for (const xmlNode* s = FirstChild(type); s != nullptr; s = NextSibling(s))
    JudgeHeld(lint, file, chain, s);
  JudgeRequired(lint, chain);
  if (chain.base == BuiltIn::kEnumeration) JudgeItems(lint, kEnums, chain);
  if (chain.base == BuiltIn::kBits) JudgeItems(lint, kBits, chain);
  if (chain.base == BuiltIn::kUnion) JudgeUnion(lint, file, chain);
}

}  // namespace

void LintTypes(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kType, [&](const xmlNode* s) { JudgeType(lint, file, s); });
}

}  // namespace compiler
