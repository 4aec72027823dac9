// SPDX-License-Identifier: BSD-3-Clause
// The library compares the texts of conditions after it has put module names for the
// prefixes in literals only. So the target's text is taken as it is written there, with
// the prefixes of this module in its literals.
#include "compiler/deviations.h"

#include <string>

#include "compiler/conditions.h"
#include "compiler/prefixes.h"
#include "compiler/statement.h"
#include "compiler/target.h"
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

}  // namespace

bool RewriteDeletedMust(Output* out, xmlNode* must) {
  const xmlNode* deviate = ParentOf(must);
  if (!Is(must, Keyword::kMust) || !Is(deviate, Keyword::kDeviate)) return false;
  const char* kind = ArgumentOf(deviate);
  if (kind == nullptr || std::string_view(kind) != "delete") return false;
  const FoundNode target = FindTarget(out->all, TargetSteps(ParentOf(deviate)));
  if (target.node == nullptr || FinishedOutput(out->all, target.output->module) == nullptr)
    return false;
  const std::string wanted = CanonicalCondition(must);
  for (const xmlNode* s = FirstChild(target.node, Keyword::kMust); s != nullptr;
       s = NextSibling(s, Keyword::kMust)) {
    if (wanted.empty() || CanonicalCondition(s) != wanted) continue;
    SetArgument(out->all->session, must, InOwnLiterals(out, *target.output, ArgumentOf(s)));
    return true;
  }
  return false;
}

}  // namespace compiler
