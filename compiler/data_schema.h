// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The schema of modules that are spelled out, as conditions see it: data nodes, and what
// a message may have of them. Built from YIN trees alone; trees must stay as long as it.
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "compiler/keyword.h"
#include "compiler/records.h"

namespace compiler {

struct DataModule {
  const xmlNode* root = nullptr;
  std::string_view name;
  std::string_view prefix;
  std::map<std::string_view, std::string_view> imports;  // prefix to module name
  std::map<std::string_view, const xmlNode*> typedefs;
};

// A node of the schema: a data node, an operation, a notification, a choice, case, input
// or output. Nodes of an augment hang below its target.
struct DataNode {
  const xmlNode* statement = nullptr;
  const DataModule* module = nullptr;
  std::string_view name;
  Keyword keyword = Keyword::kNone;
  DataNode* parent = nullptr;  // NULL: at the top of a module
  std::vector<DataNode*> children;
  bool conditional = false;  // a when or if-feature of its own or of its augment
  bool isKey = false;
};

// What is known of the texts of a leaf.
enum class ValueKind : uint8_t {
  kUnknown,  // any text
  kNumber,   // an integer or a decimal64 of at most 15 fraction digits
  kDecimal,  // a decimal64 with more: it may be smaller than what the library takes for 0
  kWord,     // never empty and never a number: enumeration, boolean
  kNumberOrWord,
  kIdentity,  // identityref
  kEmpty,
};

class DataSchema {
 public:
  // Adds a module, whose root is given. Call Link() when all are there.
  void Add(const xmlNode* root);
  void Link();

  const DataModule* FindModule(std::string_view name) const;
  // The module that a prefix means in `module`; empty: itself. NULL: not known.
  const DataModule* OfPrefix(const DataModule* module, std::string_view prefix) const;
  // NULL: the statement is no node of the schema.
  const DataNode* Find(const xmlNode* statement) const;

  // The closest ancestor that a message has an element for; NULL: the root.
  static const DataNode* DataParent(const DataNode* node);
  // The child that a path's step means below `parent` (NULL: the root). Without a module
  // the first of that name. Choices and cases are looked through, outputs are not.
  const DataNode* DataChild(const DataNode* parent, const DataModule* module,
                            std::string_view name) const;
  // More than one child of that name, of whatever module.
  bool HasNamesake(const DataNode* parent, std::string_view name) const;

  // The operation or notification that a message consists of, around the node or the node
  // itself; NULL: the node is no part of one, or of an output, and is not validated.
  static const DataNode* MessageOf(const DataNode* node);

  ValueKind ValueOf(const DataNode* leaf) const;
  // Of its own or of a typedef.
  bool HasDefault(const DataNode* leaf) const;
  // The type statement at the end of the typedefs, and the module that it is written in;
  // NULL: it cannot be told.
  const xmlNode* TypeOf(const DataNode* leaf, const DataModule** words) const;

 private:
  struct PendingAugment {
    const xmlNode* statement;
    const DataModule* module;
  };

  void AddImports(DataModule* module) const;
  void AddTree(const xmlNode* top, DataNode* parent, const DataModule* module);
  bool TryAugment(const PendingAugment& augment);
  DataNode* FindTarget(const PendingAugment& augment) const;
  ValueKind ValueOfType(const xmlNode* type, const DataModule* module, const DataNode* leaf,
                        int depth) const;
  ValueKind ValueOfUnion(const xmlNode* type, const DataModule* module, const DataNode* leaf,
                         int depth) const;
  ValueKind ValueOfLeafref(const xmlNode* type, const DataModule* module, const DataNode* leaf,
                           int depth) const;
  const xmlNode* FindTypedef(const xmlNode* at, const DataModule** module,
                             std::string_view name) const;
  DataNode* AddNode(const xmlNode* statement, DataNode* parent, const DataModule* module);

  std::deque<DataModule> modules_;
  std::deque<DataNode> nodes_;
  std::map<std::string_view, DataModule*> byName_;
  std::map<std::string_view, std::vector<DataNode*>> top_;  // by module name
  std::map<const xmlNode*, DataNode*> byStatement_;
  std::vector<PendingAugment> augments_;
};

// Whether a leaf is there in every message that has its parent, and the same for the tree
// that conditions are written for, in which defaults and containers without presence exist.
struct Presence {
  bool inMessage = false;
  bool inTree = false;
  bool byDefault = false;  // a default that the library adds to requests, not to notifications
};
Presence PresenceOf(const DataSchema& schema, const DataNode* node);

bool IsPlainContainer(const DataNode* node);  // a container without presence

// The argument of an element of YIN, and the first substatement of that keyword.
std::string_view YinArgument(const xmlNode* element);
const xmlNode* YinChild(const xmlNode* parent, Keyword keyword);
Keyword YinKeyword(const xmlNode* element);

}  // namespace compiler
