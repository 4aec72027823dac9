// SPDX-License-Identifier: BSD-3-Clause
// The trees are made from the statements downwards; a `uses` goes on with the statements
// of its grouping in the same place. Augments of modules come last, in rounds, since one
// may hang something into what another brings: as long as a round finds a target, there
// is a next one. Depth is bounded by that of a file times the chain of groupings, and
// by kMaxNesting, so that the recursion is.
#include "compiler/lint/schema_view.h"

#include <algorithm>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/data_template.h"
#include "compiler/words/argument.h"

namespace compiler {

namespace {

constexpr unsigned kMaxNesting = 2000;

struct Builder {
  SchemaView* view = nullptr;
  Module* space = nullptr;        // of the nodes that are made
  const Place* usedAt = nullptr;  // the outermost `uses`
  bool augmented = false;
  unsigned depth = 0;
  std::vector<const xmlNode*> open;  // groupings that are being followed
};

void Expand(Builder* builder, xmlNode* holder, SchemaNode* parent);

SchemaNode* MakeNode(Builder* builder, xmlNode* statement, Keyword keyword, SchemaNode* parent) {
  SchemaView* view = builder->view;
  if (view->nodes.size() >= kMaxSchemaNodes) {
    view->full = true;
    return nullptr;
  }
  SchemaNode* node = &view->nodes.emplace_back();
  node->statement = statement;
  node->keyword = keyword;
  node->space = builder->space;
  node->usedAt = builder->usedAt;
  node->augmented = builder->augmented;
  node->parent = parent;
  const char* name = ArgumentOf(statement);
  if (name != nullptr) node->name = name;
  if (parent == nullptr) return node;
  (parent->lastChild == nullptr ? parent->firstChild : parent->lastChild->next) = node;
  parent->lastChild = node;
  if (parent->byName != nullptr) (*parent->byName)[node->name].push_back(node);
  return node;
}

void AddInputOrOutput(Builder* builder, SchemaNode* operation, Keyword keyword) {
  xmlNode* statement = FirstChild(operation->statement, keyword);
  SchemaNode* node = MakeNode(builder, statement == nullptr ? operation->statement : statement,
                              keyword, operation);
  if (node == nullptr) return;
  node->name = keyword == Keyword::kInput ? "input" : "output";
  node->written = statement != nullptr;
  if (statement != nullptr) Expand(builder, statement, node);
}

void AddNode(Builder* builder, xmlNode* statement, SchemaNode* parent) {
  const Keyword keyword = KeywordOf(statement);
  if (parent->keyword == Keyword::kChoice && keyword != Keyword::kCase) {
    parent = MakeNode(builder, statement, Keyword::kCase, parent);
    if (parent == nullptr) return;
    parent->written = false;
  }
  SchemaNode* node = MakeNode(builder, statement, keyword, parent);
  if (node == nullptr) return;
  if (keyword == Keyword::kRpc || keyword == Keyword::kAction) {
    AddInputOrOutput(builder, node, Keyword::kInput);
    AddInputOrOutput(builder, node, Keyword::kOutput);
    return;
  }
  Expand(builder, statement, node);
}

bool IsNodeStatement(Keyword keyword) noexcept {
  constexpr Keyword kKinds[] = {Keyword::kAction,       Keyword::kAnydata,  Keyword::kAnyxml,
                                Keyword::kCase,         Keyword::kChoice,   Keyword::kContainer,
                                Keyword::kLeaf,         Keyword::kLeafList, Keyword::kList,
                                Keyword::kNotification, Keyword::kRpc};
  return std::find(std::begin(kKinds), std::end(kKinds), keyword) != std::end(kKinds);
}

// The module that the nodes of a step have. What `uses` brings has the namespace of the
// place, so the words' own module means that.
Module* SpaceOfStep(const xmlNode* statement, Module* space, std::string_view prefix) {
  Module* words = StatementOf(statement)->words;
  Module* meant = ModuleOfPrefix(words, prefix);
  return meant == MainModuleOf(words) ? space : meant;
}

// Goes down from view->start along the argument, from its first name on.
void FollowPath(const SchemaView& view, Module* space, std::string_view path, TargetView* target) {
  SchemaNode* node = target->start;
  while (!path.empty()) {
    const size_t slash = path.find('/');
    const std::string_view step = path.substr(0, slash);
    path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    const Reference name = SplitReference(step);
    const Module* module = SpaceOfStep(target->statement, space, name.prefix);
    SchemaNode* child = module == nullptr ? nullptr : FindChild(node, module, name.name);
    target->reached = node;
    target->failed = step;
    if (child == nullptr) {
      target->unknown = module == nullptr || MayMiss(view, node);
      return;
    }
    node = child;
  }
  target->target = node;
}

void FollowDescendant(Builder* builder, xmlNode* statement, SchemaNode* start) {
  TargetView* target = &builder->view->inner.emplace_back();
  target->statement = statement;
  target->start = start;
  target->usedAt = builder->usedAt;
  target->space = builder->space;
  builder->view->targets[MainModuleOf(StatementOf(statement)->words)].inner.push_back(target);
  if (Is(statement, Keyword::kAugment))
    builder->view->targets[builder->space].brought.push_back(target);
  const char* path = ArgumentOf(statement);
  if (path == nullptr || !IsDescendantNodeId(path)) {
    target->unknown = true;
    return;
  }
  FollowPath(*builder->view, builder->space, path, target);
  if (target->target == nullptr) return;
  if (Is(statement, Keyword::kRefine)) {
    target->target->changes.push_back(statement);
  } else {
    Expand(builder, statement, target->target);
  }
}

void ExpandUses(Builder* builder, xmlNode* uses, SchemaNode* parent) {
  const char* name = ArgumentOf(uses);
  xmlNode* grouping = name == nullptr ? nullptr : FindSymbol(uses, SymbolKind::kGrouping, name);
  const bool circle =
      std::find(builder->open.begin(), builder->open.end(), grouping) != builder->open.end();
  if (grouping == nullptr || circle) {
    builder->view->holes[parent] = true;
    return;
  }
  TargetView* record = &builder->view->uses.emplace_back();
  record->statement = uses;
  record->target = parent;
  record->usedAt = builder->usedAt;
  record->space = builder->space;
  builder->view->targets[builder->space].brought.push_back(record);
  const Place* before = builder->usedAt;
  if (before == nullptr) builder->usedAt = &StatementOf(uses)->place;
  builder->open.push_back(grouping);
  const SchemaNode* lastBefore = parent->lastChild;
  Expand(builder, grouping, parent);
  record->first = lastBefore == nullptr ? parent->firstChild : lastBefore->next;
  if (record->first != nullptr) record->last = parent->lastChild;
  builder->open.pop_back();
  for (xmlNode* s = FirstChild(uses, Keyword::kRefine); s != nullptr;
       s = NextSibling(s, Keyword::kRefine))
    FollowDescendant(builder, s, parent);
  builder->usedAt = before;
  for (xmlNode* s : AugmentsOfUses(uses)) FollowDescendant(builder, s, parent);
}

void Expand(Builder* builder, xmlNode* holder, SchemaNode* parent) {
  if (++builder->depth > kMaxNesting) {
    builder->view->full = true;
  }
  for (xmlNode* s = FirstChild(holder); s != nullptr && !builder->view->full; s = NextSibling(s)) {
    const Keyword keyword = KeywordOf(s);
    if (keyword == Keyword::kUses) {
      ExpandUses(builder, s, parent);
    } else if (IsNodeStatement(keyword)) {
      AddNode(builder, s, parent);
    }
  }
  --builder->depth;
}

// ---- modules

struct FileVisit {
  Builder* builder;
  SchemaNode* top;
};

void AddFile(Module* file, void* arg) {
  const auto* visit = static_cast<const FileVisit*>(arg);
  SchemaView* view = visit->builder->view;
  Expand(visit->builder, file->root, visit->top);
  for (xmlNode* s = FirstChild(file->root, Keyword::kAugment); s != nullptr;
       s = NextSibling(s, Keyword::kAugment)) {
    TargetView* augment = &view->augments.emplace_back();
    augment->statement = s;
    view->targets[visit->builder->space].augments.push_back(augment);
  }
}

void AddTree(SchemaView* view, Module* module) {
  Builder builder;
  builder.view = view;
  builder.space = module;
  SchemaNode* top = MakeNode(&builder, module->root, Keyword::kModule, nullptr);
  if (top == nullptr) return;
  view->trees.emplace(module, top);
  view->order.push_back(module);
  FileVisit visit = {&builder, top};
  ForEachFile(module, AddFile, &visit);
}

void QueueImports(Module* file, void* arg) {
  auto* queue = static_cast<std::vector<Module*>*>(arg);
  for (const Import& import : file->imports) {
    Module* module = MainModuleOf(import.target);
    if (module != nullptr) queue->push_back(module);
  }
}

// True when the augment found its target, which has its nodes now.
bool TryAugment(SchemaView* view, TargetView* augment) {
  *augment = FollowAbsolute(*view, augment->statement);
  if (augment->target == nullptr) return false;
  Builder builder;
  builder.view = view;
  builder.space = MainModuleOf(StatementOf(augment->statement)->words);
  builder.augmented = true;
  SchemaNode* before = augment->target->lastChild;
  Expand(&builder, augment->statement, augment->target);
  augment->first = before == nullptr ? augment->target->firstChild : before->next;
  if (augment->first != nullptr) augment->last = augment->target->lastChild;
  return true;
}

void ResolveAugments(SchemaView* view) {
  std::vector<TargetView*> open;
  for (TargetView& augment : view->augments)
    if (augment.target == nullptr) open.push_back(&augment);
  for (size_t before = open.size() + 1; open.size() < before;) {
    before = open.size();
    const auto found = std::remove_if(open.begin(), open.end(), [view](TargetView* augment) {
      return TryAugment(view, augment);
    });
    open.erase(found, open.end());
  }
  view->lost.clear();
  for (const TargetView* augment : open) view->lost[augment->space].push_back(augment->statement);
}

bool IsTransparent(const SchemaNode* node) noexcept {
  return node->keyword == Keyword::kChoice || node->keyword == Keyword::kCase ||
         node->keyword == Keyword::kInput || node->keyword == Keyword::kOutput;
}

// Revisions of one module have one namespace.
bool SameSpace(const Module* a, const Module* b) noexcept {
  return a == b || a->name == b->name;
}

// So many are looked through one by one.
constexpr unsigned kFewChildren = 8;

SchemaNode* FindAmongMany(const SchemaNode* parent, const Module* space, std::string_view name) {
  if (parent->byName == nullptr) {
    parent->byName = std::make_unique<ChildrenByName>();
    for (SchemaNode* child = parent->firstChild; child != nullptr; child = child->next)
      (*parent->byName)[child->name].push_back(child);
  }
  const auto named = parent->byName->find(name);
  if (named == parent->byName->end()) return nullptr;
  for (SchemaNode* child : named->second)
    if (SameSpace(child->space, space)) return child;
  return nullptr;
}

}  // namespace

const SchemaNode* NextSeen(const SchemaNode* parent, const SchemaNode* node) noexcept {
  if ((node == parent || IsTransparent(node)) && node->firstChild != nullptr)
    return node->firstChild;
  for (; node != parent; node = node->parent) {
    if (node->next != nullptr) return node->next;
  }
  return nullptr;
}

void AddToView(SchemaView* view, std::span<Module* const> modules) {
  std::vector<Module*> queue(modules.begin(), modules.end());
  bool added = false;
  for (size_t i = 0; i < queue.size(); ++i) {
    if (view->trees.count(queue[i]) != 0) continue;
    ForEachFile(queue[i], QueueImports, &queue);
    AddTree(view, queue[i]);
    added = true;
  }
  if (!added) return;
  view->dataChildren.clear();
  view->open.clear();
  view->twins.clear();
  ResolveAugments(view);
}

TargetView FollowAbsolute(const SchemaView& view, xmlNode* statement) {
  TargetView target;
  target.statement = statement;
  target.unknown = true;
  Module* words = StatementOf(statement)->words;
  target.space = MainModuleOf(words);
  const char* path = ArgumentOf(statement);
  if (path == nullptr || !IsAbsoluteNodeId(path)) return target;
  const std::string_view steps = std::string_view(path).substr(1);
  const Reference first = SplitReference(steps.substr(0, steps.find('/')));
  const auto tree = view.trees.find(ModuleOfPrefix(words, first.prefix));
  if (tree == view.trees.end()) return target;
  target.unknown = false;
  target.start = tree->second;
  FollowPath(view, MainModuleOf(words), steps, &target);
  return target;
}

SchemaNode* ViewAlone(SchemaView* view, xmlNode* holder) {
  const auto known = view->alone.find(holder);
  if (known != view->alone.end()) return known->second;
  Builder builder;
  builder.view = view;
  builder.space = MainModuleOf(StatementOf(holder)->words);
  const DataTemplate kind = DataTemplateOf(holder);
  const bool isRoot = kind == DataTemplate::kYangData || kind == DataTemplate::kStructure;
  SchemaNode* top =
      MakeNode(&builder, holder, isRoot ? Keyword::kNone : Keyword::kGrouping, nullptr);
  view->alone.emplace(holder, top);
  if (top == nullptr) return nullptr;
  if (isRoot) view->templates[builder.space].push_back(top);
  builder.open.push_back(holder);
  Expand(&builder, holder, top);
  return top;
}

xmlNode* PropertyStatement(const SchemaNode* node, Keyword keyword) noexcept {
  for (auto change = node->changes.rbegin(); change != node->changes.rend(); ++change) {
    xmlNode* statement = FirstChild(*change, keyword);
    if (statement != nullptr) return statement;
  }
  return node->written ? FirstChild(node->statement, keyword) : nullptr;
}

const char* PropertyOf(const SchemaNode* node, Keyword keyword) noexcept {
  const xmlNode* statement = PropertyStatement(node, keyword);
  return statement == nullptr ? nullptr : ArgumentOf(statement);
}

SchemaNode* FindChild(const SchemaNode* parent, const Module* space, std::string_view name) {
  unsigned looked = 0;
  for (SchemaNode* child = parent->firstChild; child != nullptr; child = child->next) {
    if (parent->byName != nullptr || ++looked > kFewChildren)
      return FindAmongMany(parent, space, name);
    if (name == child->name && SameSpace(child->space, space)) return child;
  }
  return nullptr;
}

SchemaNode* FindDataChild(const SchemaView& view, const SchemaNode* parent, const Module* space,
                          std::string_view name) {
  const auto entered = view.dataChildren.try_emplace(parent);
  auto& children = entered.first->second;
  for (const SchemaNode* node = parent; entered.second && node != nullptr;
       node = NextSeen(parent, node))
    if (node != parent && !IsTransparent(node))
      children.emplace(node->name, const_cast<SchemaNode*>(node));
  const auto named = children.equal_range(name);
  for (auto child = named.first; child != named.second; ++child)
    if (SameSpace(child->second->space, space)) return child->second;
  return nullptr;
}

bool HoldsAnything(const SchemaNode* node) {
  if (node->keyword == Keyword::kAnydata || node->keyword == Keyword::kAnyxml) return true;
  if (!node->written || node->keyword == Keyword::kModule) return false;
  for (const xmlNode* s = FirstChild(node->statement); s != nullptr; s = NextSibling(s))
    if (Is(s, Keyword::kNone) && std::string_view(NameOf(s)) == "mount-point") return true;
  return false;
}

const std::vector<const SchemaNode*>* NodesNamed(const SchemaView& view, std::string_view name) {
  NodeIndex& index = view.index;
  for (; index.count < view.nodes.size(); ++index.count) {
    const SchemaNode* node = &view.nodes[index.count];
    if (IsDataNode(node)) index.named[node->name].push_back(node);
    if (HoldsAnything(node)) index.open.push_back(node);
  }
  const auto named = index.named.find(name);
  return named == index.named.end() ? nullptr : &named->second;
}

bool MayBeLost(const SchemaView& view, const Module* module, std::string_view name) {
  const auto tree = view.trees.find(module);
  if (tree == view.trees.end() || IsLossy(tree->second->space)) return true;
  const auto lost = view.lost.find(module);
  if (lost == view.lost.end()) return false;
  for (const xmlNode* augment : lost->second) {
    for (const xmlNode* s = augment; s != nullptr; s = NextInTree(augment, s)) {
      const char* argument = IsNodeStatement(KeywordOf(s)) ? ArgumentOf(s) : nullptr;
      if (Is(s, Keyword::kUses) || (argument != nullptr && name == argument)) return true;
    }
  }
  return false;
}

SchemaNode* NextNode(const SchemaNode* top, const SchemaNode* node) noexcept {
  return node->firstChild != nullptr ? node->firstChild : NextBehind(top, node);
}

SchemaNode* NextBehind(const SchemaNode* top, const SchemaNode* node) noexcept {
  for (; node != top; node = node->parent)
    if (node->next != nullptr) return node->next;
  return nullptr;
}

SchemaNode* DataParent(const SchemaNode* node) noexcept {
  SchemaNode* parent = node->parent;
  while (parent != nullptr && IsTransparent(parent)) parent = parent->parent;
  return parent;
}

const SchemaNode* TopOf(const SchemaNode* node) noexcept {
  while (node->parent != nullptr) node = node->parent;
  return node;
}

bool IsDataNode(const SchemaNode* node) noexcept {
  return !IsTransparent(node) && node->keyword != Keyword::kModule &&
         node->keyword != Keyword::kGrouping && node->keyword != Keyword::kNone;
}

bool MayMiss(const SchemaView& view, const SchemaNode* node) {
  return view.holes.count(node) != 0 || IsLossy(node->space);
}

bool HasHole(const SchemaView& view, const SchemaNode* node) {
  if (IsLossy(node->space)) return true;
  if (view.holes.empty()) return false;
  for (const SchemaNode* seen = node; seen != nullptr; seen = NextSeen(node, seen))
    if ((seen == node || IsTransparent(seen)) && view.holes.count(seen) != 0) return true;
  return false;
}

}  // namespace compiler
