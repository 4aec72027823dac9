// SPDX-License-Identifier: BSD-3-Clause
// What deviations make of the nodes around their targets: config that no longer fits,
// default cases, and what names a node that is gone.
#include <algorithm>

#include "compiler/lint/lint_deviated.h"
#include "compiler/lint/lint_nodes.h"
#include "compiler/words/argument.h"
#include "compiler/words/grammar.h"
#include "compiler/words/path.h"

namespace compiler {

bool IsKind(const xmlNode* deviate, std::string_view kind) {
  const char* argument = ArgumentOf(deviate);
  return argument != nullptr && kind == argument;
}

bool IsOfDeviate(const xmlNode* property) {
  return Is(ParentOf(property), Keyword::kDeviate);
}

bool IsTrue(const xmlNode* property) {
  return property != nullptr && ArgumentOf(property) != nullptr &&
         std::string_view(ArgumentOf(property)) == "true";
}

bool CanHave(const SchemaNode* node, Keyword property) {
  return FindSubStatement(node->keyword, property) != nullptr;
}

const Deviates* DeviatesOf(const Deviated& all, const SchemaNode* node) {
  const auto found = all.deviates.find(node);
  return found == all.deviates.end() ? nullptr : &found->second;
}

static bool IsSame(const xmlNode* a, const xmlNode* b) {
  return ArgumentOf(a) != nullptr && ArgumentOf(b) != nullptr &&
         std::string_view(ArgumentOf(a)) == ArgumentOf(b);
}

const xmlNode* LeftOf(const SchemaNode* node, const Deviates& deviates, Keyword keyword) {
  const xmlNode* left = PropertyStatement(node, keyword);
  for (const xmlNode* deviate : deviates)
    for (const xmlNode* s = FirstChild(deviate, keyword); s != nullptr;
         s = NextSibling(s, keyword)) {
      if (!IsKind(deviate, "delete")) {
        left = s;
      } else if (left != nullptr && IsSame(left, s)) {
        left = nullptr;
      }
    }
  return left;
}

const xmlNode* LeftOf(const Deviated& all, const SchemaNode* node, Keyword keyword) {
  const Deviates* deviates = DeviatesOf(all, node);
  return deviates == nullptr ? PropertyStatement(node, keyword) : LeftOf(node, *deviates, keyword);
}

bool IsGone(const Deviates& deviates) {
  return std::any_of(deviates.begin(), deviates.end(),
                     [](const xmlNode* deviate) { return IsKind(deviate, "not-supported"); });
}

bool IsGoneBelow(const Deviated& all, const SchemaNode* top, const SchemaNode* node) {
  for (; node != top && node != nullptr; node = node->parent) {
    const Deviates* deviates = DeviatesOf(all, node);
    if (deviates != nullptr && IsGone(*deviates)) return true;
  }
  return false;
}

namespace {

// True when a deviate deletes the statement of the target.
bool IsDeleted(const Deviates& deviates, const xmlNode* statement) {
  for (const xmlNode* deviate : deviates)
    for (const xmlNode* s = FirstChild(deviate, KeywordOf(statement)); s != nullptr;
         s = NextSibling(s, KeywordOf(statement)))
      if (IsKind(deviate, "delete") && IsSame(s, statement)) return true;
  return false;
}

// The list whose key the node is; NULL: it is none.
const SchemaNode* ListOfKey(const SchemaNode* node) {
  const SchemaNode* list = node->parent;
  if (node->keyword != Keyword::kLeaf || list == nullptr || list->keyword != Keyword::kList)
    return nullptr;
  const char* keys = ArgumentOfChild(list->statement, Keyword::kKey);
  for (const std::string_view key : SplitNames(keys == nullptr ? "" : keys))
    if (SplitReference(key).name == node->name) return list;
  return nullptr;
}

bool HasConfig(const Deviates& deviates) {
  return std::any_of(deviates.begin(), deviates.end(), [](const xmlNode* deviate) {
    return FirstChild(deviate, Keyword::kConfig) != nullptr;
  });
}

// True when a deviation changes the config of the node or of one that it stands in. Asked
// first: a node may have thousands of statements.
bool IsConfigDeviated(const Deviated& all, const SchemaNode* node) {
  for (; node != nullptr; node = node->parent) {
    const Deviates* deviates = DeviatesOf(all, node);
    if (deviates != nullptr && HasConfig(*deviates)) return true;
  }
  return false;
}

// What ConfigOf() says, with all deviations.
Config ConfigAfter(const Deviated& all, const SchemaNode* node) {
  const Config before = ConfigOf(node);
  if (before != Config::kTrue && before != Config::kFalse) return before;
  if (!IsConfigDeviated(all, node)) return before;
  for (; node != nullptr; node = node->parent) {
    const xmlNode* own = LeftOf(all, node, Keyword::kConfig);
    if (own != nullptr) return IsTrue(own) ? Config::kTrue : Config::kFalse;
  }
  return Config::kTrue;
}

void JudgeConfig(const Result& result) {
  const SchemaNode* node = result.node;
  const xmlNode* config = LeftOf(result.node, *result.deviates, Keyword::kConfig);
  if (config == nullptr || !IsOfDeviate(config) || node->parent == nullptr) return;
  const Config above = ConfigAfter(*result.all, node->parent);
  const SchemaNode* list = ListOfKey(node);
  if (IsTrue(config) && above == Config::kFalse) {
    Error(result.lint, cls::kConfig, config,
          Quote(node->name) + " is config true below " + Quote(node->parent->name) +
              ", which is config false",
          "leave the config statement out, or make the node above config true");
  } else if (list != nullptr && above == Config::kTrue && !IsTrue(config)) {
    Error(result.lint, cls::kList, config,
          "the key " + Quote(node->name) + " of list " + Quote(list->name) +
              " differs from it in config",
          "give the key no config statement of its own");
  }
}

void JudgeConfigOfOne(const Result& result, const SchemaNode* node, const xmlNode* config) {
  const xmlNode* own = LeftOf(*result.all, node, Keyword::kConfig);
  if (!IsTrue(config) && IsTrue(own) && !IsOfDeviate(own)) {
    Error(result.lint, cls::kConfig, config,
          Quote(node->name) + " is config true below " + Quote(result.node->name) +
              ", which is config false",
          "deviate that node, too");
  } else if (IsTrue(config) && own == nullptr && node->keyword == Keyword::kList &&
             PropertyOf(node, Keyword::kKey) == nullptr && ConfigOf(node) == Config::kFalse) {
    Error(result.lint, cls::kList, config,
          "list " + Quote(node->name) + " is config true and has no key", "leave it config false");
  }
}

// What stands below a node gets its config, or has to fit it.
void JudgeConfigBelow(const Result& result) {
  const xmlNode* config = LeftOf(result.node, *result.deviates, Keyword::kConfig);
  if (config == nullptr || !IsOfDeviate(config) ||
      ConfigOf(result.node) == ConfigAfter(*result.all, result.node))
    return;
  if (result.node->keyword == Keyword::kList && IsTrue(config) &&
      PropertyOf(result.node, Keyword::kKey) == nullptr)
    Error(result.lint, cls::kList, config,
          "list " + Quote(result.node->name) + " is config true and has no key",
          "leave it config false");
  for (const SchemaNode* node = result.node->firstChild; node != nullptr;) {
    const bool goesIn = LeftOf(*result.all, node, Keyword::kConfig) == nullptr &&
                        !IsGoneBelow(*result.all, result.node, node);
    if (!IsGoneBelow(*result.all, result.node, node)) JudgeConfigOfOne(result, node, config);
    node = goesIn && node->firstChild != nullptr ? node->firstChild : NextBehind(result.node, node);
  }
}

// True when `node` is the one that is gone, or stands in it.
bool IsIn(const SchemaNode* node, const SchemaNode* gone) {
  while (node != nullptr && node != gone) node = node->parent;
  return node != nullptr;
}

// The leaf that a path of `unique` names, of the list itself or further in; NULL: none.
const SchemaNode* LeafOfUnique(const SchemaNode* list, const xmlNode* at, std::string_view path) {
  const SchemaNode* node = list;
  while (node != nullptr && !path.empty()) {
    const std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(step.size() + 1, path.size()));
    const Reference name = SplitReference(step);
    const Module* meant = ModuleOfPrefix(StatementOf(at)->words, name.prefix);
    const bool own = meant == MainModuleOf(StatementOf(at)->words);
    node = FindChild(node, own ? list->space : meant, name.name);
  }
  return node;
}

// A unique of a list around the node that names a leaf which goes with it.
void JudgeUniqueOf(const Result& result, const SchemaNode* list, const xmlNode* deviate) {
  const Deviates* deviates = DeviatesOf(*result.all, list);
  for (const xmlNode* s = FirstChild(list->statement, Keyword::kUnique); s != nullptr;
       s = NextSibling(s, Keyword::kUnique)) {
    if (ArgumentOf(s) == nullptr || (deviates != nullptr && IsDeleted(*deviates, s))) continue;
    for (const std::string_view path : WordsOf(ArgumentOf(s))) {
      const SchemaNode* leaf = LeafOfUnique(list, s, path);
      if (leaf == nullptr || !IsIn(leaf, result.node)) continue;
      Error(result.lint, cls::kList, deviate,
            "list " + Quote(list->name) + " loses " + Quote(path) + " of its unique",
            "keep the leaf, or delete the unique, too");
      return;
    }
  }
}

// The choice whose default the node is; NULL: it is none.
const SchemaNode* ChoiceOfDefault(const Result& result) {
  const SchemaNode* choice = result.node->parent;
  if (result.node->keyword != Keyword::kCase || choice == nullptr) return nullptr;
  const xmlNode* preset = LeftOf(*result.all, choice, Keyword::kDefault);
  const char* name = preset == nullptr ? nullptr : ArgumentOf(preset);
  return name != nullptr && SplitReference(name).name == result.node->name ? choice : nullptr;
}

}  // namespace

