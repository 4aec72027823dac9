// SPDX-License-Identifier: BSD-3-Clause
// Keys and unique of lists (RFC 7950, sections 7.8.2 and 7.8.3).
#include <algorithm>
#include <set>

#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"
#include "compiler/words/argument.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

// The module that a name in `key` or `unique` means: the words' own module stands for
// that of the node, which may have come by a grouping.
const Module* SpaceOf(Lint* lint, const SchemaNode* node, const xmlNode* at,
                      std::string_view prefix) {
  Module* meant = ResolvePrefix(lint, cls::kLinkage, at, prefix);
  return meant == MainModuleOf(StatementOf(at)->words) ? node->space : meant;
}

std::string NearestChild(Lint* lint, const SchemaNode* parent, std::string_view name,
                         const std::string& otherwise) {
  Suggestion near(name, &lint->namesToCompare);
  for (const SchemaNode* child = parent->firstChild;
       child != nullptr && near.Consider(child->name);)
    child = child->next;
  return near.Advice(otherwise);
}

// Of its own, or by a refine.
bool HasStatement(const SchemaNode* node, Keyword keyword) {
  return FirstChild(node->statement, keyword) != nullptr ||
         std::any_of(node->changes.begin(), node->changes.end(), [keyword](const xmlNode* change) {
           return FirstChild(change, keyword) != nullptr;
         });
}

void JudgeKeyLeaf(Lint* lint, const SchemaNode* list, const xmlNode* at, const SchemaNode* leaf) {
  const std::string what = "the key " + Quote(leaf->name) + " of list " + Quote(list->name);
  if (leaf->keyword != Keyword::kLeaf) {
    ErrorOn(lint, cls::kList, list, at, what + " is no leaf", "name a leaf of the list");
    return;
  }
  const Config own = ConfigOf(leaf);
  if (own != Config::kNone && own != ConfigOf(list))
    ErrorOn(lint, cls::kList, list, at, what + " differs from it in config",
            "give the key no config statement of its own");
  const bool version11 = StatementOf(leaf->statement)->words->version11;
  const xmlNode* type = FirstChild(leaf->statement, Keyword::kType);
  if (!version11 && type != nullptr && ChainOf(type).base == BuiltIn::kEmpty)
    ErrorOn(lint, cls::kList, list, at, what + " has the type empty, which YANG version 1 forbids",
            "take another type");
  for (const Keyword keyword : {Keyword::kWhen, Keyword::kIfFeature})
    if (version11 && HasStatement(leaf, keyword))
      ErrorOn(lint, cls::kList, list, at,
              what + " has a " + Quote(RowOf(keyword).name) + " statement, so it may be missing",
              "remove it, or put it on the list");
}

void JudgeKey(Lint* lint, const SchemaNode* list, const xmlNode* at) {
  std::set<std::string_view> seen;
  for (const std::string_view word : WordsOf(ArgumentOf(at))) {
    if (!IsIdentifierRef(word, true)) continue;
    if (!seen.insert(word).second) {
      ErrorOn(lint, cls::kList, list, at,
              "list " + Quote(list->name) + " names the key " + Quote(word) + " twice",
              "name each key once");
      continue;
    }
    const Reference name = SplitReference(word);
    const Module* space = SpaceOf(lint, list, at, name.prefix);
    if (space == nullptr) continue;
    const SchemaNode* leaf = FindChild(list, space, name.name);
    if (leaf != nullptr) {
      JudgeKeyLeaf(lint, list, at, leaf);
      JudgeStatusOfNodes(lint, at, list, {&leaf, 1});
    } else if (!MayMiss(*lint->view, list)) {
      ErrorOn(lint, cls::kList, list, at,
              "list " + Quote(list->name) + " has no leaf " + Quote(word) + " for its key",
              NearestChild(lint, list, name.name, "define it directly in the list"));
    }
  }
}

// The leaf that a path of `unique` leads to; NULL, with a finding unless it cannot be told.
const SchemaNode* FollowUnique(Lint* lint, const SchemaNode* list, const xmlNode* at,
                               std::string_view path) {
  const SchemaNode* node = list;
  for (std::string_view rest = path; !rest.empty();) {
    const std::string_view step = rest.substr(0, rest.find('/'));
    rest.remove_prefix(std::min(step.size() + 1, rest.size()));
    const Reference name = SplitReference(step);
    const Module* space = SpaceOf(lint, list, at, name.prefix);
    const SchemaNode* child = space == nullptr ? nullptr : FindChild(node, space, name.name);
    if (child == nullptr) {
      if (space != nullptr && !MayMiss(*lint->view, node))
        ErrorOn(lint, cls::kList, list, at,
                "the path " + Quote(path) + " in unique of list " + Quote(list->name) +
                    " leads nowhere: " + Quote(node->name) + " has no " + Quote(step),
                NearestChild(lint, node, name.name, "name a leaf below the list"));
      return nullptr;
    }
    node = child;
  }
  if (node->keyword == Keyword::kLeaf) return node;
  ErrorOn(lint, cls::kList, list, at,
          Quote(path) + " in unique of list " + Quote(list->name) + " is no leaf",
          "name a leaf below the list");
  return nullptr;
}

}  // namespace

void JudgeUnique(Lint* lint, const SchemaNode* list, const xmlNode* at) {
  std::set<const SchemaNode*> leafs;
  const SchemaNode* first = nullptr;
  for (const std::string_view word : WordsOf(ArgumentOf(at))) {
    if (!IsDescendantNodeId(word)) continue;
    const SchemaNode* leaf = FollowUnique(lint, list, at, word);
    if (leaf == nullptr) continue;
    if (!leafs.insert(leaf).second)
      ErrorOn(lint, cls::kList, list, at,
              "unique of list " + Quote(list->name) + " names " + Quote(word) + " twice",
              "name each leaf once");
    JudgeStatusOfNodes(lint, at, list, {&leaf, 1});
    if (first == nullptr) first = leaf;
    if (ConfigOf(leaf) != ConfigOf(first))
      ErrorOn(lint, cls::kList, list, at,
              "the leafs in unique of list " + Quote(list->name) + " differ in config",
              "name leafs that are all config true or all config false");
  }
}

void JudgeList(Lint* lint, const SchemaNode* list) {
  const xmlNode* key = FirstChild(list->statement, Keyword::kKey);
  if (key == nullptr) {
    if (ConfigOf(list) == Config::kTrue && ConfigOf(list->parent) != Config::kFalse)
      ErrorOn(lint, cls::kList, list, list->statement,
              "list " + Quote(list->name) + " is config true and has no key",
              "add a key statement, or make the list config false");
  } else if (ArgumentOf(key) != nullptr) {
    JudgeKey(lint, list, key);
  }
  for (const xmlNode* s = FirstChild(list->statement, Keyword::kUnique); s != nullptr;
       s = NextSibling(s, Keyword::kUnique))
    if (ArgumentOf(s) != nullptr) JudgeUnique(lint, list, s);
}

}  // namespace compiler
