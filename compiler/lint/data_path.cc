// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/lint/data_path.h"

#include "compiler/lint/lint_pass.h"
#include "compiler/words/suggestion.h"

namespace compiler {

namespace {

// The input or output that the node stands in or is; NULL: none.
const SchemaNode* MessageOf(const SchemaNode* node) {
  while (node != nullptr && node->keyword != Keyword::kInput && node->keyword != Keyword::kOutput)
    node = node->parent;
  return node;
}

bool IsOperation(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kRpc || node->keyword == Keyword::kAction ||
         node->keyword == Keyword::kNotification;
}

bool IsGroupingTop(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kGrouping;
}

// A node of `space` at the top of the data, which an augment has hung into a choice at the
// top of another module.
const SchemaNode* HungElsewhere(const SchemaView& view, const Module* space,
                                std::string_view name) {
  for (const Module* module : view.order) {
    const auto tree = view.trees.find(module);
    if (tree == view.trees.end()) continue;
    const SchemaNode* node = FindDataChild(view, tree->second, space, name);
    if (node != nullptr) return node;
  }
  return nullptr;
}

DataCursor Moved(const DataCursor& from, const SchemaNode* node, bool unknown = false) {
  return {from.view, node, unknown, from.message};
}

}  // namespace

bool IsOpen(const SchemaView& view, const SchemaNode* holder) {
  const auto entered = view.open.try_emplace(holder, false);
  if (entered.second)
    entered.first->second =
        holder->keyword == Keyword::kGrouping || HoldsAnything(holder) || HasHole(view, holder);
  return entered.first->second;
}

const SchemaNode* SeenHolder(const DataCursor& from, const Module* space) {
  if (from.message != nullptr && from.node == from.message->parent) return from.message;
  if (from.node->keyword != Keyword::kModule) return from.node;
  const auto tree = from.view->trees.find(space);
  return tree == from.view->trees.end() ? nullptr : tree->second;
}

DataCursor CursorAt(const SchemaView* view, const SchemaNode* place) {
  const bool isShown = IsDataNode(place) || place->parent == nullptr;
  return {view, isShown ? place : DataParent(place), false, MessageOf(place)};
}

DataCursor UnknownCursor(const DataCursor& from) {
  return Moved(from, nullptr, true);
}

// The one root, of data or a template of the module, that has the node; that of data if
// none has.
static DataCursor RootOfGrouping(const DataCursor& context, const Module* module,
                                 std::string_view name) {
  const SchemaView* view = context.view;
  const auto templates = view->templates.find(module);
  const auto tree = view->trees.find(module);
  if (tree == view->trees.end()) return UnknownCursor(context);
  if (name.empty()) return UnknownCursor(context);
  if (templates == view->templates.end()) return Moved(context, tree->second);
  std::vector<const SchemaNode*> roots;
  if (FindDataChild(*view, tree->second, module, name) != nullptr) roots.push_back(tree->second);
  for (const SchemaNode* root : templates->second)
    if (FindDataChild(*view, root, module, name) != nullptr || IsOpen(*view, root))
      roots.push_back(root);
  if (roots.size() > 1) return UnknownCursor(context);
  return Moved(context, roots.empty() ? tree->second : roots[0]);
}

DataCursor RootOf(const DataCursor& context, const Module* module, std::string_view name) {
  const SchemaView* view = context.view;
  const SchemaNode* top = context.node == nullptr ? nullptr : TopOf(context.node);
  if (top != nullptr && top->keyword == Keyword::kNone) return Moved(context, top);
  if (top != nullptr && top->keyword == Keyword::kGrouping)
    return RootOfGrouping(context, module, name);
  const auto tree = view->trees.find(module);
  if (tree == view->trees.end()) return UnknownCursor(context);
  return Moved(context, tree->second);
}

DataCursor StepDown(const DataCursor& from, const Module* space, std::string_view name) {
  if (from.unknown || from.node == nullptr) return from;
  const SchemaNode* holder = SeenHolder(from, space);
  if (holder == nullptr) return UnknownCursor(from);
  const SchemaNode* child = FindDataChild(*from.view, holder, space, name);
  if (child == nullptr && holder->keyword == Keyword::kModule)
    child = HungElsewhere(*from.view, space, name);
  return Moved(from, child, child == nullptr && IsOpen(*from.view, holder));
}

DataCursor StepUp(const DataCursor& from) {
  if (from.unknown || from.node == nullptr) return from;
  const SchemaNode* parent = DataParent(from.node);
  return Moved(from, parent, parent == nullptr && from.node->keyword == Keyword::kGrouping);
}

std::string NearestData(const DataCursor& from, const Module* space, std::string_view name,
                        std::string_view otherwise, uint64_t* left) {
  const SchemaNode* holder = SeenHolder(from, space);
  Suggestion near(name, left);
  if (holder == nullptr) return std::string(otherwise);
  for (const SchemaNode* node = NextSeen(holder, holder); node != nullptr;
       node = NextSeen(holder, node)) {
    if (!IsDataNode(node)) continue;
    if (name == node->name)
      return "the " + Quote(name) + " there is of module " + Quote(node->space->name) +
             "; write that module's prefix";
    if (!near.Consider(node->name)) break;
  }
  return near.Advice(otherwise);
}

const SchemaNode* OperationOf(const SchemaNode* node) noexcept {
  while (node != nullptr && !IsOperation(node)) node = node->parent;
  return node;
}

bool IsBelow(const SchemaNode* node, const SchemaNode* above) noexcept {
  if (above->keyword == Keyword::kModule) return TopOf(node)->keyword != Keyword::kGrouping;
  for (const SchemaNode* one = node->parent; one != nullptr; one = one->parent)
    if (one == above) return true;
  return false;
}

bool IsSeenFrom(const DataCursor& context, const SchemaNode* node) {
  if (context.node == nullptr) return true;
  const SchemaNode* top = TopOf(context.node);
  const SchemaNode* other = TopOf(node);
  if (IsGroupingTop(top)) return other == top || !IsGroupingTop(other);
  if (top != other && (top->keyword != Keyword::kModule || other->keyword != Keyword::kModule))
    return false;
  const SchemaNode* operation = OperationOf(node);
  if (operation == nullptr) return true;
  if (operation != OperationOf(context.node)) return false;
  return node == operation || context.message == nullptr || IsBelow(node, context.message);
}

}  // namespace compiler
