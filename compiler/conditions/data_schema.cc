// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/conditions/data_schema.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "compiler/reading/session.h"
#include "compiler/words/path.h"

// A node is made when it is first asked for. Augments of a module are hung into their
// targets when a node of one is asked for, or a step into that module from another one;
// targets are in modules that it imports, so this ends.

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

// So many are looked through one by one.
constexpr size_t kFewChildren = 16;

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

DataModule* DataSchema::FindModule(std::string_view name) {
  const auto known = byName_.find(name);
  if (known != byName_.end()) return known->second;
  const xmlNode* root = find_(name);
  DataModule*& place = byName_[std::string(name)];
  if (root == nullptr) return nullptr;
  DataModule& module = modules_.emplace_back();
  place = &module;
  module.root = root;
  module.name = YinArgument(root);
  if (const xmlNode* prefix = YinChild(root, Keyword::kPrefix)) module.prefix = YinArgument(prefix);
  for (const xmlNode* child = NextElement(root->children); child != nullptr;
       child = NextElement(child->next)) {
    const Keyword keyword = YinKeyword(child);
    if (keyword == Keyword::kImport) {
      const xmlNode* prefix = YinChild(child, Keyword::kPrefix);
      if (prefix != nullptr) module.imports.emplace(YinArgument(prefix), YinArgument(child));
    } else if (keyword == Keyword::kTypedef) {
      module.typedefs.emplace(YinArgument(child), child);
    }
  }
  return &module;
}

DataModule* DataSchema::OfPrefix(DataModule* module, std::string_view prefix) {
  if (prefix.empty() || prefix == module->prefix) return module;
  const auto import = module->imports.find(prefix);
  return import == module->imports.end() ? nullptr : FindModule(import->second);
}

bool DataSchema::IsKeyOf(const DataNode* list, std::string_view name) {
  if (list == nullptr || list->keyword != Keyword::kList) return false;
  const auto entered = keys_.try_emplace(list);
  std::unordered_set<std::string_view>& names = entered.first->second;
  const xmlNode* key = entered.second ? YinChild(list->statement, Keyword::kKey) : nullptr;
  if (key != nullptr) {
    for (const std::string_view one : SplitNames(YinArgument(key)))
      names.insert(one.substr(one.find(':') + 1));
  }
  return names.count(name) != 0;
}

DataNode* DataSchema::AddNode(const xmlNode* statement, DataNode* parent, DataModule* module) {
  DataNode*& place = byStatement_[statement];
  if (place != nullptr) return place;
  DataNode& node = nodes_.emplace_back();
  place = &node;
  node.statement = statement;
  node.module = module;
  node.keyword = YinKeyword(statement);
  node.name = node.keyword == Keyword::kInput || node.keyword == Keyword::kOutput
                  ? RowOf(node.keyword).name
                  : YinArgument(statement);
  node.parent = parent;
  node.conditional = IsConditional(statement);
  node.hasWhen = YinChild(statement, Keyword::kWhen) != nullptr;
  node.isKey = IsKeyOf(parent, node.name);
  return &node;
}

const std::vector<DataNode*>& DataSchema::TopOf(DataModule* module) {
  const auto known = top_.find(module);
  if (known != top_.end()) return known->second;
  std::vector<DataNode*>& nodes = top_[module];
  for (const xmlNode* child = NextElement(module->root->children); child != nullptr;
       child = NextElement(child->next)) {
    if (IsSchemaNode(YinKeyword(child))) nodes.push_back(AddNode(child, nullptr, module));
  }
  return nodes;
}

// An operation has an input and an output whether they are written or not (RFC 7950,
// sections 7.14.2 and 7.14.3).
void DataSchema::AddImplied(DataNode* operation, Keyword keyword) {
  if (YinChild(operation->statement, keyword) != nullptr) return;
  DataNode& node = nodes_.emplace_back();
  node.statement = operation->statement;
  node.module = operation->module;
  node.keyword = keyword;
  node.name = RowOf(keyword).name;
  node.parent = operation;
  node.filled = true;
  operation->own.push_back(&node);
}

