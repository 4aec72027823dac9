// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/data_schema.h"

#include <algorithm>
#include <cstring>

#include "compiler/path.h"
#include "compiler/session.h"

// The trees are walked once, with a stack of their own; augments are hung into their
// targets in rounds, as long as a round finds one, since a target may itself come from an
// augment of any module.

namespace compiler {
namespace {

const char* Text(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

const xmlNode* NextElement(const xmlNode* node) {
  while (node != nullptr && node->type != XML_ELEMENT_NODE) node = node->next;
  return node;
}

bool IsSchemaNode(Keyword keyword) {
  switch (keyword) {
    case Keyword::kContainer:
    case Keyword::kLeaf:
    case Keyword::kLeafList:
    case Keyword::kList:
    case Keyword::kChoice:
    case Keyword::kCase:
    case Keyword::kAnydata:
    case Keyword::kAnyxml:
    case Keyword::kRpc:
    case Keyword::kAction:
    case Keyword::kInput:
    case Keyword::kOutput:
    case Keyword::kNotification:
      return true;
    default:
      return false;
  }
}

bool HasNoElement(Keyword keyword) {
  return keyword == Keyword::kChoice || keyword == Keyword::kCase || keyword == Keyword::kInput ||
         keyword == Keyword::kOutput;
}

bool IsConditional(const xmlNode* statement) {
  return YinChild(statement, Keyword::kWhen) != nullptr ||
         YinChild(statement, Keyword::kIfFeature) != nullptr;
}

bool IsKeyOf(const DataNode* list, std::string_view name) {
  if (list == nullptr || list->keyword != Keyword::kList) return false;
  const xmlNode* key = YinChild(list->statement, Keyword::kKey);
  if (key == nullptr) return false;
  for (std::string_view one : SplitNames(YinArgument(key))) {
    if (one.substr(one.find(':') + 1) == name) return true;
  }
  return false;
}

bool Matches(const DataNode* node, const DataModule* module, std::string_view name) {
  return node->name == name && (module == nullptr || node->module == module);
}

// Visits what a step from `nodes` may lead to; stops when `visit` says so.
template <typename Visit>
bool VisitDataNodes(const std::vector<DataNode*>& nodes, Visit visit) {
  std::vector<const DataNode*> stack(nodes.rbegin(), nodes.rend());
  while (!stack.empty()) {
    const DataNode* node = stack.back();
    stack.pop_back();
    if (node->keyword == Keyword::kOutput) continue;
    if (!HasNoElement(node->keyword)) {
      if (visit(node)) return true;
      continue;
    }
    stack.insert(stack.end(), node->children.rbegin(), node->children.rend());
  }
  return false;
}

}  // namespace

Keyword YinKeyword(const xmlNode* element) {
  if (element->_private != nullptr) return StatementOf(element)->keyword;
  const bool isYin = element->ns != nullptr && element->ns->href != nullptr &&
                     std::strcmp(Text(element->ns->href), kYinNamespace) == 0;
  return isYin ? FindKeyword(Text(element->name)) : Keyword::kNone;
}

std::string_view YinArgument(const xmlNode* element) {
  const Keyword keyword = YinKeyword(element);
  if (keyword == Keyword::kNone) return {};
  const KeywordRow& row = RowOf(keyword);
  for (const xmlAttr* attribute = element->properties;
       attribute != nullptr && !row.argumentIsElement; attribute = attribute->next) {
    if (row.argument != Text(attribute->name)) continue;
    const xmlNode* text = attribute->children;
    return text == nullptr || text->content == nullptr ? std::string_view() : Text(text->content);
  }
  return {};
}

const xmlNode* YinChild(const xmlNode* parent, Keyword keyword) {
  const xmlNode* child = NextElement(parent->children);
  while (child != nullptr && YinKeyword(child) != keyword) child = NextElement(child->next);
  return child;
}

void DataSchema::Add(const xmlNode* root) {
  DataModule& module = modules_.emplace_back();
  module.root = root;
  module.name = YinArgument(root);
  if (const xmlNode* prefix = YinChild(root, Keyword::kPrefix)) module.prefix = YinArgument(prefix);
  if (!byName_.emplace(module.name, &module).second) return;
  for (const xmlNode* child = NextElement(root->children); child != nullptr;
       child = NextElement(child->next)) {
    const Keyword keyword = YinKeyword(child);
    if (keyword == Keyword::kImport) {
      const xmlNode* prefix = YinChild(child, Keyword::kPrefix);
      if (prefix != nullptr) module.imports.emplace(YinArgument(prefix), YinArgument(child));
    } else if (keyword == Keyword::kTypedef) {
      module.typedefs.emplace(YinArgument(child), child);
    } else if (keyword == Keyword::kAugment) {
      augments_.push_back({child, &module});
    } else if (IsSchemaNode(keyword)) {
      AddTree(child, nullptr, &module);
    }
  }
}

DataNode* DataSchema::AddNode(const xmlNode* statement, DataNode* parent,
                              const DataModule* module) {
  DataNode& node = nodes_.emplace_back();
  node.statement = statement;
  node.module = module;
  node.keyword = YinKeyword(statement);
  node.name = node.keyword == Keyword::kInput || node.keyword == Keyword::kOutput
                  ? RowOf(node.keyword).name
                  : YinArgument(statement);
  node.parent = parent;
  node.conditional = IsConditional(statement);
  node.isKey = IsKeyOf(parent, node.name);
  (parent == nullptr ? top_[module->name] : parent->children).push_back(&node);
  byStatement_[statement] = &node;
  return &node;
}

void DataSchema::AddTree(const xmlNode* top, DataNode* parent, const DataModule* module) {
  struct Entry {
    const xmlNode* statement;
    DataNode* parent;
  };
  std::vector<Entry> stack = {{top, parent}};
  std::vector<Entry> children;
  while (!stack.empty()) {
    const Entry entry = stack.back();
    stack.pop_back();
    DataNode* node = AddNode(entry.statement, entry.parent, module);
    children.clear();
    for (const xmlNode* child = NextElement(entry.statement->children); child != nullptr;
         child = NextElement(child->next)) {
      if (IsSchemaNode(YinKeyword(child))) children.push_back({child, node});
    }
    stack.insert(stack.end(), children.rbegin(), children.rend());
  }
}

DataNode* DataSchema::FindTarget(const PendingAugment& augment) const {
  NodePath path;
  XpathError error;
  if (!ParseSchemaNodeId(YinArgument(augment.statement), true, &path, &error)) return nullptr;
  DataNode* node = nullptr;
  for (const PathStep& step : path.steps) {
    const DataModule* module = OfPrefix(augment.module, path.Of(step.prefix));
    if (module == nullptr) return nullptr;
    const std::vector<DataNode*>* candidates = node == nullptr ? nullptr : &node->children;
    if (node == nullptr) {
      const auto found = top_.find(module->name);
      if (found == top_.end()) return nullptr;
      candidates = &found->second;
    }
    const auto match = std::find_if(candidates->begin(), candidates->end(), [&](DataNode* one) {
      return Matches(one, module, path.Of(step.name)) || one->name == path.Of(step.name);
    });
    if (match == candidates->end()) return nullptr;
    node = *match;
  }
  return node;
}

bool DataSchema::TryAugment(const PendingAugment& augment) {
  DataNode* target = FindTarget(augment);
  if (target == nullptr) return false;
  const bool conditional = IsConditional(augment.statement);
  for (const xmlNode* child = NextElement(augment.statement->children); child != nullptr;
       child = NextElement(child->next)) {
    if (!IsSchemaNode(YinKeyword(child))) continue;
    const size_t before = target->children.size();
    AddTree(child, target, augment.module);
    if (conditional) target->children[before]->conditional = true;
  }
  return true;
}

void DataSchema::Link() {
  for (bool found = true; found && !augments_.empty();) {
    const size_t before = augments_.size();
    std::vector<PendingAugment> left;
    for (const PendingAugment& augment : augments_) {
      if (!TryAugment(augment)) left.push_back(augment);
    }
    augments_ = std::move(left);
    found = augments_.size() < before;
  }
  augments_.clear();
}

const DataModule* DataSchema::FindModule(std::string_view name) const {
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : found->second;
}

const DataModule* DataSchema::OfPrefix(const DataModule* module, std::string_view prefix) const {
  if (prefix.empty() || prefix == module->prefix) return module;
  const auto import = module->imports.find(prefix);
  return import == module->imports.end() ? nullptr : FindModule(import->second);
}

const DataNode* DataSchema::Find(const xmlNode* statement) const {
  const auto found = byStatement_.find(statement);
  return found == byStatement_.end() ? nullptr : found->second;
}

const DataNode* DataSchema::DataParent(const DataNode* node) {
  const DataNode* parent = node->parent;
  while (parent != nullptr && HasNoElement(parent->keyword)) parent = parent->parent;
  return parent;
}

const DataNode* DataSchema::DataChild(const DataNode* parent, const DataModule* module,
                                      std::string_view name) const {
  const DataNode* found = nullptr;
  const auto visit = [&](const DataNode* node) {
    if (Matches(node, module, name)) found = node;
    return found != nullptr;
  };
  if (parent != nullptr) {
    VisitDataNodes(parent->children, visit);
    return found;
  }
  for (const auto& [moduleName, nodes] : top_) {
    const bool wanted = module == nullptr || moduleName == module->name;
    if (wanted && VisitDataNodes(nodes, visit)) break;
  }
  return found;
}

bool DataSchema::HasNamesake(const DataNode* parent, std::string_view name) const {
  if (parent == nullptr) return false;
  int count = 0;
  VisitDataNodes(parent->children, [&](const DataNode* node) {
    if (node->name == name) ++count;
    return count > 1;
  });
  return count > 1;
}

const DataNode* DataSchema::MessageOf(const DataNode* node) {
  for (const DataNode* one = node; one != nullptr; one = one->parent) {
    switch (one->keyword) {
      case Keyword::kOutput:
        return nullptr;
      case Keyword::kRpc:
      case Keyword::kAction:
        return one;
      case Keyword::kNotification:
        // The library validates those at the top only.
        return one->parent == nullptr ? one : nullptr;
      default:
        break;
    }
  }
  return nullptr;
}

}  // namespace compiler