void JudgeConfigAround(const Result& result) {
  JudgeConfig(result);
  JudgeConfigBelow(result);
}

void JudgeGone(const Result& result, const xmlNode* deviate) {
  const SchemaNode* list = ListOfKey(result.node);
  if (list != nullptr)
    Error(result.lint, cls::kList, deviate,
          "list " + Quote(list->name) + " loses its key " + Quote(result.node->name),
          "keep the key, or the list is not supported either");
  const SchemaNode* choice = ChoiceOfDefault(result);
  if (choice != nullptr)
    Error(result.lint, cls::kDefault, deviate,
          "choice " + Quote(choice->name) + " loses its default case " + Quote(result.node->name),
          "delete the default of the choice, too");
  for (const SchemaNode* above = result.node->parent; above != nullptr; above = above->parent)
    if (above->keyword == Keyword::kList) JudgeUniqueOf(result, above, deviate);
}

// A node that must be there now, in the default case of a choice.
void JudgeInDefaultCase(const Result& result) {
  const SchemaNode* node = result.node;
  const xmlNode* mandatory = LeftOf(result.node, *result.deviates, Keyword::kMandatory);
  if (!IsTrue(mandatory) || !IsOfDeviate(mandatory) || !CanHave(node, Keyword::kMandatory)) return;
  const SchemaNode* in = node->parent;
  while (in != nullptr && in->keyword == Keyword::kContainer &&
         PropertyStatement(in, Keyword::kPresence) == nullptr)
    in = in->parent;
  if (in == nullptr || in->keyword != Keyword::kCase || in->parent == nullptr) return;
  const xmlNode* preset = LeftOf(*result.all, in->parent, Keyword::kDefault);
  // A default that a deviate brings is judged with its choice.
  if (preset == nullptr || IsOfDeviate(preset) || ArgumentOf(preset) == nullptr ||
      SplitReference(ArgumentOf(preset)).name != in->name)
    return;
  Error(result.lint, cls::kDefault, mandatory,
        "the default case " + Quote(in->name) + " holds the mandatory node " + Quote(node->name),
        "delete the default of the choice, too");
}

