// SPDX-License-Identifier: BSD-3-Clause
// Groupings: that a `uses` names one, and where refine and augment inside a `uses` lead
// (RFC 7950, sections 7.12 and 7.13).
#include <algorithm>

#include "compiler/lint/lint_pass.h"
#include "compiler/words/argument.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

// ---- what refine may change

struct RefineRow {
  Keyword property;
  std::initializer_list<Keyword> nodes;
};

// config and the texts go for every node.
constexpr RefineRow kRefines[] = {
    {Keyword::kDefault, {Keyword::kLeaf, Keyword::kLeafList, Keyword::kChoice}},
    {Keyword::kMandatory, {Keyword::kLeaf, Keyword::kChoice, Keyword::kAnydata, Keyword::kAnyxml}},
    {Keyword::kPresence, {Keyword::kContainer}},
    {Keyword::kMinElements, {Keyword::kList, Keyword::kLeafList}},
    {Keyword::kMaxElements, {Keyword::kList, Keyword::kLeafList}},
    {Keyword::kMust,
     {Keyword::kLeaf, Keyword::kLeafList, Keyword::kList, Keyword::kContainer, Keyword::kAnydata,
      Keyword::kAnyxml}},
    {Keyword::kIfFeature,
     {Keyword::kLeaf, Keyword::kLeafList, Keyword::kList, Keyword::kContainer, Keyword::kAnydata,
      Keyword::kAnyxml, Keyword::kChoice, Keyword::kCase}},
    {Keyword::kConfig,
     {Keyword::kLeaf, Keyword::kLeafList, Keyword::kList, Keyword::kContainer, Keyword::kAnydata,
      Keyword::kAnyxml, Keyword::kChoice}},
};

// Each default but the first of what can have one only.
void JudgeDefaults(Lint* lint, const TargetView& refine) {
  const SchemaNode* node = refine.target;
  const xmlNode* first = FirstChild(refine.statement, Keyword::kDefault);
  if (!StatementOf(refine.statement)->words->version11) return;  // told by the grammar
  if (first == nullptr || (node->keyword != Keyword::kLeaf && node->keyword != Keyword::kChoice))
    return;
  for (const xmlNode* s = NextSibling(first, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    Error(lint, cls::kGrouping, s,
          "refine gives a second \"default\" to the " + std::string(RowOf(node->keyword).name) +
              " " + Quote(node->name),
          "remove one; only a leaf-list has several");
}

void JudgeRefine(Lint* lint, const TargetView& refine) {
  const SchemaNode* node = refine.target;
  JudgeDefaults(lint, refine);
  for (const RefineRow& row : kRefines) {
    const xmlNode* property = FirstChild(refine.statement, row.property);
    if (property == nullptr) continue;
    if (std::find(row.nodes.begin(), row.nodes.end(), node->keyword) != row.nodes.end()) continue;
    Error(lint, cls::kGrouping, property,
          std::string("refine gives ") + Quote(NameOf(property)) + " to the " +
              std::string(RowOf(node->keyword).name) + " " + Quote(node->name) +
              ", which cannot have it",
          "refine another node, or leave it out");
  }
}

void JudgeTarget(Lint* lint, const TargetView& target) {
  if (target.unknown) {
    JudgePathPrefixes(lint, target.statement);
    return;
  }
  if (target.target != nullptr) {
    if (Is(target.statement, Keyword::kRefine)) JudgeRefine(lint, target);
    return;
  }
  Suggestion near(SplitReference(target.failed).name, &lint->namesToCompare);
  for (const SchemaNode* child = target.reached->firstChild;
       child != nullptr && near.Consider(child->name);)
    child = child->next;
  const bool refine = Is(target.statement, Keyword::kRefine);
  (refine ? Error : Fatal)(lint, cls::kGrouping, target.statement,
                           Describe(target.statement) + " leads nowhere: there is no " +
                               Quote(target.failed) + " in what the grouping brings",
                           near.Advice("name a node of the grouping, choices and cases included"));
}

}  // namespace

void LintGroupings(Lint* lint, const Module* file) {
  ForEachStatement(file, Keyword::kUses, [&](const xmlNode* s) {
    const char* name = ArgumentOf(s);
    if (name != nullptr && IsIdentifierRef(name, true))
      Resolve(lint, cls::kGrouping, s, SymbolKind::kGrouping, name, true);
  });
  for (const TargetView* target : lint->targets->inner)
    if (StatementOf(target->statement)->words == file) JudgeTarget(lint, *target);
}

}  // namespace compiler
