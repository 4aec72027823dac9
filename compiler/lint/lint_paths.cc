// SPDX-License-Identifier: BSD-3-Clause
// Paths of leafrefs: that they parse, lead to a leaf or leaf-list, from configuration to
// configuration, and that a default fits the type found there (RFC 7950, section 9.9).
//
// A path of a typedef is followed from each leaf that uses it; its unprefixed names
// belong to the typedef's module, those of a path written in a grouping to the module
// that uses the grouping.
#include <set>
#include <unordered_set>
#include <utility>

#include "compiler/lint/data_axes.h"
#include "compiler/lint/lint_nodes.h"
#include "compiler/lint/lint_pass.h"
#include "compiler/reading/type_chain.h"
#include "compiler/reading/value_check.h"
#include "compiler/words/path.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

constexpr unsigned kMaxUnionDepth = 32;
constexpr unsigned kMaxLeafrefs = 64;  // a chain of leafrefs; more is a circle

// One leafref that a node has, perhaps as a member of a union. A name without prefix is of
// the node's module, also where the path is that of another module's typedef.
struct Leafref {
  const SchemaNode* node;
  const xmlNode* path;
  std::vector<const SchemaNode*>* named = nullptr;  // gets the nodes that its steps name
};

// Why a path leads nowhere, and what to do; empty: it does not, or that cannot be told.
struct Fault {
  std::string what;
  std::string advice;
};

bool IsLeafLike(const SchemaNode* node) {
  return node->keyword == Keyword::kLeaf || node->keyword == Keyword::kLeafList;
}

// One step to a name; false: the path ends here, perhaps with a fault.
bool TakeName(Lint* lint, const Leafref& leafref, const Reference& step, DataCursor* cursor,
              Fault* fault) {
  Module* space = leafref.node->space;
  if (!step.prefix.empty()) space = ResolvePrefix(lint, cls::kPath, leafref.path, step.prefix);
  if (space == nullptr) return false;
  const DataCursor next = StepDown(*cursor, space, step.name);
  if (next.unknown) return false;
  if (next.node == nullptr) {
    fault->what = cursor->node->parent == nullptr
                      ? "leads nowhere: module " + Quote(space->name) + " has no top-level node "
                      : "leads nowhere: " + Quote(cursor->node->name) + " has no child ";
    fault->what += Quote(step.name);
    fault->advice =
        NearestData(*cursor, space, step.name, "correct the path", &lint->namesToCompare);
    return false;
  }
  *cursor = next;
  if (leafref.named != nullptr) leafref.named->push_back(next.node);
  return true;
}

// `count` steps to the parent; false as above.
bool TakeUps(uint32_t count, DataCursor* cursor, Fault* fault) {
  for (uint32_t i = 0; i < count; ++i) {
    const DataCursor up = StepUp(*cursor);
    if (up.unknown) return false;
    if (up.node == nullptr) {
      *fault = {"climbs above the root", "take " + std::to_string(count - i) + " \"..\" away"};
      return false;
    }
    *cursor = up;
  }
  return true;
}

// ---- predicates, "[key = current()/../name]"

bool IsKeyOf(const SchemaNode* list, std::string_view name) {
  const char* keys = ArgumentOfChild(list->statement, Keyword::kKey);
  for (const std::string_view key : SplitNames(keys == nullptr ? "" : keys))
    if (SplitReference(key).name == name) return true;
  return false;
}

bool FollowKey(Lint* lint, const Leafref& leafref, const Reference& key, DataCursor list,
               Fault* fault) {
  const SchemaNode* holder = list.node;
  if (!TakeName(lint, leafref, key, &list, fault)) return fault->what.empty();
  if (holder->keyword == Keyword::kList && IsKeyOf(holder, key.name)) return true;
  *fault = {
      "has a predicate with " + Quote(key.name) + ", which is no key of " + Quote(holder->name),
      "a predicate says the value of a key"};
  return false;
}

bool FollowKeyValue(Lint* lint, const Leafref& leafref, const Xpath& xpath, const XpathNode& path,
                    Fault* fault) {
  DataCursor cursor = CursorAt(lint->view, leafref.node);
  for (const XpathStep& step : path.steps) {
    const bool goesOn =
        step.test == XpathTest::kName
            ? TakeName(lint, leafref, {xpath.Of(step.prefix), xpath.Of(step.name)}, &cursor, fault)
            : TakeUps(1, &cursor, fault);
    if (!goesOn) return fault->what.empty();
  }
  if (IsLeafLike(cursor.node)) return true;
  *fault = {"compares a key with the " + std::string(RowOf(cursor.node->keyword).name) + " " +
                Quote(cursor.node->name) + ", which is no leaf",
            "compare it with a leaf"};
  return false;
}