bool IsConfigAfter(const Deviated& all, const SchemaNode* node) {
  return ConfigAfter(all, node) == Config::kTrue;
}

// The deviate that takes the node away, with one that it stands in perhaps; NULL: none does.
static const xmlNode* TakenBy(const Deviated& all, const SchemaNode* node) {
  for (; node != nullptr; node = node->parent) {
    const Deviates* deviates = DeviatesOf(all, node);
    for (size_t i = 0; deviates != nullptr && i < deviates->size(); ++i)
      if (IsKind((*deviates)[i], "not-supported")) return (*deviates)[i];
  }
  return nullptr;
}

static void JudgeLostLeafref(Lint* lint, const Deviated& all, const SchemaNode* leaf) {
  const SchemaNode* target = LeafrefTarget(lint, leaf);
  const xmlNode* taken = target == nullptr ? nullptr : TakenBy(all, target);
  const Deviates* own = DeviatesOf(all, leaf);
  if (taken == nullptr || TakenBy(all, leaf) != nullptr) return;
  if (own != nullptr && IsOfDeviate(LeftOf(leaf, *own, Keyword::kType))) return;
  Error(lint, cls::kPath, taken,
        "the leafref " + Quote(leaf->name) + " loses its target " + Quote(target->name),
        "give it another type, or do without it, too");
}

void JudgeLostLeafrefs(Lint* lint, const Deviated& all) {
  const bool any = std::any_of(all.deviates.begin(), all.deviates.end(),
                               [](const auto& one) { return IsGone(one.second); });
  if (!any) return;
  for (const Module* module : lint->view->order) {
    const SchemaNode* top = lint->view->trees[module];
    for (const SchemaNode* node = top; node != nullptr; node = NextNode(top, node))
      if (node->written && (node->keyword == Keyword::kLeaf || node->keyword == Keyword::kLeafList))
        JudgeLostLeafref(lint, all, node);
  }
}

}  // namespace compiler
