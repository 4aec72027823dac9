// SPDX-License-Identifier: BSD-3-Clause
// Paths of leafrefs: that they parse, lead to a leaf or leaf-list, from configuration to
// configuration, and that a default fits the type found there (RFC 7950, section 9.9).
//
// A path of a typedef is followed from each leaf that uses it; its unprefixed names
// belong to the typedef's module, those of a path written in a grouping to the module
// that uses the grouping.
#include "compiler/data_path.h"
#include "compiler/lint_nodes.h"
#include "compiler/lint_pass.h"
#include "compiler/path.h"
#include "compiler/suggestion.h"
#include "compiler/type_chain.h"
#include "compiler/value_check.h"

namespace compiler {

namespace {

constexpr unsigned kMaxUnionDepth = 32;
constexpr unsigned kMaxLeafrefs = 64;  // a chain of leafrefs; more is a circle

// One leafref that a node has, perhaps as a member of a union. A name without prefix is of
// the node's module, also where the path is that of another module's typedef.
struct Leafref {
  const SchemaNode* node;
  const xmlNode* path;
};

// Follows steps one after the other; on failure says in `failed` which.
const SchemaNode* FollowSteps(Lint* lint, const Leafref& leafref, const NodePath& path,
                              DataCursor cursor, std::string* fault, std::string* advice) {
  for (const PathStep& step : path.steps) {
    const std::string_view prefix = path.Of(step.prefix);
    Module* space = leafref.node->space;
    if (!prefix.empty()) space = ResolvePrefix(lint, cls::kPath, leafref.path, prefix);
    if (space == nullptr) return nullptr;
    const std::string_view name = path.Of(step.name);
    const DataCursor next = StepDown(cursor, space, name);
    if (next.unknown) return nullptr;
    if (next.node == nullptr) {
      *fault = cursor.node->parent == nullptr
                   ? "leads nowhere: module " + Quote(space->name) + " has no top-level node " +
                         Quote(name)
                   : "leads nowhere: " + Quote(cursor.node->name) + " has no child " + Quote(name);
      *advice = NearestData(cursor, space, name, "correct the path", &lint->namesToCompare);
      return nullptr;
    }
    cursor = next;
  }
  return cursor.node;
}

// Where the path leads; NULL with a fault, or without one when that cannot be told.
const SchemaNode* Follow(Lint* lint, const Leafref& leafref, std::string* fault,
                         std::string* advice) {
  NodePath path;
  XpathError error;
  if (!ParseLeafrefPath(ArgumentOf(leafref.path), &path, &error)) {
    *fault = "does not parse: " + error.message;
    *advice =
        "write a path such as \"../name\" or \"/p:top/p:list[p:key = current()/../key]/p:leaf\"";
    return nullptr;
  }
  if (path.throughDeref) {
    *fault = "does not parse: a path of a leafref calls no function";
    *advice = "write the steps that lead to the leaf";
    return nullptr;
  }
  DataCursor cursor = CursorAt(lint->view, leafref.node);
  if (path.absolute) {
    Module* first = leafref.node->space;
    if (!path.steps.empty() && !path.steps[0].prefix.empty())
      first = ResolvePrefix(lint, cls::kPath, leafref.path, path.Of(path.steps[0].prefix));
    cursor = RootOf(cursor, first);
    if (cursor.unknown) return nullptr;
  }
  for (uint32_t i = 0; i < path.ups; ++i) {
    const DataCursor up = StepUp(cursor);
    if (up.unknown) return nullptr;
    if (up.node == nullptr) {
      *fault = "climbs above the root";
      *advice = "take " + std::to_string(path.ups - i) + " \"..\" away";
      return nullptr;
    }
    cursor = up;
  }
  return FollowSteps(lint, leafref, path, cursor, fault, advice);
}

bool IsLeafLike(const SchemaNode* node) {
  return node->keyword == Keyword::kLeaf || node->keyword == Keyword::kLeafList;
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

// A leafref has the values of its target's type.
void JudgeDefaults(Lint* lint, const Leafref& leafref, const SchemaNode* target) {
  const xmlNode* own = FirstChild(leafref.node->statement, Keyword::kType);
  const xmlNode* type = FirstChild(target->statement, Keyword::kType);
  if (type == nullptr || own != ParentOf(leafref.path)) return;  // a typedef's, or a union's
  for (const xmlNode* s = FirstChild(leafref.node->statement, Keyword::kDefault); s != nullptr;
       s = NextSibling(s, Keyword::kDefault))
    JudgeDefault(lint, s, type);
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
  JudgeDefaults(lint, leafref, target);
  if (IsCircle(lint, leafref.node))
    ErrorOn(lint, cls::kPath, leafref.node, leafref.path, what + " leads back to itself",
            "refer to a leaf that has a type of its own");
}

void JudgeLeafref(Lint* lint, const SchemaNode* node, const TypeChain& chain) {
  const xmlNode* path = FirstChild(chain.types.back(), Keyword::kPath);
  if (path == nullptr || ArgumentOf(path) == nullptr) return;
  const Leafref leafref = {node, path};
  std::string fault;
  std::string advice;
  const SchemaNode* target = Follow(lint, leafref, &fault, &advice);
  if (target != nullptr) {
    JudgeTarget(lint, leafref, chain, target);
  } else if (!fault.empty()) {
    // A typedef's path is wrong for this leaf; one of its own is wrong where it stands.
    const xmlNode* at = chain.typedefs.empty() ? path : chain.types[0];
    ErrorOn(lint, cls::kPath, node, at,
            "the path " + Quote(ArgumentOf(path)) + " of " + Quote(node->name) + " " + fault,
            advice);
  }
}

void JudgeType(Lint* lint, const SchemaNode* node, const xmlNode* type, unsigned depth) {
  const TypeChain chain = ChainOf(type);
  if (chain.base == BuiltIn::kLeafref) JudgeLeafref(lint, node, chain);
  if (chain.base != BuiltIn::kUnion || depth >= kMaxUnionDepth) return;
  for (const xmlNode* s = FirstChild(chain.types.back(), Keyword::kType); s != nullptr;
       s = NextSibling(s, Keyword::kType))
    JudgeType(lint, node, s, depth + 1);
}

}  // namespace

const SchemaNode* LeafrefTarget(Lint* lint, const SchemaNode* leaf) {
  const xmlNode* type = IsLeafLike(leaf) ? FirstChild(leaf->statement, Keyword::kType) : nullptr;
  if (type == nullptr) return nullptr;
  const TypeChain chain = ChainOf(type);
  const xmlNode* path =
      chain.base == BuiltIn::kLeafref ? FirstChild(chain.types.back(), Keyword::kPath) : nullptr;
  if (path == nullptr || ArgumentOf(path) == nullptr) return nullptr;
  std::string fault;
  std::string advice;
  return Follow(lint, {leaf, path}, &fault, &advice);
}

void LintPaths(Lint* lint) {
  for (const SchemaNode* top : lint->tops)
    for (const SchemaNode* node = top; node != nullptr; node = NextNode(top, node)) {
      if (!node->written || !IsLeafLike(node) || !IsOfModule(*lint, node)) continue;
      const xmlNode* type = FirstChild(node->statement, Keyword::kType);
      if (type != nullptr) JudgeType(lint, node, type, 0);
    }
}

}  // namespace compiler
