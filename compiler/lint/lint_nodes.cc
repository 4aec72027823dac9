// SPDX-License-Identifier: BSD-3-Clause
// Nodes of the schema, with what groupings and refinements made of them: config and
// mandatory, defaults of choices, numbers of entries, and where operations may stand
// (RFC 7950, sections 7.5 to 7.16 and 7.21.1). Keys and unique have a file of their own.
#include <algorithm>
#include <set>

#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/reading/value_check.h"
#include "compiler/words/argument.h"
#include "compiler/words/grammar.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

bool IsTrue(const SchemaNode* node, Keyword keyword) {
  const char* value = PropertyOf(node, keyword);
  return value != nullptr && std::string_view(value) == "true";
}

bool IsOperation(Keyword keyword) {
  return keyword == Keyword::kRpc || keyword == Keyword::kAction ||
         keyword == Keyword::kNotification;
}

void JudgeConfig(Lint* lint, const SchemaNode* node) {
  const xmlNode* statement = PropertyStatement(node, Keyword::kConfig);
  if (statement == nullptr || !IsTrue(node, Keyword::kConfig) || node->parent == nullptr) return;
  if (ConfigOf(node->parent) != Config::kFalse) return;
  ErrorOn(lint, cls::kConfig, node, statement,
          Quote(node->name) + " is config true below " + Quote(node->parent->name) +
              ", which is config false",
          "leave the config statement out, or make the node above config true");
}

void JudgeMandatory(Lint* lint, const SchemaNode* node) {
  if (!IsTrue(node, Keyword::kMandatory)) return;
  const xmlNode* statement = PropertyStatement(node, Keyword::kDefault);
  if (statement == nullptr) return;
  ErrorOn(lint, cls::kDefault, node, statement,
          Quote(node->name) + " is mandatory and has a default",
          "a default is for a node that may be missing; remove one of the two");
}

void JudgeElements(Lint* lint, const SchemaNode* node) {
  const char* least = PropertyOf(node, Keyword::kMinElements);
  const char* most = PropertyOf(node, Keyword::kMaxElements);
  uint64_t low = 0;
  uint64_t high = 0;
  if (least == nullptr || !ParseUnsigned(least, UINT32_MAX, &low)) return;
  if (most != nullptr && ParseUnsigned(most, UINT32_MAX, &high) && high < low)
    ErrorOn(lint, cls::kList, node, PropertyStatement(node, Keyword::kMaxElements),
            Quote(node->name) + " has max-elements " + most + " below its min-elements " + least,
            "swap them, or correct one");
  const xmlNode* statement = PropertyStatement(node, Keyword::kDefault);
  if (low > 0 && statement != nullptr)
    ErrorOn(lint, cls::kDefault, node, statement,
            Quote(node->name) + " has a default and a min-elements above 0",
            "a default is for a leaf-list that may be empty; remove one of the two");
}

// A refine's default; the others are judged where they are written.
void JudgeRefinedDefault(Lint* lint, const SchemaNode* node) {
  if (!node->written || node->changes.empty()) return;
  const xmlNode* type = FirstChild(node->statement, Keyword::kType);
  if (type == nullptr) return;
  for (const xmlNode* change : node->changes)
    for (const xmlNode* s = FirstChild(change, Keyword::kDefault); s != nullptr;
         s = NextSibling(s, Keyword::kDefault))
      JudgeDefault(lint, s, type);
}

// Entries of a leaf-list of configuration are different values, however they are written.
void JudgeEntries(Lint* lint, const SchemaNode* node) {
  const xmlNode* first = PropertyStatement(node, Keyword::kDefault);
  const xmlNode* type = FirstChild(node->statement, Keyword::kType);
  if (first == nullptr || type == nullptr || ConfigOf(node) != Config::kTrue) return;
  std::set<std::string> values;
  for (const xmlNode* s = first; s != nullptr; s = NextSibling(s, Keyword::kDefault)) {
    if (ArgumentOf(s) == nullptr || values.insert(CanonicalOf(type, ArgumentOf(s))).second)
      continue;
    ErrorOn(
        lint, cls::kDefault, node, s,
        "leaf-list " + Quote(node->name) + " has the default " + Quote(ArgumentOf(s)) + " already",
        "remove one");
  }
}

// The node above in which an action or notification may not stand; NULL: there is none.
const SchemaNode* FindBarrier(const SchemaNode* node) {
  for (const SchemaNode* above = node->parent; above != nullptr; above = above->parent) {
    if (IsOperation(above->keyword)) return above;
    if (above->keyword == Keyword::kList && PropertyOf(above, Keyword::kKey) == nullptr)
      return above;
  }
  return nullptr;
}

// True when what the grammar or an augment's target says of the statement around it is
// enough.
bool IsMisplaced(const SchemaNode* node) {
  const Keyword around = KeywordOf(ParentOf(node->statement));
  if (FindSubStatement(around, node->keyword) == nullptr) return true;
  return around == Keyword::kAugment && node->parent->keyword != Keyword::kContainer &&
         node->parent->keyword != Keyword::kList;
}

