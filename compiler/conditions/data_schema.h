// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The schema of modules that are spelled out, as conditions see it: data nodes, and what
// a message may have of them. It looks at YIN trees alone, and only at what it is asked
// about; trees must stay as long as it, and their schema nodes as they are.
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "compiler/reading/records.h"
#include "compiler/words/keyword.h"

namespace compiler {

struct DataNode;

struct DataModule {
  const xmlNode* root = nullptr;
  std::string_view name;
  std::string_view prefix;
  std::map<std::string_view, std::string_view> imports;  // prefix to module name
  std::map<std::string_view, const xmlNode*> typedefs;
  bool linked = false;    // its augments hang below their targets
  bool knowsAll = false;  // those of its imports do, too, and `known` is filled
  std::unordered_set<const DataModule*> known;  // its imports
};

// A node of the schema: a data node, an operation, a notification, a choice, case, input
// or output. Nodes of an augment hang below its target.
struct DataNode {
  const xmlNode* statement = nullptr;  // of an input or output not written: the operation's
  DataModule* module = nullptr;
  std::string_view name;
  Keyword keyword = Keyword::kNone;
  DataNode* parent = nullptr;  // NULL: at the top of a module, or the target is not known
  bool conditional = false;    // a when or if-feature of its own or of its augment
  bool hasWhen = false;        // a when, likewise
  bool isKey = false;
  bool filled = false;               // `own` is
  std::vector<DataNode*> own;        // children that stand in the statement
  std::vector<DataNode*> augmented;  // children that augments hang there, as far as linked
};

// The nodes that data see below one node, by name, those of one name in order.
struct DataNames {
  std::unordered_map<std::string_view, std::vector<DataNode*>> named;
  bool filled = false;
  size_t hung = 0;  // how many of the nodes that augments hang there are entered
};

// The children that steps of schema node identifiers name, as far as they were put in.
struct StepNames {
  std::unordered_map<std::string_view, std::vector<DataNode*>> named;
  size_t own = 0;
  size_t augmented = 0;
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

// The tree of a module; NULL: there is none.
using TreeFinder = std::function<const xmlNode*(std::string_view module)>;

class DataSchema {
 public:
  explicit DataSchema(TreeFinder find) : find_(std::move(find)) {}
  DataSchema(const DataSchema&) = delete;
  DataSchema& operator=(const DataSchema&) = delete;

  DataModule* FindModule(std::string_view name);
  // The module that a prefix means in `module`; empty: itself. NULL: not known.
  DataModule* OfPrefix(DataModule* module, std::string_view prefix);
  // NULL: the statement is no node of the schema.
  DataNode* Find(const xmlNode* statement);
  // The node that a target path leads to, written in `module`.
  DataNode* FindTarget(DataModule* module, std::string_view path);

  // The closest ancestor that a message has an element for; NULL: the root.
  static DataNode* DataParent(const DataNode* node);
  // The child that a path's step means below `parent` (NULL: the root). Without a module
  // the first of that name among those that stand in the parent's own module. Choices
  // and cases are looked through, outputs are not.
  DataNode* DataChild(DataNode* parent, DataModule* module, std::string_view name);
  // True where the parent has another child of that name, as far as `words` knows: in its own
  // module, or hung there by `words` or one of its imports.
  bool HasNamesake(DataNode* parent, const DataNode* child, DataModule* words);
  const std::vector<DataNode*>& OwnChildren(DataNode* node);

  // The operation or notification that a message consists of, around the node or the node
  // itself; NULL: the node is no part of one, or of an output, and is not validated.
  static const DataNode* MessageOf(const DataNode* node);

  ValueKind ValueOf(const DataNode* leaf);
  // The first of its own or that of a typedef; NULL: there is none.
  const xmlNode* DefaultOf(const DataNode* leaf);
  bool HasDefault(const DataNode* leaf) { return DefaultOf(leaf) != nullptr; }
  // The type statement at the end of the typedefs, and the module that it is written in;
  // NULL: it cannot be told.
  const xmlNode* TypeOf(const DataNode* leaf, DataModule** words);

 private:
  void Link(DataModule* module);
  void Hang(DataNode* node, DataNode* target);
  void EnterNames(std::vector<DataNode*> stack, bool augmented, DataNames* names);
  void LinkAllKnownTo(DataModule* module);
  DataNode* Step(DataNode* node, DataModule* module, std::string_view name, DataModule* words);
  bool IsKeyOf(const DataNode* list, std::string_view name);
  DataNode* AddNode(const xmlNode* statement, DataNode* parent, DataModule* module);
  void AddImplied(DataNode* operation, Keyword keyword);
  const std::vector<DataNode*>& TopOf(DataModule* module);
  ValueKind ValueOfType(const xmlNode* type, DataModule* module, const DataNode* leaf, int depth);
  ValueKind ValueOfUnion(const xmlNode* type, DataModule* module, const DataNode* leaf, int depth);
  ValueKind ValueOfLeafref(const xmlNode* type, DataModule* module, const DataNode* leaf,
                           int depth);
  const xmlNode* FindTypedef(const xmlNode* at, DataModule** module, std::string_view name);
  const xmlNode* TypedefIn(const xmlNode* scope, std::string_view name);
  const DataNames& NamesBelow(DataNode* parent, DataModule* module);

  TreeFinder find_;
  std::deque<DataModule> modules_;
  std::deque<DataNode> nodes_;
  std::map<std::string, DataModule*, std::less<>> byName_;  // NULL: there is none
  std::unordered_map<const DataModule*, std::vector<DataNode*>> top_;
  std::unordered_map<const xmlNode*, DataNode*> byStatement_;
  // Typedefs further in by the statement that holds them, as far as it was asked for.
  std::unordered_map<const xmlNode*, std::unordered_map<std::string_view, const xmlNode*>> inner_;
  std::unordered_map<const void*, DataNames> ownNames_;  // by parent
  std::unordered_map<const void*, DataNames> allNames_;  // with augments; by parent or module
  std::unordered_map<const void*, StepNames> steps_;     // by parent or module, of many children
  std::unordered_map<const DataNode*, std::unordered_set<std::string_view>> keys_;  // by list
  // What augments have hung below a node, as data see it; by that node.
  std::unordered_map<const DataNode*, std::vector<DataNode*>> hung_;
};

// Whether a leaf is there in every message that has its parent, and the same for the tree
// that conditions are written for, in which defaults and containers without presence exist.
struct Presence {
  bool inMessage = false;
  bool inTree = false;
  bool byDefault = false;  // a default that the library adds to requests, not to notifications
};
Presence PresenceOf(DataSchema* schema, DataNode* node);

bool IsPlainContainer(const DataNode* node);  // a container without presence

// True where a request may lack the container's element, for which the library then asks no
// `must`, while XPath has the container all the same.
bool MayBeUnwritten(DataSchema* schema, DataNode* container);

// True when `node` stands before `other` wherever the library adds it: it adds defaults in
// the order of the schema, before what follows of the same module; nodes of others may
// stand anywhere. Said of siblings, as data see them, and of what stands above.
bool StandsBefore(const DataNode* node, const DataNode* other);

// The argument of an element of YIN, and the first substatement of that keyword.
std::string_view YinArgument(const xmlNode* element);
const xmlNode* YinChild(const xmlNode* parent, Keyword keyword);
Keyword YinKeyword(const xmlNode* element);

}  // namespace compiler
