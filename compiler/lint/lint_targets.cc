// SPDX-License-Identifier: BSD-3-Clause
// Augments: where they lead and what they may bring there (RFC 7950, section 7.17).
#include <algorithm>

#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/words/argument.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

bool MayBeAugmented(Keyword keyword) {
  constexpr Keyword kKinds[] = {Keyword::kContainer,   Keyword::kList,  Keyword::kChoice,
                                Keyword::kCase,        Keyword::kInput, Keyword::kOutput,
                                Keyword::kNotification};
  return std::find(std::begin(kKinds), std::end(kKinds), keyword) != std::end(kKinds);
}

bool FitsInto(Keyword target, Keyword child) {
  switch (child) {
    case Keyword::kCase:
      return target == Keyword::kChoice;
    case Keyword::kUses:
      return target != Keyword::kChoice;
    case Keyword::kAction:
    case Keyword::kNotification:
      return target == Keyword::kContainer || target == Keyword::kList;
    default:
      return true;
  }
}

void JudgeContents(Lint* lint, const TargetView& augment) {
  const SchemaNode* target = augment.target;
  const std::string kind = std::string(RowOf(target->keyword).name) + " " + Quote(target->name);
  if (!MayBeAugmented(target->keyword)) {
    Error(lint, cls::kTarget, augment.statement, "the " + kind + " cannot be augmented",
          "augment a container, list, choice, case, input, output or notification");
    return;
  }
  for (const xmlNode* s = FirstChild(augment.statement); s != nullptr; s = NextSibling(s)) {
    if (FitsInto(target->keyword, KeywordOf(s))) continue;
    Error(lint, cls::kTarget, s, "an augment cannot bring " + Describe(s) + " into the " + kind,
          target->keyword == Keyword::kChoice ? "write cases, or nodes that stand for one"
                                              : "augment another node");
  }
}

// What stands in an augment, and the groupings that it uses without a condition.
std::vector<const xmlNode*> UnconditionalHolders(const xmlNode* augment) {
  std::vector<const xmlNode*> holders = {augment};
  for (size_t i = 0; i < holders.size(); ++i)
    for (const xmlNode* s = FirstChild(holders[i], Keyword::kUses); s != nullptr;
         s = NextSibling(s, Keyword::kUses)) {
      const char* name = FirstChild(s, Keyword::kWhen) == nullptr ? ArgumentOf(s) : nullptr;
      const xmlNode* grouping =
          name == nullptr ? nullptr : FindSymbol(s, SymbolKind::kGrouping, name);
      if (grouping != nullptr &&
          std::find(holders.begin(), holders.end(), grouping) == holders.end())
        holders.push_back(grouping);
    }
  return holders;
}

// Each node that the path names is one that the augment refers to.
void JudgeStatusOfSteps(Lint* lint, const TargetView& augment) {
  for (const SchemaNode* node = augment.target; node != nullptr && node != augment.start;
       node = node->parent)
    JudgeStatusOfNodes(lint, augment.statement, augment.start, {&node, 1});
}

// A node of a foreign configuration must not become mandatory for those who do not know
// the augmenting module.
void JudgeMandatoryNodes(Lint* lint, const TargetView& augment) {
  const Module* own = MainModuleOf(StatementOf(augment.statement)->words);
  if (augment.target->space == own || ConfigOf(augment.target) != Config::kTrue) return;
  const bool version11 = StatementOf(augment.statement)->words->version11;
  if (version11 && FirstChild(augment.statement, Keyword::kWhen) != nullptr) return;
  const SchemaNode* end = augment.last == nullptr ? nullptr : augment.last->next;
  const std::vector<const xmlNode*> holders = UnconditionalHolders(augment.statement);
  for (const SchemaNode* node = augment.first; node != end; node = node->next) {
    const bool ours =
        node->space == own && FirstChild(node->statement, Keyword::kWhen) == nullptr &&
        std::find(holders.begin(), holders.end(), ParentOf(node->statement)) != holders.end();
    if (!ours || ConfigOf(node) != Config::kTrue || !IsMandatory(node)) continue;
    Error(
        lint, cls::kTarget, node->statement,
        "the augment makes " + Quote(node->name) + " mandatory in module " +
            Quote(augment.target->space->name),
        version11 ? "make it optional, or give the augment a when statement" : "make it optional");
  }
}

}  // namespace

void JudgePathPrefixes(Lint* lint, const xmlNode* statement) {
  const char* path = ArgumentOf(statement);
  for (std::string_view rest = path == nullptr ? "" : path; !rest.empty();) {
    const std::string_view step = rest.substr(0, rest.find('/'));
    rest.remove_prefix(std::min(step.size() + 1, rest.size()));
    if (IsIdentifierRef(step, true))
      ResolvePrefix(lint, cls::kLinkage, statement, SplitReference(step).prefix);
  }
}

void ReportLost(Lint* lint, const char* group, const TargetView& target) {
  const Reference failed = SplitReference(target.failed);
  Module* meant = ModuleOfPrefix(StatementOf(target.statement)->words, failed.prefix);
  Suggestion near(failed.name, &lint->namesToCompare);
  const SchemaNode* elsewhere = nullptr;  // the name exists, in another module
  for (const SchemaNode* node = target.reached->firstChild; node != nullptr; node = node->next) {
    if (!near.Consider(node->name)) break;
    if (failed.name == node->name && node->space != meant) elsewhere = node;
  }
  std::string advice = near.Advice("name each node on the way, choices and cases included");
  if (elsewhere != nullptr)
    advice = "module " + Quote(elsewhere->space->name) + " has a node of that name there";
  const bool own = meant == MainModuleOf(StatementOf(target.statement)->words) &&
                   Is(target.statement, Keyword::kAugment);
  (own ? Fatal : Error)(lint, group, target.statement,
                        Describe(target.statement) + " leads nowhere: " +
                            (target.reached->parent == nullptr ? "the module " : "") +
                            Quote(target.reached->name) + " has no " + Quote(target.failed),
                        advice);
}

void LintTargets(Lint* lint) {
  for (const TargetView* one : lint->targets->augments) {
    const TargetView& augment = *one;
    if (augment.unknown) {
      JudgePathPrefixes(lint, augment.statement);
    } else if (augment.target == nullptr) {
      ReportLost(lint, cls::kTarget, augment);
    } else {
      JudgeContents(lint, augment);
      JudgeStatusOfSteps(lint, augment);
      JudgeMandatoryNodes(lint, augment);
    }
  }
  for (const TargetView* inner : lint->targets->inner) {
    if (inner->target == nullptr || !Is(inner->statement, Keyword::kAugment)) continue;
    JudgeContents(lint, *inner);
    JudgeStatusOfSteps(lint, *inner);
  }
  for (const Module* file : lint->files) LintDeviations(lint, file);
  LintDeviated(lint);
}

}  // namespace compiler