void JudgeOperation(Lint* lint, const SchemaNode* node) {
  if (IsMisplaced(node)) return;
  const std::string what = std::string(RowOf(node->keyword).name) + " " + Quote(node->name);
  if (node->parent != nullptr && node->parent->keyword == Keyword::kModule) {
    if (node->keyword == Keyword::kAction)
      ErrorOn(lint, cls::kStatement, node, node->statement,
              what + " stands at the top of the module",
              "make it an rpc, or move it into a container or list");
    return;
  }
  if (node->parent != nullptr && node->parent->keyword == Keyword::kCase)
    ErrorOn(lint, cls::kStatement, node, node->statement, what + " stands in a case",
            "move it out of the choice");
  const SchemaNode* barrier = FindBarrier(node);
  if (barrier == nullptr) return;
  const bool list = barrier->keyword == Keyword::kList;
  ErrorOn(lint, cls::kStatement, node, node->statement,
          what + " stands in " + (list ? "a list without key, " : "the operation ") +
              Quote(barrier->name),
          list ? "give the list a key" : "actions and notifications stand in data nodes only");
}

void JudgeNode(Lint* lint, const SchemaNode* node) {
  JudgeConfig(lint, node);
  JudgeMandatory(lint, node);
  JudgeElements(lint, node);
  JudgeRefinedDefault(lint, node);
  const xmlNode* preset = PropertyStatement(node, Keyword::kDefault);
  if (node->keyword == Keyword::kChoice && preset != nullptr) JudgeDefaultCase(lint, node, preset);
  if (node->keyword == Keyword::kLeafList) JudgeEntries(lint, node);
  if (node->keyword == Keyword::kList) JudgeList(lint, node);
  if (node->keyword == Keyword::kAction || node->keyword == Keyword::kNotification)
    JudgeOperation(lint, node);
}

}  // namespace

// Asked again and again of wide containers, so it is kept. Depth is that of the tree.
Config ConfigOf(const SchemaNode* node) {
  if (node == nullptr) return Config::kTrue;
  if (node->config != 0) return static_cast<Config>(node->config - 1);
  const bool hasNone = IsOperation(node->keyword) || node->keyword == Keyword::kNone;
  Config config = hasNone ? Config::kNone : ConfigOf(node->parent);
  if (config != Config::kNone) {
    const char* value = PropertyOf(node, Keyword::kConfig);
    if (value != nullptr) {
      config = std::string_view(value) == "false" ? Config::kFalse : Config::kTrue;
    } else if (node->keyword == Keyword::kGrouping) {
      config = Config::kOpen;
    }
  }
  node->config = static_cast<uint8_t>(static_cast<uint8_t>(config) + 1);
  return config;
}

// Looks through containers without presence; goes no further into anything else.
static bool HoldsMandatory(const SchemaNode* container) {
  const SchemaNode* node = container->firstChild;
  while (node != nullptr) {
    const bool open = node->keyword == Keyword::kContainer;
    if (!open && IsMandatory(node)) return true;
    if (open && node->firstChild != nullptr &&
        PropertyStatement(node, Keyword::kPresence) == nullptr) {
      node = node->firstChild;
      continue;
    }
    while (node != container && node->next == nullptr) node = node->parent;
    node = node == container ? nullptr : node->next;
  }
  return false;
}

bool IsMandatory(const SchemaNode* node) {
  uint64_t least = 0;
  switch (node->keyword) {
    case Keyword::kLeaf:
    case Keyword::kChoice:
    case Keyword::kAnydata:
    case Keyword::kAnyxml:
      return IsTrue(node, Keyword::kMandatory);
    case Keyword::kList:
    case Keyword::kLeafList: {
      const char* text = PropertyOf(node, Keyword::kMinElements);
      return text != nullptr && ParseUnsigned(text, UINT32_MAX, &least) && least > 0;
    }
    case Keyword::kContainer:
      return PropertyStatement(node, Keyword::kPresence) == nullptr && HoldsMandatory(node);
    default:
      return false;
  }
}

// A node below `top` that data cannot be without, choices and cases looked through.
static const SchemaNode* FindMandatory(const SchemaNode* top) {
  for (const SchemaNode* node = top->firstChild; node != nullptr; node = node->next)
    if (IsMandatory(node)) return node;
  return nullptr;
}

void JudgeDefaultCase(Lint* lint, const SchemaNode* choice, const xmlNode* statement) {
  const char* name = ArgumentOf(statement);
  if (name == nullptr || !IsIdentifierRef(name, true)) return;
  const Reference wanted = SplitReference(name);
  const SchemaNode* found = nullptr;
  Suggestion near(wanted.name, &lint->namesToCompare);
  for (const SchemaNode* node = choice->firstChild; node != nullptr; node = node->next) {
    near.Consider(node->name);
    if (wanted.name == node->name) found = node;
  }
  if (found == nullptr) {
    if (MayMiss(*lint->view, choice)) return;
    ErrorOn(lint, cls::kDefault, choice, statement,
            "choice " + Quote(choice->name) + " has no case " + Quote(name),
            near.Advice("name one of its cases"));
    return;
  }
  const SchemaNode* mandatory = FindMandatory(found);
  if (mandatory == nullptr) return;
  ErrorOn(lint, cls::kDefault, choice, statement,
          "the default case " + Quote(name) + " holds the mandatory node " + Quote(mandatory->name),
          "make another case the default, or none");
}

void LintNodes(Lint* lint) {
  ForEachNode(*lint, [lint](const SchemaNode* node) { JudgeNode(lint, node); });
}

}  // namespace compiler