bool FollowPredicates(Lint* lint, const Leafref& leafref, std::string_view predicates,
                      const DataCursor& list, Fault* fault) {
  Xpath xpath;
  XpathError error;
  if (predicates.empty() || !ParseXpath("self::node()" + std::string(predicates), &xpath, &error))
    return true;
  for (const uint32_t index : xpath.At(xpath.root).steps[0].predicates) {
    const XpathNode& equality = xpath.At(index);
    const XpathStep& key = xpath.At(equality.operands[0]).steps[0];
    if (!FollowKey(lint, leafref, {xpath.Of(key.prefix), xpath.Of(key.name)}, list, fault) ||
        !FollowKeyValue(lint, leafref, xpath, xpath.At(equality.operands[1]), fault))
      return false;
  }
  return true;
}

// Where the path leads; NULL with a fault, or without one when that cannot be told.
const SchemaNode* Follow(Lint* lint, const Leafref& leafref, Fault* fault) {
  NodePath path;
  XpathError error;
  if (!ParseLeafrefPath(ArgumentOf(leafref.path), &path, &error)) {
    *fault = {"does not parse: " + error.message,
              "write a path such as \"../name\" or "
              "\"/p:top/p:list[p:key = current()/../key]/p:leaf\""};
    return nullptr;
  }
  if (path.throughDeref) {
    *fault = {"does not parse: a path of a leafref calls no function",
              "write the steps that lead to the leaf"};
    return nullptr;
  }
  DataCursor cursor = CursorAt(lint->view, leafref.node);
  if (path.absolute) {
    Module* first = leafref.node->space;
    std::string_view name;
    if (!path.steps.empty() && !path.steps[0].prefix.empty()) {
      first = ResolvePrefix(lint, cls::kPath, leafref.path, path.Of(path.steps[0].prefix));
      name = path.Of(path.steps[0].name);
    }
    cursor = RootOf(cursor, first, name);
    if (cursor.unknown) return nullptr;
  }
  if (!TakeUps(path.ups, &cursor, fault)) return nullptr;
  for (const PathStep& step : path.steps) {
    if (!TakeName(lint, leafref, {path.Of(step.prefix), path.Of(step.name)}, &cursor, fault) ||
        !FollowPredicates(lint, leafref, path.Of(step.predicates), cursor, fault))
      return nullptr;
  }
  const SchemaNode* unseen = OperationOf(cursor.node);
  if (unseen == nullptr || IsSeenFrom(CursorAt(lint->view, leafref.node), cursor.node))
    return cursor.node;
  *fault = {"leads into the " + std::string(RowOf(unseen->keyword).name) + " " +
                Quote(unseen->name) + ", which is seen from its own statements only",
            "refer to a leaf of the data"};
  return nullptr;
}

bool RequiresInstance(const TypeChain& chain) {
  const xmlNode* s = InChain(chain, Keyword::kRequireInstance);
  return s == nullptr || ArgumentOf(s) == nullptr || std::string_view(ArgumentOf(s)) != "false";
}

// A leafref of a leafref, and so on: true when that never ends.
bool IsCircle(Lint* lint, const SchemaNode* node) {
  const SchemaNode* start = node;
  for (unsigned i = 0; i < kMaxLeafrefs && node != nullptr; ++i) {
    node = LeafrefTarget(lint, node);
    if (node == start) return true;
  }
  return false;
}

// Unions that do not take a value, with the node that their paths start from.
using UnfitUnions = std::set<std::pair<const xmlNode*, const SchemaNode*>>;

