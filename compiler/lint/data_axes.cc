// SPDX-License-Identifier: BSD-3-Clause
// Data have no order that a model could count on, so "following" and "preceding" are any
// node that can stand beside: all but what the node stands in and what stands in it, and
// these, too, when there may be several entries of them.
#include "compiler/lint/data_axes.h"

#include <algorithm>

#include "compiler/lint/lint_nodes.h"

namespace compiler {

namespace {

using Nodes = std::vector<const SchemaNode*>;

struct Walk {
  const DataPlaces* from;
  const DataTest* step;
  uint64_t* left;
  DataPlaces found;
};

DataCursor CursorOf(const Walk& walk, const SchemaNode* node) noexcept {
  return {walk.from->context.view, node, false, walk.from->context.message};
}

// False: that is enough for one run.
bool Spend(Walk* walk, uint64_t cost = 1) {
  const bool enough = *walk->left >= cost;
  *walk->left -= enough ? cost : *walk->left;
  if (!enough) walk->found.unknown = true;
  return enough;
}

bool IsRoot(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kModule || node->keyword == Keyword::kNone;
}

bool IsGroupingTop(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kGrouping;
}

bool IsLeafLike(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kLeaf || node->keyword == Keyword::kLeafList;
}

bool SameSpace(const Module* a, const Module* b) noexcept {
  return a == b || a->name == b->name;
}

bool IsOfNames(const DataTest& step, const SchemaNode* node) {
  switch (step.test) {
    case XpathTest::kName:
      return IsDataNode(node) && step.name == node->name && SameSpace(step.space, node->space);
    case XpathTest::kAnyOfPrefix:
      return IsDataNode(node) && SameSpace(step.space, node->space);
    case XpathTest::kAnyName:
      return IsDataNode(node);
    default:
      return true;
  }
}

// One node that the axis leads to, if the test takes it.
void Add(Walk* walk, const SchemaNode* node) {
  if (!IsOfNames(*walk->step, node) || !IsSeenFrom(walk->from->context, node)) return;
  if (walk->step->configuration && IsDataNode(node) && ConfigOf(node) == Config::kFalse) return;
  Nodes& nodes = walk->found.nodes;
  if (nodes.size() < 8 && std::find(nodes.begin(), nodes.end(), node) != nodes.end()) return;
  nodes.push_back(node);
}

// Nothing that models define comes behind these tests and axes.
bool IsOfNoData(const DataTest& step) noexcept {
  if (step.axis == XpathAxis::kAttribute) return true;
  if (step.test == XpathTest::kComment || step.test == XpathTest::kInstruction) return true;
  const bool named = step.test == XpathTest::kName || step.test == XpathTest::kAnyOfPrefix;
  return step.axis == XpathAxis::kNamespace && named;
}

// True when other modules may bring nodes that the test takes.
bool TakesForeign(const DataTest& step) noexcept {
  return step.test != XpathTest::kName && step.test != XpathTest::kAnyOfPrefix;
}

bool IsBelowAny(Walk* walk, const SchemaNode* node) {
  for (const SchemaNode* above : walk->from->nodes) {
    if (!Spend(walk)) return false;
    if (IsBelow(node, above)) return true;
  }
  return false;
}

// True when there may be several entries of the node, each with what it stands in.
bool MayRepeat(const SchemaNode* node) noexcept {
  for (; node != nullptr; node = node->parent)
    if (node->keyword == Keyword::kList || node->keyword == Keyword::kLeafList) return true;
  return false;
}

bool CanStandBeside(const SchemaNode* node, const SchemaNode* other) noexcept {
  if (node == other || IsBelow(node, other)) return MayRepeat(other);
  return !IsBelow(other, node) || MayRepeat(node);
}

// ---- names anywhere

bool IsInGrouping(const Walk& walk) noexcept {
  const SchemaNode* node = walk.from->context.node;
  return node == nullptr || IsGroupingTop(TopOf(node));
}

// Nodes of the module of which nothing can be told: below anydata, or lost in what could
// not be read.
template <typename Fits>
void LookForOpen(Walk* walk, Fits fits) {
  const SchemaView& view = *walk->from->context.view;
  if (!view.holes.empty() || MayBeLost(view, walk->step->space, walk->step->name))
    walk->found.unknown = true;
  for (const SchemaNode* open : view.index.open) {
    if (walk->found.unknown || !Spend(walk)) return;
    if (IsSeenFrom(walk->from->context, open) && fits(open)) walk->found.unknown = true;
  }
}

// All nodes of that name that `fits` takes.
template <typename Fits>
void AddNamed(Walk* walk, Fits fits) {
  const DataTest& step = *walk->step;
  const auto* named = NodesNamed(*walk->from->context.view, step.name);
  for (size_t i = 0; named != nullptr && i < named->size() && Spend(walk); ++i) {
    const SchemaNode* node = (*named)[i];
    if (IsOfNames(step, node) && fits(node)) Add(walk, node);
  }
}

void AddNamedBelow(Walk* walk) {
  const Nodes& nodes = walk->from->nodes;
  AddNamed(walk, [walk](const SchemaNode* node) { return IsBelowAny(walk, node); });
  if (std::any_of(nodes.begin(), nodes.end(), IsGroupingTop)) walk->found.unknown = true;
  if (!walk->found.nodes.empty()) return;
  LookForOpen(walk, [walk, &nodes](const SchemaNode* open) {
    return IsBelowAny(walk, open) || std::find(nodes.begin(), nodes.end(), open) != nodes.end();
  });
}

template <typename Fits>
void AddNamedAnywhere(Walk* walk, Fits fits) {
  AddNamed(walk, fits);
  if (!walk->found.nodes.empty()) return;
  if (IsInGrouping(*walk)) walk->found.unknown = true;
  LookForOpen(walk, [](const SchemaNode*) { return true; });
}

// The root of the context's tree, and everything in it: more than what is looked for.
void AddEverything(Walk* walk) {
  if (IsInGrouping(*walk)) {
    walk->found.unknown = true;
    return;
  }
  walk->found.nodes.push_back(TopOf(walk->from->context.node));
  walk->found.deep = true;
  walk->found.foreign = TakesForeign(*walk->step);
}

// ---- the axes

void AddChildrenOf(Walk* walk, const SchemaNode* holder) {
  for (const SchemaNode* node = NextSeen(holder, holder); node != nullptr && Spend(walk);
       node = NextSeen(holder, node))
    if (IsDataNode(node)) Add(walk, node);
}

void AddNamedChild(Walk* walk, const DataCursor& at) {
  const DataTest& step = *walk->step;
  const DataCursor next = StepDown(at, step.space, step.name);
  if (next.node != nullptr) {
    Add(walk, next.node);
  } else if (next.unknown || MayBeLost(*at.view, step.space, step.name)) {
    walk->found.unknown = true;
  }
}

void AddAnyChildren(Walk* walk, const DataCursor& at) {
  const DataTest& step = *walk->step;
  const bool isRoot = at.node->keyword == Keyword::kModule;
  const bool isOfOne = step.test == XpathTest::kAnyOfPrefix;
  for (const Module* module : at.view->order) {
    if (isRoot && isOfOne && !SameSpace(module, step.space)) continue;
    const SchemaNode* holder = SeenHolder(at, module);
    if (!Spend(walk) || holder == nullptr || IsOpen(*at.view, holder)) walk->found.unknown = true;
    if (walk->found.unknown) return;
    AddChildrenOf(walk, holder);
    if (!isRoot) return;
  }
}

void AddChildren(Walk* walk, const SchemaNode* node) {
  const DataCursor at = CursorOf(*walk, node);
  const DataTest& step = *walk->step;
  if (walk->from->nodes.size() > 1 && !Spend(walk)) return;
  if (step.test == XpathTest::kName) return AddNamedChild(walk, at);
  walk->found.foreign |= step.test == XpathTest::kNode || step.test == XpathTest::kText;
  if (step.test == XpathTest::kText || IsLeafLike(node)) return;
  walk->found.foreign |= step.test == XpathTest::kAnyName;
  AddAnyChildren(walk, at);
}

void TakeChildren(Walk* walk) {
  for (const SchemaNode* node : walk->from->nodes) {
    if (walk->found.unknown) return;
    AddChildren(walk, node);
  }
  walk->found.foreign |= walk->from->foreign && TakesForeign(*walk->step);
}

void TakeDescendants(Walk* walk) {
  const DataPlaces& from = *walk->from;
  const DataTest& step = *walk->step;
  if (step.test == XpathTest::kName) return AddNamedBelow(walk);
  walk->found.foreign = step.test == XpathTest::kNode || step.test == XpathTest::kText;
  if (step.test == XpathTest::kText) return;
  for (const SchemaNode* node : from.nodes)
    if (!IsLeafLike(node)) walk->found.nodes.push_back(node);
  walk->found.deep = true;
  walk->found.foreign |= TakesForeign(step) && (from.foreign || !walk->found.nodes.empty());
}

void TakeSelf(Walk* walk) {
  const DataTest& step = *walk->step;
  for (const SchemaNode* node : walk->from->nodes) {
    Add(walk, node);
    if (IsGroupingTop(node) && step.test != XpathTest::kNode) walk->found.unknown = true;
  }
  walk->found.foreign |= walk->from->foreign && TakesForeign(step);
}

// The nodes of "//".
void TakeSelfOfMany(Walk* walk) {
  if (walk->step->test == XpathTest::kName) {
    AddNamedBelow(walk);
    return TakeSelf(walk);
  }
  walk->found.nodes = walk->from->nodes;
  walk->found.foreign = walk->from->foreign && TakesForeign(*walk->step);
  walk->found.deep = true;
}

// What stands around: one node above, or all.
void TakeUp(Walk* walk, bool all) {
  for (const SchemaNode* node : walk->from->nodes) {
    DataCursor at = CursorOf(*walk, node);
    do {
      at = StepUp(at);
      if (at.node != nullptr) Add(walk, at.node);
      const bool isOutside =
          at.node != nullptr && IsGroupingTop(at.node) && walk->step->test != XpathTest::kNode;
      walk->found.unknown = walk->found.unknown || at.unknown || isOutside;
    } while (all && at.node != nullptr && Spend(walk));
  }
}

// Of a node that stands once, no sibling has the name.
bool IsItself(const Walk& walk, const SchemaNode* node) noexcept {
  const DataTest& step = *walk.step;
  return step.test == XpathTest::kName && IsOfNames(step, node) &&
         node->keyword != Keyword::kList && node->keyword != Keyword::kLeafList;
}

void TakeSiblings(Walk* walk) {
  for (const SchemaNode* node : walk->from->nodes) {
    const DataCursor up = StepUp(CursorOf(*walk, node));
    if (up.unknown) walk->found.unknown = true;
    if (up.node != nullptr && !IsItself(*walk, node)) AddChildren(walk, up.node);
  }
}

void TakeBeside(Walk* walk) {
  const Nodes& nodes = walk->from->nodes;
  if (walk->step->test != XpathTest::kName) {
    if (!std::all_of(nodes.begin(), nodes.end(), IsRoot)) AddEverything(walk);
    return;
  }
  AddNamedAnywhere(walk, [walk, &nodes](const SchemaNode* node) {
    return std::any_of(nodes.begin(), nodes.end(), [walk, node](const SchemaNode* other) {
      return Spend(walk) && !IsRoot(other) && CanStandBeside(node, other);
    });
  });
}

// Up or aside from nodes of which not each is known.
void TakeFromMany(Walk* walk) {
  if (walk->step->test == XpathTest::kName && !walk->from->foreign) {
    AddNamedAnywhere(walk, [](const SchemaNode*) { return true; });
  } else {
    walk->found.unknown = true;
  }
}

void TakeFromNodes(Walk* walk) {
  switch (walk->step->axis) {
    case XpathAxis::kChild:
      return TakeChildren(walk);
    case XpathAxis::kAncestorOrSelf:
      TakeSelf(walk);
      return TakeUp(walk, true);
    case XpathAxis::kAncestor:
    case XpathAxis::kParent:
      return TakeUp(walk, walk->step->axis == XpathAxis::kAncestor);
    case XpathAxis::kFollowingSibling:
    case XpathAxis::kPrecedingSibling:
      return TakeSiblings(walk);
    default:
      return TakeBeside(walk);
  }
}

void TakeAxis(Walk* walk) {
  const bool deep = walk->from->deep;
  switch (walk->step->axis) {
    case XpathAxis::kNamespace:
      walk->found.foreign = true;
      return;
    case XpathAxis::kSelf:
      return deep ? TakeSelfOfMany(walk) : TakeSelf(walk);
    case XpathAxis::kDescendantOrSelf:
      TakeDescendants(walk);
      return TakeSelf(walk);
    case XpathAxis::kDescendant:
      return TakeDescendants(walk);
    case XpathAxis::kChild:
      return deep ? TakeDescendants(walk) : TakeChildren(walk);
    default:
      return deep || walk->from->foreign ? TakeFromMany(walk) : TakeFromNodes(walk);
  }
}

}  // namespace

DataPlaces UnknownPlaces(const DataCursor& context) {
  DataPlaces places;
  places.context = context;
  places.unknown = true;
  return places;
}

DataPlaces PlacesAt(const DataCursor& context, const DataCursor& at) {
  DataPlaces places;
  places.context = context;
  places.unknown = at.unknown;
  if (at.node != nullptr) places.nodes.push_back(at.node);
  return places;
}

bool IsNowhere(const DataPlaces& places) noexcept {
  return places.nodes.empty() && !places.foreign && !places.unknown;
}

DataPlaces TakeStep(const DataPlaces& from, const DataTest& step, uint64_t* left) {
  if (from.unknown) return UnknownPlaces(from.context);
  Walk walk = {&from, &step, left, {}};
  walk.found.context = from.context;
  if (!IsOfNoData(step)) TakeAxis(&walk);
  return std::move(walk.found);
}

DataPlaces RootPlaces(const DataCursor& context, const DataTest& first, bool hasPrefix,
                      bool descendants) {
  const SchemaNode* top = context.node == nullptr ? nullptr : TopOf(context.node);
  if (top == nullptr) return UnknownPlaces(context);
  if (!IsGroupingTop(top)) return PlacesAt(context, {context.view, top, false, context.message});
  const bool isNamed = first.test == XpathTest::kName && hasPrefix;
  if (!isNamed || (first.axis != XpathAxis::kChild && first.axis != XpathAxis::kDescendant))
    return UnknownPlaces(context);
  const bool deep = descendants || first.axis == XpathAxis::kDescendant;
  const auto tree = context.view->trees.find(first.space);
  if (tree == context.view->trees.end()) return UnknownPlaces(context);
  if (!deep) return PlacesAt(context, RootOf(context, first.space, first.name));
  return PlacesAt(context, {context.view, tree->second, false, context.message});
}

}  // namespace compiler