const std::vector<DataNode*>& DataSchema::OwnChildren(DataNode* node) {
  if (node->filled) return node->own;
  node->filled = true;
  for (const xmlNode* child = NextElement(node->statement->children); child != nullptr;
       child = NextElement(child->next)) {
    if (IsSchemaNode(YinKeyword(child))) node->own.push_back(AddNode(child, node, node->module));
  }
  if (node->keyword == Keyword::kRpc || node->keyword == Keyword::kAction) {
    AddImplied(node, Keyword::kInput);
    AddImplied(node, Keyword::kOutput);
  }
  return node->own;
}

// One step of a schema node identifier that `words` wrote.
DataNode* DataSchema::Step(DataNode* node, DataModule* module, std::string_view name,
                           DataModule* words) {
  if (node != nullptr && node->module != module && module != words) Link(module);
  const std::vector<DataNode*> none;
  const std::vector<DataNode*>& own = node == nullptr ? TopOf(module) : OwnChildren(node);
  const std::vector<DataNode*>& augmented = node == nullptr ? none : node->augmented;
  const auto wanted = [&](const std::vector<DataNode*>& nodes) -> DataNode* {
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const DataNode* one) {
      return one->name == name && one->module == module;
    });
    return found == nodes.end() ? nullptr : *found;
  };
  if (own.size() + augmented.size() <= kFewChildren) {
    DataNode* found = wanted(own);
    return found != nullptr ? found : wanted(augmented);
  }
  StepNames& names = steps_[node == nullptr ? static_cast<const void*>(module) : node];
  for (; names.own < own.size(); ++names.own)
    names.named[own[names.own]->name].push_back(own[names.own]);
  for (; names.augmented < augmented.size(); ++names.augmented)
    names.named[augmented[names.augmented]->name].push_back(augmented[names.augmented]);
  const auto named = names.named.find(name);
  return named == names.named.end() ? nullptr : wanted(named->second);
}

DataNode* DataSchema::FindTarget(DataModule* module, std::string_view path) {
  NodePath read;
  XpathError error;
  if (!ParseSchemaNodeId(path, true, &read, &error)) return nullptr;
  DataNode* node = nullptr;
  for (const PathStep& step : read.steps) {
    DataModule* owner = OfPrefix(module, read.Of(step.prefix));
    node = owner == nullptr ? nullptr : Step(node, owner, read.Of(step.name), module);
    if (node == nullptr) return nullptr;
  }
  return node;
}

// In the order of the text, in which each target stands before it is augmented.
// The node is seen below the target, and from above as far as what is between has no element.
void DataSchema::Hang(DataNode* node, DataNode* target) {
  target->augmented.push_back(node);
  for (const DataNode* above = target; above != nullptr; above = above->parent) {
    hung_[above].push_back(node);
    if (!HasNoElement(above->keyword) || above->keyword == Keyword::kOutput) break;
  }
}

void DataSchema::Link(DataModule* module) {
  if (module->linked) return;
  module->linked = true;
  for (const xmlNode* augment = NextElement(module->root->children); augment != nullptr;
       augment = NextElement(augment->next)) {
    if (YinKeyword(augment) != Keyword::kAugment) continue;
    DataNode* target = FindTarget(module, YinArgument(augment));
    const bool conditional = IsConditional(augment);
    const bool hasWhen = YinChild(augment, Keyword::kWhen) != nullptr;
    for (const xmlNode* child = NextElement(augment->children); child != nullptr;
         child = NextElement(child->next)) {
      if (!IsSchemaNode(YinKeyword(child))) continue;
      DataNode* node = AddNode(child, target, module);
      if (conditional) node->conditional = true;
      if (hasWhen) node->hasWhen = true;
      if (target != nullptr) Hang(node, target);
    }
  }
}

void DataSchema::LinkAllKnownTo(DataModule* module) {
  if (module->knowsAll) return;
  module->knowsAll = true;
  Link(module);
  for (const auto& import : module->imports) {
    DataModule* imported = FindModule(import.second);
    if (imported == nullptr) continue;
    Link(imported);
    module->known.insert(imported);
  }
}

