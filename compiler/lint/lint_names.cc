// SPDX-License-Identifier: BSD-3-Clause
// Names that are given twice (RFC 7950, section 6.2.1). Definitions are compared in
// the module with its submodules, and those further in with what stands around them;
// nodes of the schema with their siblings, whatever brought them there.
#include <map>
#include <set>
#include <string_view>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"

namespace compiler {

namespace {

using Named = std::map<std::string_view, const xmlNode*>;

void Enter(Lint* lint, Named* names, const xmlNode* statement) {
  const char* name = ArgumentOf(statement);
  if (name == nullptr) return;
  const auto entered = names->emplace(name, statement);
  if (entered.second) return;
  Error(lint, cls::kName, statement,
        Describe(statement) + " is defined already, at " + PlaceOf(entered.first->second),
        "rename one");
}

void EnterKind(Lint* lint, Keyword keyword) {
  Named names;
  for (const Module* file : lint->files)
    for (const xmlNode* s = FirstChild(file->root, keyword); s != nullptr;
         s = NextSibling(s, keyword))
      Enter(lint, &names, s);
}

// The definition of that name around `statement`, the module's level included.
const xmlNode* FindAround(const xmlNode* statement, SymbolKind kind, const char* name) {
  const xmlNode* holder = ParentOf(ParentOf(statement));
  return holder == nullptr ? nullptr : FindSymbol(holder, kind, name);
}

void JudgeInner(Lint* lint, const xmlNode* statement) {
  const char* name = ArgumentOf(statement);
  if (name == nullptr || IsGlobal(statement)) return;
  const SymbolKind kind =
      Is(statement, Keyword::kTypedef) ? SymbolKind::kTypedef : SymbolKind::kGrouping;
  const xmlNode* other = FindAround(statement, kind, name);
  for (const xmlNode* s = FirstChild(ParentOf(statement), KeywordOf(statement));
       s != nullptr && s != statement; s = NextSibling(s, KeywordOf(statement))) {
    const char* earlier = ArgumentOf(s);
    if (earlier != nullptr && std::string_view(earlier) == name) other = s;
  }
  if (other == nullptr || other == statement) return;
  Error(lint, cls::kName, statement,
        Describe(statement) + " hides that of the same name at " + PlaceOf(other), "rename one");
}

void JudgeTypedefName(Lint* lint, const xmlNode* statement) {
  const char* name = ArgumentOf(statement);
  if (name == nullptr || FindBuiltIn(name) == BuiltIn::kNone) return;
  Error(lint, cls::kName, statement, Quote(name) + " is the name of a built-in type",
        "take another name");
}

void JudgeDefinitions(Lint* lint, const Module* file) {
  for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
       s = NextInTree(file->root, s)) {
    if (Is(s, Keyword::kTypedef)) JudgeTypedefName(lint, s);
    if (Is(s, Keyword::kTypedef) || Is(s, Keyword::kGrouping)) JudgeInner(lint, s);
  }
}

// ---- nodes of the schema

struct NodeName {
  std::string_view space;
  std::string_view name;
  bool operator<(const NodeName& other) const {
    return name != other.name ? name < other.name : space < other.space;
  }
};
using Siblings = std::map<NodeName, const SchemaNode*>;

void ReportTwice(Lint* lint, const SchemaNode* node, const SchemaNode* first) {
  const bool later =
      StatementOf(node->statement)->place.file == StatementOf(first->statement)->place.file &&
      StatementOf(node->statement)->place.line < StatementOf(first->statement)->place.line &&
      node->usedAt == nullptr;
  const SchemaNode* at = later ? first : node;
  const SchemaNode* other = later ? node : first;
  const char* kind = at->written ? NameOf(at->statement) : "case";
  ErrorOn(lint, cls::kName, at, at->statement,
          std::string(kind) + " " + Quote(at->name) + " has a sibling of the same name at " +
              PlaceOf(other->statement),
          "rename one");
}

// Children of a choice are its cases, whose names are compared among themselves; what
// stands in them is compared with all that stands beside the choice.
Twins FindTwins(const SchemaNode* parent) {
  Twins twins;
  Siblings names;
  const bool cases = parent->keyword == Keyword::kChoice;
  std::vector<const SchemaNode*> open;
  for (const SchemaNode* node = parent->firstChild; node != nullptr; node = node->next)
    open.push_back(node);
  for (size_t i = 0; i < open.size(); ++i) {
    const SchemaNode* node = open[i];
    const bool looksThrough = !cases && node->keyword == Keyword::kCase;
    if (!looksThrough) {
      const auto entered = names.emplace(NodeName{node->space->name, node->name}, node);
      if (!entered.second) twins.emplace_back(node, entered.first->second);
    }
    if (cases || (node->keyword != Keyword::kChoice && node->keyword != Keyword::kCase)) continue;
    for (const SchemaNode* child = node->firstChild; child != nullptr; child = child->next)
      open.push_back(child);
  }
  return twins;
}

// Many modules may hang nodes into one parent, which is looked through once for all.
void JudgeSiblings(Lint* lint, const SchemaNode* parent) {
  const auto entered = lint->view->twins.try_emplace(parent);
  if (entered.second) entered.first->second = FindTwins(parent);
  for (const auto& [node, first] : entered.first->second)
    if (IsOfModule(*lint, node)) ReportTwice(lint, node, first);
}

// What has children that must differ in their names; a case is looked at with what holds
// its choice.
void JudgeParent(Lint* lint, const SchemaNode* node) {
  if (node->keyword != Keyword::kCase && node->firstChild != nullptr) JudgeSiblings(lint, node);
}

// A node of another module into which this one hangs some.
void JudgeForeignParent(Lint* lint, const SchemaNode* node) {
  JudgeParent(lint, node);
  const bool isInside = node->keyword == Keyword::kChoice || node->keyword == Keyword::kCase;
  if (isInside && node->parent != nullptr) JudgeForeignParent(lint, node->parent);
}

}  // namespace

void LintNames(Lint* lint) {
  for (const Keyword keyword : {Keyword::kTypedef, Keyword::kGrouping, Keyword::kIdentity,
                                Keyword::kFeature, Keyword::kExtension})
    EnterKind(lint, keyword);
  for (const Module* file : lint->files) JudgeDefinitions(lint, file);
  ForEachNode(*lint, [lint](const SchemaNode* node) { JudgeParent(lint, node); });
  for (const TargetView* augment : lint->targets->augments)
    if (augment->target != nullptr && !IsOfModule(*lint, augment->target))
      JudgeForeignParent(lint, augment->target);
}

}  // namespace compiler