// Whether a value may be one of the type, leafrefs followed; true also where that cannot be
// told.
bool MayTake(Lint* lint, const SchemaNode* node, const xmlNode* type, const xmlNode* value,
             UnfitUnions* unfit, unsigned depth = 0) {
  if (depth == kMaxLeafrefs) return true;
  const TypeChain chain = ChainOf(type);
  if (chain.base == BuiltIn::kLeafref) {
    const xmlNode* path = FirstChild(chain.types.back(), Keyword::kPath);
    Fault fault;
    const bool hasPath = path != nullptr && ArgumentOf(path) != nullptr;
    const SchemaNode* target = hasPath ? Follow(lint, {node, path}, &fault) : nullptr;
    const xmlNode* referred = target == nullptr || !IsLeafLike(target)
                                  ? nullptr
                                  : FirstChild(target->statement, Keyword::kType);
    return referred == nullptr || MayTake(lint, target, referred, value, unfit, depth + 1);
  }
  if (chain.base != BuiltIn::kUnion) return FaultOfValue(type, ArgumentOf(value), value).empty();
  const xmlNode* own = chain.types.back();
  if (unfit->count({own, node}) != 0) return false;
  for (const xmlNode* member = FirstChild(own, Keyword::kType); member != nullptr;
       member = NextSibling(member, Keyword::kType))
    if (MayTake(lint, node, member, value, unfit, depth + 1)) return true;
  unfit->insert({own, node});
  return false;
}

// A leafref has the values of its target's type.
void JudgeDefaults(Lint* lint, const Leafref& leafref, const SchemaNode* target) {
  const xmlNode* own = FirstChild(leafref.node->statement, Keyword::kType);
  const xmlNode* type = FirstChild(target->statement, Keyword::kType);
  if (type == nullptr || ChainOf(own).types.back() != ParentOf(leafref.path)) return;  // a union's
  for (const xmlNode* s = PropertyStatement(leafref.node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault)) {
    JudgeDefault(lint, s, type);
    JudgeReferredDefault(lint, target, type, s, s);
  }
}

void JudgeTarget(Lint* lint, const Leafref& leafref, const TypeChain& chain,
                 const SchemaNode* target) {
  const std::string what =
      "the path " + Quote(ArgumentOf(leafref.path)) + " of " + Quote(leafref.node->name);
  if (!IsLeafLike(target)) {
    ErrorOn(lint, cls::kPath, leafref.node, leafref.path,
            what + " leads to the " + std::string(RowOf(target->keyword).name) + " " +
                Quote(target->name) + ", which is no leaf",
            "a leafref refers to a leaf or leaf-list");
    return;
  }
  if (ConfigOf(leafref.node) == Config::kTrue && ConfigOf(target) == Config::kFalse &&
      RequiresInstance(chain))
    ErrorOn(
        lint, cls::kPath, leafref.node, leafref.path,
        what + " leads from configuration to " + Quote(target->name) + ", which is config false",
        StatementOf(leafref.path)->words->version11
            ? "refer to configuration, or write \"require-instance false;\""
            : "refer to configuration");
  for (const SchemaNode* node : *leafref.named)
    JudgeStatusOfNodes(lint, leafref.path, leafref.node, {&node, 1});
  JudgeDefaults(lint, leafref, target);
  if (IsCircle(lint, leafref.node))
    ErrorOn(lint, cls::kPath, leafref.node, leafref.path, what + " leads back to itself",
            "refer to a leaf that has a type of its own");
}

void JudgeLeafref(Lint* lint, const SchemaNode* node, const TypeChain& chain) {
  const xmlNode* path = FirstChild(chain.types.back(), Keyword::kPath);
  if (path == nullptr || ArgumentOf(path) == nullptr) return;
  std::vector<const SchemaNode*> named;
  const Leafref leafref = {node, path, &named};
  Fault fault;
  const SchemaNode* target = Follow(lint, leafref, &fault);
  if (target != nullptr) {
    JudgeTarget(lint, leafref, chain, target);
  } else if (!fault.what.empty()) {
    // A typedef's path is wrong for this leaf; one of its own is wrong where it stands.
    const xmlNode* at = chain.typedefs.empty() ? path : chain.types[0];
    ErrorOn(lint, cls::kPath, node, at,
            "the path " + Quote(ArgumentOf(path)) + " of " + Quote(node->name) + " " + fault.what,
            fault.advice);
  }
}

