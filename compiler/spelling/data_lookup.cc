// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/data_lookup.h"

#include <span>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/target.h"
#include "compiler/spelling/typedefs.h"
#include "compiler/words/node_kind.h"

namespace compiler {

namespace {

const AugmentIndex& TargetsOf(Compilation* all, Output* out) {
  const auto entered = all->data.augments.try_emplace(out);
  AugmentIndex& index = entered.first->second;
  if (!entered.second) return index;
  for (WrittenAugment& augment : out->augments)
    index.targets.emplace(augment.node, TargetOf(all, &augment));
  return index;
}

// Up from what is transparent to the node of data that holds it; none at the top.
FoundNode Settle(Compilation* all, FoundNode at) {
  while (at.node != nullptr) {
    if (Is(at.node, Keyword::kModule)) return {nullptr, at.output};
    if (Is(at.node, Keyword::kAugment)) {
      at = AugmentTarget(all, at.output, at.node);
      if (at.node == nullptr) return {};
    }
    if (!IsTransparent(KeywordOf(at.node))) return at;
    at.node = ParentOf(at.node);
  }
  return {};
}

// The next node of data among the children, through what is transparent, after `node`
// (`parent` itself at first); NULL: no more.
xmlNode* NextBelow(const xmlNode* parent, const xmlNode* node) {
  const bool goesIn = node == parent || IsTransparent(KeywordOf(node));
  const xmlNode* s = goesIn ? NextInTree(parent, node) : NextOutside(parent, node);
  while (s != nullptr) {
    const Keyword keyword = KeywordOf(s);
    if (IsDataNode(keyword) || IsOperation(keyword) || keyword == Keyword::kNotification)
      return const_cast<xmlNode*>(s);
    s = IsTransparent(keyword) ? NextInTree(parent, s) : NextOutside(parent, s);
  }
  return nullptr;
}

// So many are looked through one by one.
constexpr unsigned kFewNodes = 16;

// A node of data among the children, through what is transparent.
xmlNode* Below(Compilation* all, const xmlNode* parent, std::string_view name) {
  auto known = all->data.below.find(parent);
  unsigned looked = 0;
  for (xmlNode* s = NextBelow(parent, parent);
       known == all->data.below.end() && s != nullptr && looked < kFewNodes;
       s = NextBelow(parent, s), ++looked) {
    const char* own = ArgumentOf(s);
    if (own != nullptr && name == own) return s;
  }
  if (known == all->data.below.end()) {
    if (looked < kFewNodes) return nullptr;
    known = all->data.below.try_emplace(parent).first;
    for (xmlNode* s = NextBelow(parent, parent); s != nullptr; s = NextBelow(parent, s)) {
      if (ArgumentOf(s) != nullptr) known->second.emplace(ArgumentOf(s), s);
    }
  }
  const auto found = known->second.find(name);
  return found == known->second.end() ? nullptr : found->second;
}

Output* WrittenOutput(Compilation* all, Module* module) {
  Module* written = WrittenModule(all->repository, module->name);
  return ExpandedOutput(all, written == nullptr ? module : written);
}

const std::vector<const xmlNode*>* AugmentsInto(Compilation* all, const xmlNode* node,
                                                Output* out) {
  static_cast<void>(TargetsOf(all, out));
  AugmentIndex& index = all->data.augments[out];
  if (!index.filled) {
    index.filled = true;
    for (const WrittenAugment& augment : out->augments) {
      const FoundNode target = Settle(all, index.targets[augment.node]);
      if (target.node != nullptr) index.into[target.node].push_back(augment.node);
    }
  }
  const auto found = index.into.find(node);
  return found == index.into.end() ? nullptr : &found->second;
}

FoundNode InAugments(Compilation* all, const FoundNode& parent, Output* other,
                     std::string_view name) {
  const auto* augments = AugmentsInto(all, parent.node, other);
  for (size_t i = 0; augments != nullptr && i < augments->size(); ++i) {
    xmlNode* found = Below(all, (*augments)[i], name);
    if (found != nullptr) return {found, other};
  }
  return {};
}

}  // namespace

FoundNode DataParent(Compilation* all, const FoundNode& node) {
  return Settle(all, {ParentOf(node.node), node.output});
}

FoundNode DataChild(Compilation* all, const FoundNode& parent, Module* module,
                    std::string_view name) {
  if (module == nullptr) return {};
  Output* other = WrittenOutput(all, module);
  if (parent.node == nullptr) {
    xmlNode* top = Below(all, other->written.root, name);
    return top == nullptr ? FoundNode{} : FoundNode{top, other};
  }
  if (parent.output == other) {
    xmlNode* found = Below(all, parent.node, name);
    if (found != nullptr) return {found, other};
  }
  return InAugments(all, parent, other, name);
}

FoundNode AugmentTarget(Compilation* all, Output* out, const xmlNode* augment) {
  const AugmentIndex& index = TargetsOf(all, out);
  const auto target = index.targets.find(augment);
  return target == index.targets.end() ? FoundNode{} : target->second;
}

FoundNode LeafrefTarget(Compilation* all, const FoundNode& leaf, const xmlNode* type) {
  const xmlNode* statement = FirstChild(OriginOf(type), Keyword::kPath);
  NodePath path;
  XpathError error;
  if (statement == nullptr || ArgumentOf(statement) == nullptr ||
      !ParseLeafrefPath(ArgumentOf(statement), &path, &error) || path.throughDeref)
    return {};
  if (!path.absolute && leaf.node == nullptr) return {};
  FoundNode at = path.absolute ? FoundNode{nullptr, leaf.output} : leaf;
  for (uint32_t i = 0; i < path.ups; ++i) {
    if (at.node == nullptr) return {};
    at = DataParent(all, at);
    if (at.output == nullptr) return {};
  }
  Module* words = StatementOf(statement)->words;
  for (const PathStep& step : path.steps) {
    Module* module =
        step.prefix.empty() ? leaf.output->module : ModuleOfPrefix(words, path.Of(step.prefix));
    at = DataChild(all, at, module, path.Of(step.name));
    if (at.node == nullptr) return {};
  }
  return at;
}

namespace {

// The node that a relative path starts from: in a predicate that which it is about.
struct PathStart {
  uint32_t path = kNoXpathNode;  // the one with the predicate; none: the context node
  size_t steps = 0;
};

PathStart StartOf(const Xpath& xpath, uint32_t path) {
  for (uint32_t i = path; xpath.At(i).holder != kNoXpathNode; i = xpath.At(i).holder)
    if (xpath.At(i).stepsBefore != kNoXpathNode)
      return {xpath.At(i).holder, xpath.At(i).stepsBefore};
  return {};
}

FoundNode FollowSteps(Compilation* all, FoundNode at, const FoundNode& context, Module* words,
                      const Xpath& xpath, std::span<const XpathStep> steps) {
  for (const XpathStep& step : steps) {
    if (step.descendants) return {};
    if (step.axis == XpathAxis::kSelf && step.test == XpathTest::kNode) continue;
    if (step.axis == XpathAxis::kParent && step.test == XpathTest::kNode) {
      if (at.node == nullptr) return {};
      at = DataParent(all, at);
      if (at.output == nullptr) return {};
      continue;
    }
    if (step.axis != XpathAxis::kChild || step.test != XpathTest::kName) return {};
    Module* module =
        step.prefix.empty() ? context.output->module : ModuleOfPrefix(words, xpath.Of(step.prefix));
    at = DataChild(all, at, module, xpath.Of(step.name));
    if (at.node == nullptr) return {};
  }
  return at;
}

// The node that the first `count` steps of a path lead to.
FoundNode TargetOfSteps(Compilation* all, const FoundNode& context, Module* words,
                        const Xpath& xpath, uint32_t path, size_t count) {
  const XpathNode& node = xpath.At(path);
  if (node.kind != XpathKind::kPath || count > node.steps.size()) return {};
  const bool fromCurrent = node.operands.size() == 1 &&
                           xpath.At(node.operands[0]).kind == XpathKind::kCall &&
                           xpath.Of(xpath.At(node.operands[0]).name) == "current";
  if (!node.operands.empty() && !fromCurrent) return {};
  FoundNode at = context;
  if (node.absolute) {
    at = {nullptr, context.output};
  } else if (!fromCurrent) {
    const PathStart start = StartOf(xpath, path);
    if (start.path != kNoXpathNode)
      at = TargetOfSteps(all, context, words, xpath, start.path, start.steps);
    if (at.output == nullptr) return {};
  }
  return FollowSteps(all, at, context, words, xpath, std::span(node.steps).first(count));
}

}  // namespace

FoundNode PathTarget(Compilation* all, const FoundNode& context, Module* words, const Xpath& xpath,
                     uint32_t path) {
  return TargetOfSteps(all, context, words, xpath, path, xpath.At(path).steps.size());
}

const xmlNode* TypeOfNode(const FoundNode& node) {
  return node.node == nullptr ? nullptr : FirstChild(node.node, Keyword::kType);
}

}  // namespace compiler
