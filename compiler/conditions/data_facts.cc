// SPDX-License-Identifier: BSD-3-Clause
#include <algorithm>
#include <charconv>
#include <vector>

#include "compiler/conditions/data_schema.h"
#include "compiler/words/path.h"

// What can be told of a node's presence and of a leaf's values.

namespace compiler {
namespace {

constexpr int kMaxTypeDepth = 64;
constexpr int kMostSafeDigits = 15;

ValueKind KindOfBuiltin(std::string_view name) {
  constexpr std::string_view kNumbers[] = {"int8",  "int16",  "int32",  "int64",
                                           "uint8", "uint16", "uint32", "uint64"};
  if (std::find(std::begin(kNumbers), std::end(kNumbers), name) != std::end(kNumbers)) {
    return ValueKind::kNumber;
  }
  if (name == "boolean") return ValueKind::kWord;
  if (name == "identityref") return ValueKind::kIdentity;
  if (name == "empty") return ValueKind::kEmpty;
  return ValueKind::kUnknown;
}

ValueKind KindOfDecimal(const xmlNode* type) {
  const xmlNode* digits = YinChild(type, Keyword::kFractionDigits);
  if (digits == nullptr) return ValueKind::kDecimal;
  const std::string_view text = YinArgument(digits);
  int count = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool safe = read.ec == std::errc() && count <= kMostSafeDigits;
  return safe ? ValueKind::kNumber : ValueKind::kDecimal;
}

// An enumeration may have names that read as numbers.
ValueKind KindOfEnumeration(const xmlNode* type) {
  for (const xmlNode* child = type->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE || YinKeyword(child) != Keyword::kEnum) continue;
    const std::string_view name = YinArgument(child);
    const char first = name.empty() ? '\0' : name[0];
    const bool isWord = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
    if (!isWord) return ValueKind::kUnknown;
  }
  return ValueKind::kWord;
}

bool InChoice(const DataNode* node) {
  return node->parent != nullptr &&
         (node->parent->keyword == Keyword::kChoice || node->parent->keyword == Keyword::kCase);
}

bool IsMandatory(const DataNode* node) {
  const xmlNode* mandatory = YinChild(node->statement, Keyword::kMandatory);
  return mandatory != nullptr && YinArgument(mandatory) == "true";
}

// A plain container stands in every message that must have something in it; with
// `defaults`, also in each that the library completes.
bool MustHoldSomething(DataSchema* schema, DataNode* container, bool defaults) {
  std::vector<DataNode*> stack = {container};
  while (!stack.empty()) {
    DataNode* node = stack.back();
    stack.pop_back();
    for (DataNode* child : schema->OwnChildren(node)) {
      if (child->conditional || child->keyword == Keyword::kChoice) continue;
      if (IsPlainContainer(child)) {
        stack.push_back(child);
        continue;
      }
      const Presence presence = PresenceOf(schema, child);
      if (presence.inMessage || (defaults && presence.byDefault)) return true;
    }
  }
  return false;
}

}  // namespace

bool IsPlainContainer(const DataNode* node) {
  return node->keyword == Keyword::kContainer &&
         YinChild(node->statement, Keyword::kPresence) == nullptr;
}

bool MayBeUnwritten(DataSchema* schema, DataNode* container) {
  if (!IsPlainContainer(container)) return false;
  DataNode* parent = container->parent;
  // A case is chosen by what is written of it.
  const bool isAlone =
      parent != nullptr &&
      (parent->keyword == Keyword::kChoice ||
       (parent->keyword == Keyword::kCase && schema->OwnChildren(parent).size() == 1));
  return !isAlone && !MustHoldSomething(schema, container, true);
}

// Many leafs ask the node that holds them, while a type or leaf, which may not hold a
// typedef, is asked for itself alone.
const xmlNode* DataSchema::TypedefIn(const xmlNode* scope, std::string_view name) {
  const Keyword keyword = YinKeyword(scope);
  if (keyword == Keyword::kType || keyword == Keyword::kLeaf || keyword == Keyword::kLeafList)
    return nullptr;
  const auto entered = inner_.try_emplace(scope);
  auto& typedefs = entered.first->second;
  for (const xmlNode* child = scope->children; entered.second && child != nullptr;
       child = child->next) {
    if (child->type == XML_ELEMENT_NODE && YinKeyword(child) == Keyword::kTypedef)
      typedefs.emplace(YinArgument(child), child);
  }
  const auto found = typedefs.find(name);
  return found == typedefs.end() ? nullptr : found->second;
}

const xmlNode* DataSchema::FindTypedef(const xmlNode* at, DataModule** module,
                                       std::string_view name) {
  const size_t colon = name.find(':');
  if (colon != std::string_view::npos) {
    *module = OfPrefix(*module, name.substr(0, colon));
    if (*module == nullptr) return nullptr;
    at = (*module)->root;
    name.remove_prefix(colon + 1);
  }
  for (const xmlNode* scope = at; scope != nullptr && scope->type == XML_ELEMENT_NODE;
       scope = scope->parent) {
    if (scope == (*module)->root) break;
    const xmlNode* definition = TypedefIn(scope, name);
    if (definition != nullptr) return definition;
  }
  const auto found = (*module)->typedefs.find(name);
  return found == (*module)->typedefs.end() ? nullptr : found->second;
}

const xmlNode* DataSchema::DefaultOf(const DataNode* leaf) {
  const xmlNode* own = YinChild(leaf->statement, Keyword::kDefault);
  if (own != nullptr) return own;
  DataModule* module = leaf->module;
  const xmlNode* type = YinChild(leaf->statement, Keyword::kType);
  for (int depth = 0; type != nullptr && depth < kMaxTypeDepth; ++depth) {
    const xmlNode* definition = FindTypedef(type, &module, YinArgument(type));
    if (definition == nullptr) return nullptr;
    const xmlNode* inherited = YinChild(definition, Keyword::kDefault);
    if (inherited != nullptr) return inherited;
    type = YinChild(definition, Keyword::kType);
  }
  return nullptr;
}