void JudgeUnionDefaults(Lint* lint, const SchemaNode* node, const xmlNode* type) {
  for (const xmlNode* s = PropertyStatement(node, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    JudgeReferredDefault(lint, node, type, s, s);
}

// Absolute paths mean the same for every leaf; others are followed from each.
void JudgeTypedef(Lint* lint, const SchemaNode* top, const xmlNode* definition) {
  const xmlNode* type = FirstChild(definition, Keyword::kType);
  const xmlNode* byDefault = FirstChild(definition, Keyword::kDefault);
  if (type != nullptr && byDefault != nullptr)
    JudgeReferredDefault(lint, top, type, byDefault, byDefault);
}

// Each of the `unions` of a leaf is looked into once: they may have others twice.
void JudgeType(Lint* lint, const SchemaNode* node, const xmlNode* type,
               std::unordered_set<const xmlNode*>* unions, unsigned depth = 0) {
  const TypeChain chain = ChainOf(type);
  if (chain.base == BuiltIn::kLeafref) JudgeLeafref(lint, node, chain);
  if (chain.base == BuiltIn::kUnion && depth == 0) JudgeUnionDefaults(lint, node, type);
  if (chain.base != BuiltIn::kUnion || depth >= kMaxUnionDepth ||
      !unions->insert(chain.types.back()).second)
    return;
  for (const xmlNode* s = FirstChild(chain.types.back(), Keyword::kType); s != nullptr;
       s = NextSibling(s, Keyword::kType))
    JudgeType(lint, node, s, unions, depth + 1);
}

// A path from the root leads to the same place from each leaf, so that of a typedef which
// no leaf has is judged, too.
void JudgeTypedef(Lint* lint, xmlNode* definition) {
  const xmlNode* type = FirstChild(definition, Keyword::kType);
  if (type == nullptr || ArgumentOf(definition) == nullptr) return;
  const char* path = ArgumentOfChild(type, Keyword::kPath);
  if (path == nullptr || *path != '/') return;
  const TypeChain chain = ChainOf(type);
  if (chain.base != BuiltIn::kLeafref || !chain.typedefs.empty()) return;
  SchemaNode leaf;
  leaf.statement = definition;
  leaf.keyword = Keyword::kLeaf;
  leaf.space = lint->module;
  leaf.name = ArgumentOf(definition);
  leaf.parent = lint->view->trees[lint->module];
  leaf.config = static_cast<uint8_t>(Config::kNone) + 1;
  JudgeLeafref(lint, &leaf, chain);
}

}  // namespace

const SchemaNode* LeafrefTarget(Lint* lint, const SchemaNode* leaf) {
  const xmlNode* type = IsLeafLike(leaf) ? FirstChild(leaf->statement, Keyword::kType) : nullptr;
  if (type == nullptr) return nullptr;
  const TypeChain chain = ChainOf(type);
  const xmlNode* path =
      chain.base == BuiltIn::kLeafref ? FirstChild(chain.types.back(), Keyword::kPath) : nullptr;
  if (path == nullptr || ArgumentOf(path) == nullptr) return nullptr;
  Fault fault;
  return Follow(lint, {leaf, path}, &fault);
}

void JudgeReferredDefault(Lint* lint, const SchemaNode* node, const xmlNode* type,
                          const xmlNode* byDefault, const xmlNode* at) {
  const char* value = ArgumentOf(byDefault);
  const BuiltIn base = ChainOf(type).base;
  if (value == nullptr || (base != BuiltIn::kUnion && base != BuiltIn::kLeafref)) return;
  UnfitUnions unfit;
  if (!FaultOfValue(type, value, byDefault).empty() || MayTake(lint, node, type, byDefault, &unfit))
    return;
  Error(lint, cls::kDefault, at,
        "the default " + Quote(value) +
            (base == BuiltIn::kUnion ? " fits no member of the union"
                                     : " does not fit the leaf that the leafref leads to"),
        "write a value that one of the leafs takes, or change the type");
}

void LintPaths(Lint* lint) {
  const auto tree = lint->view->trees.find(lint->module);
  for (const Module* file : lint->files)
    ForEachStatement(file, Keyword::kTypedef, [&](const xmlNode* s) {
      if (tree != lint->view->trees.end()) JudgeTypedef(lint, tree->second, s);
    });
  ForEachNode(*lint, [lint](const SchemaNode* node) {
    if (!node->written || !IsLeafLike(node)) return;
    const xmlNode* type = FirstChild(node->statement, Keyword::kType);
    std::unordered_set<const xmlNode*> unions;
    if (type != nullptr) JudgeType(lint, node, type, &unions);
  });
  for (const Module* file : lint->files)
    ForEachStatement(file, Keyword::kTypedef, [lint](xmlNode* s) {
      if (lint->used->count(s) == 0) JudgeTypedef(lint, s);
    });
}

}  // namespace compiler
