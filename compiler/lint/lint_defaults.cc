// SPDX-License-Identifier: BSD-3-Clause
// Defaults against their types, where they are written and where a type with a default
// is restricted further (RFC 7950, sections 7.3.4, 7.6.4 and 7.7.4). What a refine or a
// deviation gives is judged with its node.
#include <algorithm>
#include <set>
#include <vector>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"
#include "compiler/reading/value_check.h"
#include "compiler/words/path.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

void JudgeWritten(Lint* lint, const xmlNode* holder, const xmlNode* type) {
  for (const xmlNode* s = FirstChild(holder, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    JudgeDefault(lint, s, type);
}

// The nearest typedef with a default along the chain.
const xmlNode* TypedefWithDefault(const TypeChain& chain) {
  for (const xmlNode* definition : chain.typedefs)
    if (FirstChild(definition, Keyword::kDefault) != nullptr) return definition;
  return nullptr;
}

// What must be there has no use for the default, and could not have one of its own.
bool IsDemanded(const xmlNode* holder) {
  const char* mandatory = ArgumentOfChild(holder, Keyword::kMandatory);
  const char* least = ArgumentOfChild(holder, Keyword::kMinElements);
  return (mandatory != nullptr && std::string_view(mandatory) == "true") ||
         (least != nullptr && std::string_view(least) != "0");
}

void JudgeInherited(Lint* lint, const xmlNode* holder, const xmlNode* type) {
  const TypeChain chain = ChainOf(type);
  if (chain.base == BuiltIn::kNone || FirstChild(type) == nullptr || IsDemanded(holder)) return;
  const xmlNode* definition = TypedefWithDefault(chain);
  if (definition == nullptr) return;
  const xmlNode* statement = FirstChild(definition, Keyword::kDefault);
  const char* value = ArgumentOf(statement);
  if (value == nullptr || !FaultOfValue(ChainOf(type).types[1], value, statement).empty()) return;
  const std::string fault = FaultOfValue(type, value, statement);
  if (fault.empty()) return;
  Error(lint, cls::kDefault, type,
        "the default " + Quote(value) + " of " + Describe(definition) + " " + fault + " in " +
            Describe(holder),
        "give it a default of its own");
}

}  // namespace

// Asked for each default of a type, so it is kept.
static bool HasConditional(Lint* lint, const xmlNode* first, Keyword keyword) {
  const auto entered = lint->conditionalItems.try_emplace(first, false);
  for (const xmlNode* s = first; entered.second && s != nullptr; s = NextSibling(s, keyword))
    if (FirstChild(s, Keyword::kIfFeature) != nullptr) entered.first->second = true;
  return entered.first->second;
}

// The enum, bit or identity of a value that a feature may take away; NULL: there is none.
static const xmlNode* FindConditional(Lint* lint, const TypeChain& chain, std::string_view value,
                                      const xmlNode* at) {
  if (chain.base == BuiltIn::kIdentityref) {
    const xmlNode* identity = FindSymbol(at, SymbolKind::kIdentity, value);
    const bool hasOne = identity != nullptr && FirstChild(identity, Keyword::kIfFeature) != nullptr;
    return hasOne ? identity : nullptr;
  }
  const bool isEnum = chain.base == BuiltIn::kEnumeration;
  if (!isEnum && chain.base != BuiltIn::kBits) return nullptr;
  const Keyword keyword = isEnum ? Keyword::kEnum : Keyword::kBit;
  const auto names = isEnum ? std::vector<std::string_view>{value} : SplitNames(value);
  for (const xmlNode* type : chain.types) {
    const xmlNode* first = FirstChild(type, keyword);
    if (first == nullptr || !HasConditional(lint, first, keyword)) continue;
    for (const xmlNode* s = first; s != nullptr; s = NextSibling(s, keyword)) {
      if (ArgumentOf(s) == nullptr || FirstChild(s, Keyword::kIfFeature) == nullptr) continue;
      if (std::find(names.begin(), names.end(), ArgumentOf(s)) != names.end()) return s;
    }
  }
  return nullptr;
}

// The name in a default that the type does not have; empty: that is not what is wrong.
static std::string_view UnknownItem(const TypeChain& chain, Keyword keyword,
                                    std::string_view value) {
  std::set<std::string_view> items;
  for (const xmlNode* s = InChain(chain, keyword); s != nullptr; s = NextSibling(s, keyword))
    if (ArgumentOf(s) != nullptr) items.insert(ArgumentOf(s));
  if (keyword == Keyword::kEnum) return items.count(value) == 0 ? value : std::string_view();
  for (const std::string_view word : SplitNames(value))
    if (items.count(word) == 0) return word;
  return {};
}

static std::string AdviceOnDefault(Lint* lint, const xmlNode* statement, const xmlNode* type,
                                   std::string_view value) {
  const TypeChain chain = ChainOf(type);
  std::string otherwise =
      "write a value of type " + Quote(ArgumentOf(type) == nullptr ? "" : ArgumentOf(type));
  if (chain.base == BuiltIn::kIdentityref) {
    const bool known = FindSymbol(statement, SymbolKind::kIdentity, value) != nullptr;
    return known ? otherwise
                 : NearestSymbol(lint, statement, SymbolKind::kIdentity, value, otherwise);
  }
  const bool isEnum = chain.base == BuiltIn::kEnumeration;
  if ((!isEnum && chain.base != BuiltIn::kBits) || lint->namesToCompare == 0) return otherwise;
  const Keyword keyword = isEnum ? Keyword::kEnum : Keyword::kBit;
  const std::string_view unknown = UnknownItem(chain, keyword, value);
  if (unknown.empty()) return otherwise;
  Suggestion near(unknown, &lint->namesToCompare);
  for (const xmlNode* s = InChain(chain, keyword); s != nullptr; s = NextSibling(s, keyword))
    if (ArgumentOf(s) != nullptr && !near.Consider(ArgumentOf(s))) break;
  return near.Advice(otherwise);
}

void JudgeDefault(Lint* lint, const xmlNode* statement, const xmlNode* type) {
  const char* value = ArgumentOf(statement);
  if (value == nullptr) return;
  const std::string fault = FaultOfValue(type, value, statement);
  if (fault.empty()) {
    const xmlNode* conditional = FindConditional(lint, ChainOf(type), value, statement);
    if (conditional != nullptr)
      Error(lint, cls::kDefault, statement,
            "the default " + Quote(value) + " depends on a feature, as " + Describe(conditional) +
                " does",
            "take a value that is always there (RFC 7950, section 7.6.4)");
    return;
  }
  Error(lint, cls::kDefault, statement, "the default " + Quote(value) + " " + fault,
        AdviceOnDefault(lint, statement, type, value));
}

void LintDefaults(Lint* lint, const Module* file) {
  for (const Keyword keyword : {Keyword::kTypedef, Keyword::kLeaf, Keyword::kLeafList}) {
    ForEachStatement(file, keyword, [&](const xmlNode* s) {
      const xmlNode* type = FirstChild(s, Keyword::kType);
      if (type == nullptr) return;
      if (FirstChild(s, Keyword::kDefault) != nullptr) {
        JudgeWritten(lint, s, type);
      } else {
        JudgeInherited(lint, s, type);
      }
    });
  }
}

}  // namespace compiler