const xmlNode* DataSchema::TypeOf(const DataNode* leaf, DataModule** words) {
  DataModule* module = leaf->module;
  const xmlNode* type = YinChild(leaf->statement, Keyword::kType);
  for (int depth = 0; type != nullptr && depth < kMaxTypeDepth; ++depth) {
    DataModule* owner = module;
    const xmlNode* definition = FindTypedef(type, &owner, YinArgument(type));
    if (definition == nullptr) {
      *words = module;
      return type;
    }
    module = owner;
    type = YinChild(definition, Keyword::kType);
  }
  return nullptr;
}

ValueKind DataSchema::ValueOf(const DataNode* leaf) {
  const xmlNode* type = YinChild(leaf->statement, Keyword::kType);
  return type == nullptr ? ValueKind::kUnknown : ValueOfType(type, leaf->module, leaf, 0);
}

ValueKind DataSchema::ValueOfType(const xmlNode* type, DataModule* module, const DataNode* leaf,
                                  int depth) {
  if (type == nullptr || depth > kMaxTypeDepth) return ValueKind::kUnknown;
  const std::string_view name = YinArgument(type);
  DataModule* owner = module;
  const xmlNode* definition = FindTypedef(type, &owner, name);
  if (definition != nullptr) {
    return ValueOfType(YinChild(definition, Keyword::kType), owner, leaf, depth + 1);
  }
  if (name == "decimal64") return KindOfDecimal(type);
  if (name == "enumeration") return KindOfEnumeration(type);
  if (name == "union") return ValueOfUnion(type, module, leaf, depth);
  if (name == "leafref") return ValueOfLeafref(type, module, leaf, depth);
  return KindOfBuiltin(name);
}

ValueKind DataSchema::ValueOfUnion(const xmlNode* type, DataModule* module, const DataNode* leaf,
                                   int depth) {
  for (const xmlNode* child = type->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE || YinKeyword(child) != Keyword::kType) continue;
    const ValueKind kind = ValueOfType(child, module, leaf, depth + 1);
    const bool good =
        kind == ValueKind::kNumber || kind == ValueKind::kWord || kind == ValueKind::kNumberOrWord;
    if (!good) return ValueKind::kUnknown;
  }
  return ValueKind::kNumberOrWord;
}

// Only relative paths are followed: they stay near the leaf.
ValueKind DataSchema::ValueOfLeafref(const xmlNode* type, DataModule* module, const DataNode* leaf,
                                     int depth) {
  const xmlNode* statement = YinChild(type, Keyword::kPath);
  NodePath path;
  XpathError error;
  if (statement == nullptr || !ParseLeafrefPath(YinArgument(statement), &path, &error) ||
      path.throughDeref) {
    return ValueKind::kUnknown;
  }
  DataNode* node = path.absolute ? nullptr : DataParent(leaf);
  for (uint32_t i = 1; i < path.ups && node != nullptr; ++i) node = DataParent(node);
  for (const PathStep& step : path.steps) {
    const bool own = path.Of(step.prefix).empty() && node != nullptr;
    DataModule* wanted = own ? nullptr : OfPrefix(module, path.Of(step.prefix));
    if (!own && wanted == nullptr) return ValueKind::kUnknown;
    node = DataChild(node, wanted, path.Of(step.name));
    if (node == nullptr) return ValueKind::kUnknown;
  }
  const ValueKind kind =
      ValueOfType(YinChild(node->statement, Keyword::kType), node->module, node, depth + 1);
  // The library turns only identityrefs proper into module and name.
  return kind == ValueKind::kIdentity ? ValueKind::kUnknown : kind;
}

bool StandsBefore(const DataNode* node, const DataNode* other) {
  for (const DataNode* above = DataSchema::DataParent(other); above != nullptr;
       above = DataSchema::DataParent(above))
    if (above == node) return true;
  const DataNode* top = DataSchema::DataParent(node);
  if (top == nullptr || top != DataSchema::DataParent(other)) return false;
  if (node->module != other->module) return false;
  std::vector<const DataNode*> around;  // what `other` stands in
  for (const DataNode* one = other; one != top; one = one->parent) around.push_back(one);
  for (const DataNode* one = node; one != top; one = one->parent) {
    const auto beside = std::find_if(around.begin(), around.end(), [one](const DataNode* at) {
      return at->parent == one->parent;
    });
    if (beside == around.end()) continue;
    const std::vector<DataNode*>& own = one->parent->own;
    const auto first = std::find(own.begin(), own.end(), one);
    return first != own.end() && first < std::find(own.begin(), own.end(), *beside);
  }
  return false;
}

Presence PresenceOf(DataSchema* schema, DataNode* node) {
  Presence presence;
  if (node->conditional || InChoice(node)) return presence;
  switch (node->keyword) {
    case Keyword::kContainer:
      presence.inTree = IsPlainContainer(node);
      presence.inMessage = presence.inTree && MustHoldSomething(schema, node, false);
      return presence;
    case Keyword::kLeaf:
    case Keyword::kAnydata:
    case Keyword::kAnyxml:
      presence.inMessage = node->isKey || IsMandatory(node);
      presence.byDefault = !presence.inMessage && schema->HasDefault(node);
      presence.inTree = presence.inMessage || presence.byDefault;
      return presence;
    default:
      return presence;
  }
}

}  // namespace compiler
