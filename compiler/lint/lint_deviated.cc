// SPDX-License-Identifier: BSD-3-Clause
// What the deviations of a module leave of a node: that it still fits together (RFC 7950,
// section 7.20.3). The tree itself is that without deviations, so the properties are put
// together here, from the target and from the deviates in their order. Said is only what
// a deviate has brought about.
#include <map>

#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/reading/value_check.h"
#include "compiler/words/argument.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

using Deviates = std::vector<const xmlNode*>;

// The deviates of each node, in the order of the files.
struct Deviated {
  std::vector<const SchemaNode*> targets;
  std::map<const SchemaNode*, Deviates> deviates;
};

bool IsKind(const xmlNode* deviate, std::string_view kind) {
  const char* argument = ArgumentOf(deviate);
  return argument != nullptr && kind == argument;
}

bool IsSame(const xmlNode* a, const xmlNode* b) {
  return ArgumentOf(a) != nullptr && ArgumentOf(b) != nullptr &&
         std::string_view(ArgumentOf(a)) == ArgumentOf(b);
}

bool IsOfDeviate(const xmlNode* property) {
  return Is(ParentOf(property), Keyword::kDeviate);
}

struct Result {
  Lint* lint;
  const SchemaNode* node;
  const Deviates* deviates;
};

// The property that is left in the end; NULL: none is.
const xmlNode* Left(const Result& result, Keyword keyword) {
  const xmlNode* left = PropertyStatement(result.node, keyword);
  for (const xmlNode* deviate : *result.deviates)
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

// The one of two properties that a deviate has brought; NULL: none of them.
const xmlNode* Brought(const xmlNode* a, const xmlNode* b) {
  if (IsOfDeviate(a)) return a;
  return IsOfDeviate(b) ? b : nullptr;
}

bool IsTrue(const xmlNode* property) {
  return property != nullptr && ArgumentOf(property) != nullptr &&
         std::string_view(ArgumentOf(property)) == "true";
}

void JudgeMandatory(const Result& result) {
  const xmlNode* mandatory = Left(result, Keyword::kMandatory);
  const xmlNode* preset = Left(result, Keyword::kDefault);
  if (!IsTrue(mandatory) || preset == nullptr) return;
  const xmlNode* at = Brought(preset, mandatory);
  if (at != nullptr)
    Error(result.lint, cls::kDefault, at,
          Quote(result.node->name) + " is mandatory and has a default",
          "a default is for a node that may be missing; remove one of the two");
}

void JudgeElements(const Result& result) {
  const xmlNode* least = Left(result, Keyword::kMinElements);
  const xmlNode* most = Left(result, Keyword::kMaxElements);
  const xmlNode* preset = Left(result, Keyword::kDefault);
  uint64_t low = 0;
  uint64_t high = 0;
  if (least == nullptr || ArgumentOf(least) == nullptr ||
      !ParseUnsigned(ArgumentOf(least), UINT32_MAX, &low))
    return;
  const bool bounded = most != nullptr && ArgumentOf(most) != nullptr &&
                       ParseUnsigned(ArgumentOf(most), UINT32_MAX, &high);
  if (bounded && high < low && Brought(most, least) != nullptr)
    Error(result.lint, cls::kList, Brought(most, least),
          Quote(result.node->name) + " has max-elements " + ArgumentOf(most) +
              " below its min-elements " + ArgumentOf(least),
          "correct one");
  if (low > 0 && preset != nullptr && Brought(preset, least) != nullptr)
    Error(result.lint, cls::kDefault, Brought(preset, least),
          Quote(result.node->name) + " has a default and a min-elements above 0",
          "a default is for a leaf-list that may be empty; remove one of the two");
}

// Entries of a leaf-list of configuration are different values.
void JudgeAddedEntries(const Result& result) {
  const SchemaNode* node = result.node;
  const xmlNode* type = Left(result, Keyword::kType);
  if (node->keyword != Keyword::kLeafList || type == nullptr || ConfigOf(node) != Config::kTrue)
    return;
  std::map<std::string, const xmlNode*> values;
  for (const xmlNode* s = PropertyStatement(node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    if (ArgumentOf(s) != nullptr) values.emplace(CanonicalOf(type, ArgumentOf(s)), s);
  for (const xmlNode* deviate : *result.deviates)
    for (const xmlNode* s = FirstChild(deviate, Keyword::kDefault); s != nullptr;
         s = NextSibling(s, Keyword::kDefault)) {
      const std::string value = ArgumentOf(s) == nullptr ? "" : CanonicalOf(type, ArgumentOf(s));
      if (IsKind(deviate, "delete")) {
        values.erase(value);
      } else if (!values.emplace(value, s).second) {
        Error(result.lint, cls::kDefault, s,
              "leaf-list " + Quote(node->name) + " has the default " + Quote(value) + " already",
              "remove one");
      }
    }
}

// A default that stays must be a value of the new type. Those that deviates bring are
// judged where they are written.
void JudgeType(const Result& result) {
  const xmlNode* type = Left(result, Keyword::kType);
  const xmlNode* preset = Left(result, Keyword::kDefault);
  if (type == nullptr || preset == nullptr || !IsOfDeviate(type) || IsOfDeviate(preset) ||
      ArgumentOf(preset) == nullptr)
    return;
  const std::string fault = FaultOfValue(type, ArgumentOf(preset), preset);
  JudgeReferredDefault(result.lint, result.node, type, preset, type);
  if (fault.empty()) return;
  Error(result.lint, cls::kDefault, type,
        "the default " + Quote(ArgumentOf(preset)) + " of the " +
            std::string(RowOf(result.node->keyword).name) + " " + Quote(result.node->name) + " " +
            fault,
        "replace or delete the default, too");
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

// True when a node above has deviates of its own that say what becomes of this one.
bool IsDeviatedAbove(const Deviated& all, const SchemaNode* node) {
  for (const SchemaNode* above = node->parent; above != nullptr; above = above->parent) {
    const auto found = all.deviates.find(above);
    if (found == all.deviates.end()) continue;
    for (const xmlNode* deviate : found->second)
      if (IsKind(deviate, "not-supported") || FirstChild(deviate, Keyword::kConfig) != nullptr)
        return true;
  }
  return false;
}

void JudgeConfig(const Result& result) {
  const SchemaNode* node = result.node;
  const xmlNode* config = Left(result, Keyword::kConfig);
  if (config == nullptr || !IsOfDeviate(config) || node->parent == nullptr) return;
  const Config above = ConfigOf(node->parent);
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

void JudgeGone(const Result& result, const xmlNode* deviate) {
  const SchemaNode* list = ListOfKey(result.node);
  if (list != nullptr)
    Error(result.lint, cls::kList, deviate,
          "list " + Quote(list->name) + " loses its key " + Quote(result.node->name),
          "keep the key, or the list is not supported either");
}

void JudgeAdded(const Result& result) {
  const SchemaNode* node = result.node;
  for (const xmlNode* deviate : *result.deviates) {
    if (!IsKind(deviate, "add")) continue;
    for (const xmlNode* s = FirstChild(deviate, Keyword::kUnique);
         s != nullptr && node->keyword == Keyword::kList; s = NextSibling(s, Keyword::kUnique))
      if (ArgumentOf(s) != nullptr) JudgeUnique(result.lint, node, s);
  }
  const xmlNode* preset = Left(result, Keyword::kDefault);
  if (node->keyword == Keyword::kChoice && preset != nullptr && IsOfDeviate(preset))
    JudgeDefaultCase(result.lint, node, preset);
}

void JudgeTarget(const Deviated& all, const Result& result) {
  const bool open = IsDeviatedAbove(all, result.node);
  for (const xmlNode* deviate : *result.deviates) {
    if (!IsKind(deviate, "not-supported")) continue;
    if (!open) JudgeGone(result, deviate);
    return;
  }
  JudgeMandatory(result);
  JudgeElements(result);
  JudgeAddedEntries(result);
  JudgeType(result);
  JudgeAdded(result);
  if (!open) JudgeConfig(result);
}

}  // namespace

void LintDeviated(Lint* lint) {
  Deviated all;
  for (const Module* file : lint->files)
    ForEachStatement(file, Keyword::kDeviation, [&](xmlNode* deviation) {
      const SchemaNode* target = FollowAbsolute(*lint->view, deviation).target;
      if (target == nullptr) return;
      const auto entered = all.deviates.try_emplace(target);
      if (entered.second) all.targets.push_back(target);
      for (const xmlNode* s = FirstChild(deviation, Keyword::kDeviate); s != nullptr;
           s = NextSibling(s, Keyword::kDeviate))
        entered.first->second.push_back(s);
    });
  for (const SchemaNode* target : all.targets)
    JudgeTarget(all, {lint, target, &all.deviates[target]});
}

}  // namespace compiler