DataNode* DataSchema::Find(const xmlNode* statement) {
  std::vector<const xmlNode*> below;
  const xmlNode* at = statement;
  for (; at != nullptr && at->type == XML_ELEMENT_NODE && byStatement_.count(at) == 0;
       at = at->parent) {
    const Keyword keyword = YinKeyword(at);
    if (keyword == Keyword::kModule || keyword == Keyword::kAugment) break;
    below.push_back(at);
  }
  if (at == nullptr || at->type != XML_ELEMENT_NODE || below.empty()) {
    // A root or an augment is none, and must not become one here.
    const auto known = byStatement_.find(statement);
    return known == byStatement_.end() ? nullptr : known->second;
  }
  const xmlNode* root = at;
  while (root->parent != nullptr && root->parent->type == XML_ELEMENT_NODE) root = root->parent;
  DataModule* module = FindModule(YinArgument(root));
  if (module == nullptr || module->root != root) return nullptr;
  if (YinKeyword(at) == Keyword::kAugment) Link(module);
  if (YinKeyword(at) == Keyword::kModule) TopOf(module);
  for (auto one = below.rbegin(); one != below.rend(); ++one) {
    const auto parent = byStatement_.find((*one)->parent);
    if (parent != byStatement_.end()) OwnChildren(parent->second);
    if (byStatement_.count(*one) == 0) return nullptr;
  }
  return byStatement_[statement];
}

DataNode* DataSchema::DataParent(const DataNode* node) {
  DataNode* parent = node->parent;
  while (parent != nullptr && HasNoElement(parent->keyword)) parent = parent->parent;
  return parent;
}

// Enters what data see of the nodes, the last first.
void DataSchema::EnterNames(std::vector<DataNode*> stack, bool augmented, DataNames* names) {
  const auto add = [&](const std::vector<DataNode*>& nodes) {
    stack.insert(stack.end(), nodes.rbegin(), nodes.rend());
  };
  while (!stack.empty()) {
    DataNode* node = stack.back();
    stack.pop_back();
    if (node->keyword == Keyword::kOutput) continue;
    if (!HasNoElement(node->keyword)) {
      names->named[node->name].push_back(node);
      continue;
    }
    if (augmented) add(node->augmented);
    add(OwnChildren(node));
  }
}

// Names are looked up often in one place, and there may be many: each place is walked
// through once, and what modules hang there afterwards is entered when it is asked again.
const DataNames& DataSchema::NamesBelow(DataNode* parent, DataModule* module) {
  const void* place = parent == nullptr ? static_cast<const void*>(module) : parent;
  DataNames& names = module == nullptr ? ownNames_[place] : allNames_[place];
  const bool augmented = module != nullptr && parent != nullptr;
  const std::vector<DataNode*>* hung = augmented ? &hung_[parent] : nullptr;
  if (!names.filled) {
    std::vector<DataNode*> nodes;
    if (augmented) nodes.assign(parent->augmented.rbegin(), parent->augmented.rend());
    if (parent != nullptr || module != nullptr) {
      const std::vector<DataNode*>& own = parent == nullptr ? TopOf(module) : OwnChildren(parent);
      nodes.insert(nodes.end(), own.rbegin(), own.rend());
    }
    EnterNames(std::move(nodes), augmented, &names);
    names.filled = true;
  } else if (augmented && names.hung != hung->size()) {
    const auto first = hung->begin() + static_cast<std::ptrdiff_t>(names.hung);
    EnterNames({first, hung->end()}, true, &names);
  }
  if (augmented) names.hung = hung->size();
  return names;
}

DataNode* DataSchema::DataChild(DataNode* parent, DataModule* module, std::string_view name) {
  if (parent == nullptr && module == nullptr) return nullptr;
  if (module != nullptr && (parent == nullptr || parent->module != module)) Link(module);
  const DataNames& names = NamesBelow(parent, module);
  const auto named = names.named.find(name);
  if (named == names.named.end()) return nullptr;
  for (DataNode* node : named->second) {
    if (module == nullptr || node->module == module) return node;
  }
  return nullptr;
}

bool DataSchema::HasNamesake(DataNode* parent, const DataNode* child, DataModule* words) {
  if (parent == nullptr) return false;
  const DataNode* own = DataChild(parent, nullptr, child->name);
  if (own != nullptr && own != child) return true;
  LinkAllKnownTo(words);
  const DataNames& names = NamesBelow(parent, words);
  const auto named = names.named.find(child->name);
  if (named == names.named.end()) return false;
  return std::any_of(named->second.begin(), named->second.end(), [&](const DataNode* node) {
    return node != child && (node->module == words || words->known.count(node->module) != 0);
  });
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
