// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/data_lookup.h"

#include "compiler/node_kind.h"
#include "compiler/statement.h"
#include "compiler/symbols.h"
#include "compiler/target.h"
#include "compiler/typedefs.h"

namespace compiler {

namespace {

// Nodes that data looks through.
bool IsTransparent(Keyword keyword) {
  return keyword == Keyword::kChoice || keyword == Keyword::kCase || keyword == Keyword::kInput ||
         keyword == Keyword::kOutput;
}

// Up from what is transparent to the node of data that holds it; none at the top.
FoundNode Settle(Compilation* all, FoundNode at) {
  while (at.node != nullptr) {
    if (Is(at.node, Keyword::kModule)) return {nullptr, at.output};
    if (Is(at.node, Keyword::kAugment)) {
      FoundNode target;
      for (WrittenAugment& augment : at.output->augments) {
        if (augment.node == at.node) target = TargetOf(all, &augment);
      }
      at = target;
      if (at.node == nullptr) return {};
    }
    if (!IsTransparent(KeywordOf(at.node))) return at;
    at.node = ParentOf(at.node);
  }
  return {};
}

bool HasName(const xmlNode* node, std::string_view name) {
  const char* own = ArgumentOf(node);
  return own != nullptr && name == own;
}

// A node of data among the children, through what is transparent.
xmlNode* Below(const xmlNode* parent, std::string_view name) {
  for (const xmlNode* s = FirstChild(parent); s != nullptr;) {
    const Keyword keyword = KeywordOf(s);
    const bool isNode =
        IsDataNode(keyword) || IsOperation(keyword) || keyword == Keyword::kNotification;
    if (isNode && HasName(s, name)) return const_cast<xmlNode*>(s);
    s = IsTransparent(keyword) ? NextInTree(parent, s) : NextOutside(parent, s);
  }
  return nullptr;
}

Output* WrittenOutput(Compilation* all, Module* module) {
  Module* written = WrittenModule(all->repository, module->name);
  return ExpandedOutput(all, written == nullptr ? module : written);
}

FoundNode InAugments(Compilation* all, const FoundNode& parent, Output* other,
                     std::string_view name) {
  for (WrittenAugment& augment : other->augments) {
    const FoundNode target = Settle(all, TargetOf(all, &augment));
    if (target.node != parent.node) continue;
    xmlNode* found = Below(augment.node, name);
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
    xmlNode* top = Below(other->written.root, name);
    return top == nullptr ? FoundNode{} : FoundNode{top, other};
  }
  if (parent.output == other) {
    xmlNode* found = Below(parent.node, name);
    if (found != nullptr) return {found, other};
  }
  return InAugments(all, parent, other, name);
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

FoundNode PathTarget(Compilation* all, const FoundNode& context, Module* words, const Xpath& xpath,
                     uint32_t path) {
  const XpathNode& node = xpath.At(path);
  if (node.kind != XpathKind::kPath) return {};
  const bool fromCurrent = node.operands.size() == 1 &&
                           xpath.At(node.operands[0]).kind == XpathKind::kCall &&
                           xpath.Of(xpath.At(node.operands[0]).name) == "current";
  if (!node.operands.empty() && !fromCurrent) return {};
  FoundNode at = node.absolute ? FoundNode{nullptr, context.output} : context;
  for (const XpathStep& step : node.steps) {
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

const xmlNode* TypeOfNode(const FoundNode& node) {
  return node.node == nullptr ? nullptr : FirstChild(node.node, Keyword::kType);
}

}  // namespace compiler
