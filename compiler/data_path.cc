// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/data_path.h"

#include "compiler/lint_pass.h"
#include "compiler/suggestion.h"

namespace compiler {

namespace {

bool IsAnything(const SchemaNode* node) {
  return node->keyword == Keyword::kAnydata || node->keyword == Keyword::kAnyxml;
}

// An instance of an extension may bring nodes that no statement defines, as a mount
// point does.
bool HoldsExtension(const SchemaNode* node) {
  if (!node->written || node->keyword == Keyword::kModule) return false;
  for (const xmlNode* s = FirstChild(node->statement); s != nullptr; s = NextSibling(s))
    if (Is(s, Keyword::kNone) && std::string_view(NameOf(s)) == "mount-point") return true;
  return false;
}

// True when data may have nodes there that no statement tells of.
bool IsOpen(const SchemaView& view, const SchemaNode* holder) {
  const auto entered = view.open.try_emplace(holder, false);
  if (entered.second)
    entered.first->second = holder->keyword == Keyword::kGrouping || IsAnything(holder) ||
                            HoldsExtension(holder) || HasHole(view, holder);
  return entered.first->second;
}

// The node whose children a step from `from` looks at; NULL: that tree was not read.
const SchemaNode* HolderOf(const DataCursor& from, const Module* space) {
  if (from.node->keyword != Keyword::kModule) return from.node;
  const auto tree = from.view->trees.find(space);
  return tree == from.view->trees.end() ? nullptr : tree->second;
}

}  // namespace

DataCursor RootOf(const SchemaView* view, const SchemaNode* context, const Module* module) {
  const SchemaNode* top = context == nullptr ? nullptr : TopOf(context);
  if (top != nullptr && top->keyword == Keyword::kNone) return {view, top, false};
  // A grouping alone may be one for templates.
  if (top != nullptr && top->keyword == Keyword::kGrouping && view->hasTemplates)
    return {view, nullptr, true};
  const auto tree = view->trees.find(module);
  if (tree == view->trees.end()) return {view, nullptr, true};
  return {view, tree->second, false};
}

DataCursor StepDown(const DataCursor& from, const Module* space, std::string_view name) {
  if (from.unknown || from.node == nullptr) return from;
  const SchemaNode* holder = HolderOf(from, space);
  if (holder == nullptr) return {from.view, nullptr, true};
  const SchemaNode* child = FindDataChild(*from.view, holder, space, name);
  if (child != nullptr) return {from.view, child, false};
  return {from.view, nullptr, IsOpen(*from.view, holder)};
}

DataCursor StepUp(const DataCursor& from) {
  if (from.unknown || from.node == nullptr) return from;
  const SchemaNode* parent = DataParent(from.node);
  const bool leavesGrouping = parent == nullptr && from.node->keyword == Keyword::kGrouping;
  return {from.view, parent, leavesGrouping};
}

std::string NearestData(const DataCursor& from, const Module* space, std::string_view name,
                        std::string_view otherwise, uint64_t* left) {
  const SchemaNode* holder = HolderOf(from, space);
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

}  // namespace compiler
