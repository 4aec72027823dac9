// SPDX-License-Identifier: BSD-3-Clause
// The library compares texts: of conditions after it has put module names for the
// prefixes in literals only, of defaults after it has done so where the type is
// identityref itself, of units as they are. So the target's text is taken as it is
// written there, with the prefixes of this module in its literals. What is not there
// would fail the deviation with all that it changes, so it is left out.
#include "compiler/spelling/deviations.h"

#include <string>
#include <string_view>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/condition_words.h"
#include "compiler/spelling/data_lookup.h"
#include "compiler/spelling/deviated_typedef.h"
#include "compiler/spelling/prefixes.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/spelling/value_type.h"
#include "compiler/words/xpath_edit.h"

namespace compiler {

namespace {

constexpr char kTargetClass[] = "target";

// The text with another word for each prefix in its literals; NULL: with that of a module.
std::string InLiterals(const Output& writtenIn, const char* text, Output* prefixesOf) {
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(text, &xpath, &error)) return text;
  NameRules rules;
  rules.nodes = [](std::string_view prefix) { return std::string(prefix); };
  rules.identities = [&](std::string_view prefix) -> std::optional<std::string> {
    Module* module = ModuleOfWritten(writtenIn, prefix);
    if (module == nullptr) return std::nullopt;
    return prefixesOf == nullptr ? module->name : PrefixOf(prefixesOf, module);
  };
  std::vector<UnknownPrefix> unknown;
  return RenamePrefixes(xpath, rules, &unknown);
}

bool IsSameText(const xmlNode* a, const xmlNode* b) {
  const char* one = ArgumentOf(a);
  const char* other = ArgumentOf(b);
  return one != nullptr && other != nullptr && std::string_view(one) == other;
}

// What means the same, else what would if the text had been copied from the target, else
// what has the same text.
bool IsWanted(Compilation* all, const xmlNode* must, const xmlNode* there, const FoundNode& target,
              unsigned round) {
  if (round == 2) return IsSameText(OriginOf(must), OriginOf(there));
  const Module* bare = round == 0 ? nullptr : target.output->module;
  const std::string wanted = CanonicalCondition(all, must, target, bare);
  return !wanted.empty() && wanted == CanonicalCondition(all, there, target, nullptr);
}

// Those of a target stay as they are while deletions are settled.
const MustIndex& MustsOf(Compilation* all, const FoundNode& target) {
  const auto entered = all->musts.try_emplace(target.node);
  MustIndex& index = entered.first->second;
  const xmlNode* s = entered.second ? FirstChild(target.node, Keyword::kMust) : nullptr;
  for (; s != nullptr; s = NextSibling(s, Keyword::kMust)) {
    const char* text = ArgumentOf(OriginOf(s));
    if (text != nullptr) index.byText.emplace(text, s);
    index.byWritten.emplace(InLiterals(*target.output, ArgumentOf(s), nullptr), s);
    index.byMeaning.emplace(CanonicalCondition(all, s, target, nullptr), s);
  }
  return index;
}

template <typename Names, typename Name>
const xmlNode* FindIn(const Names& names, const Name& name) {
  const auto found = names.find(name);
  return found == names.end() ? nullptr : found->second;
}

// What has the same text, as it should be, else what the library takes for the same, as a
// compiled deviation has it, else what means the same, also if the text had been copied from
// the target.
const xmlNode* FindMust(const Output& out, const xmlNode* must, const FoundNode& target) {
  Compilation* all = out.all;
  const MustIndex& index = MustsOf(all, target);
  const char* text = ArgumentOf(OriginOf(must));
  const xmlNode* same = text == nullptr ? nullptr : FindIn(index.byText, std::string_view(text));
  if (same != nullptr) return same;
  same = FindIn(index.byWritten, InLiterals(out, ArgumentOf(must), nullptr));
  if (same != nullptr) return same;
  for (const Module* bare : {static_cast<Module*>(nullptr), target.output->module}) {
    const std::string wanted = CanonicalCondition(all, must, target, bare);
    const xmlNode* found = wanted.empty() ? nullptr : FindIn(index.byMeaning, wanted);
    if (found != nullptr) return found;
  }
  return nullptr;
}

// True for a must of the target that was left out since it fails every request.
bool IsDropped(Compilation* all, const xmlNode* must, const FoundNode& target) {
  for (const DroppedCondition& one : target.output->dropped) {
    if (one.parent != target.node || !Is(one.statement.get(), Keyword::kMust)) continue;
    for (unsigned round = 0; round < 3; ++round) {
      if (IsWanted(all, must, one.statement.get(), target, round)) return true;
    }
  }
  return false;
}

void LeaveOut(Output* out, xmlNode* property, const FoundNode& target) {
  const char* name = ArgumentOf(target.node);
  AddFinding(&out->report, Severity::kError, kTargetClass, property,
             std::string("the ") + NameOf(target.node) + " \"" +
                 (name == nullptr ? NameOf(target.node) : name) + "\" has no such " +
                 NameOf(property) + " to delete; it is left out");
  RemoveStatement(property);
}

void SettleMust(Output* out, xmlNode* must, const FoundNode& target) {
  if (const xmlNode* there = FindMust(*out, must, target)) {
    SetArgument(out->all->session, must, InLiterals(*target.output, ArgumentOf(there), out));
  } else if (IsDropped(out->all, must, target)) {
    RemoveStatement(must);
  } else {
    LeaveOut(out, must, target);
  }
}

// The module of the identity that a default names, in the words that it was written in.
Module* ModuleOfIdentity(const xmlNode* byDefault) {
  const xmlNode* origin = OriginOf(byDefault);
  const char* text = ArgumentOf(origin);
  if (text == nullptr) return nullptr;
  return ModuleOfPrefix(StatementOf(origin)->words, SplitReference(text).prefix);
}

bool IsSameIdentity(const xmlNode* a, const xmlNode* b) {
  const Module* one = ModuleOfIdentity(a);
  const Module* two = ModuleOfIdentity(b);
  return one != nullptr && two != nullptr && one->name == two->name &&
         SplitReference(ArgumentOf(a)).name == SplitReference(ArgumentOf(b)).name;
}

const xmlNode* FindDefault(const xmlNode* byDefault, const FoundNode& target, bool isIdentity) {
  for (const bool asWritten : {false, true}) {
    for (const xmlNode* s = FirstChild(target.node, Keyword::kDefault); s != nullptr;
         s = NextSibling(s, Keyword::kDefault)) {
      if (ArgumentOf(s) == nullptr) continue;
      const bool byText = asWritten || !isIdentity;
      if (byText ? IsSameText(OriginOf(byDefault), OriginOf(s)) : IsSameIdentity(byDefault, s))
        return s;
    }
  }
  return nullptr;
}

void SettleDefault(Output* out, xmlNode* byDefault, const FoundNode& target) {
  if (ArgumentOf(byDefault) == nullptr) return;
  const xmlNode* type = TypeOfNode(target);
  const BottomType bottom = type == nullptr ? BottomType() : FindBottomType(type);
  const bool isIdentity = NamesIdentity(out->all, TypeOfLeaf(target), OriginOf(byDefault));
  const xmlNode* there = FindDefault(byDefault, target, isIdentity);
  if (there == nullptr) {
    LeaveOut(out, byDefault, target);
    return;
  }
  std::string text = ArgumentOf(there);
  // Behind a typedef and in a union, the library has the text of the target as it is.
  const bool isItself = bottom.direct && bottom.type != nullptr &&
                        std::string_view(ArgumentOf(bottom.type)) == "identityref";
  if (isItself) {
    Module* module = ModuleOfIdentity(there);
    if (module != nullptr)
      text = PrefixOf(out, module) + ":" + std::string(SplitReference(text).name);
  }
  SetArgument(out->all->session, byDefault, text);
}

void SettleUnits(Output* out, xmlNode* units, const FoundNode& target) {
  const xmlNode* there = FirstChild(target.node, Keyword::kUnits);
  if (there == nullptr || !IsSameText(units, there)) LeaveOut(out, units, target);
}

// The library makes them for augments alone, and leaves a deviation waiting for them.
void LoseWhatWaits(Output* out, const xmlNode* deviation, const FoundNode& target) {
  if (!IsImplied(target)) return;
  const std::string name = NameOf(target.node);
  Lose(out, deviation,
       "the library has no " + name + " that the operation does not write, " +
           "unless an augment leads there; the deviation has no effect on it");
}

void SettleDeletion(Output* out, const xmlNode* deviate, const FoundNode& target) {
  for (xmlNode* s = FirstChild(deviate); s != nullptr;) {
    xmlNode* next = NextSibling(s);
    const Keyword keyword = KeywordOf(s);  // what is not there is gone afterwards
    if (keyword == Keyword::kMust) SettleMust(out, s, target);
    if (keyword == Keyword::kDefault) SettleDefault(out, s, target);
    if (keyword == Keyword::kUnits) SettleUnits(out, s, target);
    s = next;
  }
}

// The library would refuse the whole deviation. True: nothing is left of the deviate.
bool SettleAddition(Output* out, xmlNode* deviate, const FoundNode& target) {
  bool changed = false;
  if (!Is(target.node, Keyword::kLeafList)) return false;
  for (xmlNode* s = FirstChild(deviate, Keyword::kDefault); s != nullptr;) {
    xmlNode* next = NextSibling(s, Keyword::kDefault);
    const bool isIdentity = NamesIdentity(out->all, TypeOfLeaf(target), OriginOf(s));
    if (ArgumentOf(s) != nullptr && FindDefault(s, target, isIdentity) != nullptr) {
      Lose(out, s,
           std::string("the leaf-list \"") + ArgumentOf(target.node) + "\" has the default \"" +
               ArgumentOf(s) + "\" already; it is left out");
      RemoveStatement(s);
      changed = true;
    }
    s = next;
  }
  return changed && FirstChild(deviate) == nullptr;
}

}  // namespace

void SettleDeviations(Output* out) {
  for (xmlNode* s = FirstChild(out->written.root, Keyword::kDeviation); s != nullptr;) {
    xmlNode* next = NextSibling(s, Keyword::kDeviation);
    const FoundNode target = FindTarget(out->all, TargetSteps(s));
    LoseWhatWaits(out, s, target);
    SettleTypedefProperties(out, s, target);
    for (xmlNode* deviate = FirstChild(s, Keyword::kDeviate);
         target.node != nullptr && deviate != nullptr;) {
      xmlNode* after = NextSibling(deviate, Keyword::kDeviate);
      const char* kind = ArgumentOf(deviate);
      if (kind != nullptr && std::string_view(kind) == "delete")
        SettleDeletion(out, deviate, target);
      if (kind != nullptr && std::string_view(kind) == "add" &&
          SettleAddition(out, deviate, target))
        RemoveStatement(deviate);
      deviate = after;
    }
    if (FirstChild(s, Keyword::kDeviate) == nullptr) RemoveStatement(s);
    s = next;
  }
}

}  // namespace compiler
