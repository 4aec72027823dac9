// SPDX-License-Identifier: BSD-3-Clause
// The library compares the texts of conditions after it has put module names for the
// prefixes in literals only. So the target's text is taken as it is written there, with
// the prefixes of this module in its literals.
#include "compiler/deviations.h"

#include <string>

#include "compiler/condition_words.h"
#include "compiler/data_lookup.h"
#include "compiler/prefixes.h"
#include "compiler/statement.h"
#include "compiler/target.h"
#include "compiler/typedefs.h"
#include "compiler/xpath_edit.h"

namespace compiler {

namespace {

Module* WrittenPrefixModule(const Output& other, std::string_view prefix) {
  for (const WrittenPrefix& one : other.prefixes) {
    if (one.prefix == prefix) return one.module;
  }
  return nullptr;
}

std::string InOwnLiterals(Output* out, const Output& other, const char* text) {
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(text, &xpath, &error)) return text;
  NameRules rules;
  rules.nodes = [](std::string_view prefix) { return std::string(prefix); };
  rules.identities = [&](std::string_view prefix) -> std::optional<std::string> {
    Module* module = WrittenPrefixModule(other, prefix);
    if (module == nullptr) return std::nullopt;
    return PrefixOf(out, module);
  };
  std::vector<UnknownPrefix> unknown;
  return RenamePrefixes(xpath, rules, &unknown);
}

void SettleMust(Output* out, xmlNode* must, const FoundNode& target) {
  const Module* local = target.output->module;  // in what is deleted as in the target
  const std::string wanted = CanonicalCondition(must, local);
  for (const xmlNode* s = FirstChild(target.node, Keyword::kMust); s != nullptr;
       s = NextSibling(s, Keyword::kMust)) {
    if (wanted.empty() || CanonicalCondition(s, local) != wanted) continue;
    SetArgument(out->all->session, must, InOwnLiterals(out, *target.output, ArgumentOf(s)));
    return;
  }
}

// The library compares a default's text unless the type is identityref itself; then it
// has the module's name on both sides.
void SettleDefault(Output* out, xmlNode* byDefault, const FoundNode& target) {
  const xmlNode* type = TypeOfNode(target);
  if (type == nullptr) return;
  const BottomType bottom = FindBottomType(type);
  const bool isIdentity = bottom.type != nullptr && !bottom.direct &&
                          std::string_view(ArgumentOf(bottom.type)) == "identityref";
  const xmlNode* own = FirstChild(target.node, Keyword::kDefault);
  if (isIdentity && own != nullptr && ArgumentOf(own) != nullptr)
    SetArgument(out->all->session, byDefault, ArgumentOf(own));
}

// The library makes them for augments alone, and leaves a deviation waiting for them.
void LoseWhatWaits(Output* out, const xmlNode* deviation, const FoundNode& target) {
  if (!IsImplied(target)) return;
  const std::string name = NameOf(target.node);
  Lose(out, deviation,
       "the library has no " + name + " that the operation does not write, " +
           "unless an augment leads there; the deviation has no effect on it");
}

void SettleDeviate(Output* out, const xmlNode* deviate, const FoundNode& target) {
  for (xmlNode* s = FirstChild(deviate); s != nullptr; s = NextSibling(s)) {
    if (Is(s, Keyword::kMust)) SettleMust(out, s, target);
    if (Is(s, Keyword::kDefault)) SettleDefault(out, s, target);
  }
}

}  // namespace

void SettleDeviations(Output* out) {
  for (const xmlNode* s = FirstChild(out->written.root, Keyword::kDeviation); s != nullptr;
       s = NextSibling(s, Keyword::kDeviation)) {
    const FoundNode target = FindTarget(out->all, TargetSteps(s));
    LoseWhatWaits(out, s, target);
    for (const xmlNode* deviate = FirstChild(s, Keyword::kDeviate); deviate != nullptr;
         deviate = NextSibling(deviate, Keyword::kDeviate)) {
      const char* kind = ArgumentOf(deviate);
      if (kind == nullptr || std::string_view(kind) != "delete") continue;
      if (target.node != nullptr) SettleDeviate(out, deviate, target);
    }
  }
}

}  // namespace compiler
