// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Spelling out: from models as they are published to YIN that the library loads and
// takes for the same.
//
// Of each module a tree of its own is made in steps: contents of the module and its
// submodules are copied, each `uses` as the nodes that it stands for; augments into own
// nodes move to their targets; features that are decided leave; then each argument is
// put in the words of the written module: prefixes, typedefs, paths, conditions. Last
// come the limits of the loader. The trees that were read stay as they are, and a copy
// knows its origin, so names are always looked up where they were written.
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"
#include "compiler/reading/repository.h"
#include "compiler/reading/statement.h"

namespace compiler {

// The class of what cannot be expressed in the output.
inline constexpr char kLossClass[] = "loss";

struct FeatureName {
  std::string module;
  std::string feature;  // "*": all of the module
};

struct CompileOptions {
  std::vector<FeatureName> features;  // that are on
  bool featuresComplete = false;      // all others are off
  bool dropFailing = false;           // leave out conditions that fail every request
};

// A prefix of the written module.
struct WrittenPrefix {
  std::string prefix;
  Module* module = nullptr;
};

struct Compilation;

// One step of a target path.
struct TargetStep {
  Module* module = nullptr;  // NULL: the prefix is not known
  std::string_view name;     // of the argument of the statement's origin
};

// A condition that was left out, and where it stood.
struct DroppedCondition {
  const xmlNode* parent = nullptr;
  LooseStatement statement;
};

struct Output;

// A node of an expanded tree, and the output that it stands in.
struct FoundNode {
  xmlNode* node = nullptr;  // NULL: there is none
  Output* output = nullptr;
};

// An augment of the top level.
struct WrittenAugment {
  xmlNode* node = nullptr;
  std::vector<TargetStep> steps;  // empty: its target is no path
  FoundNode target;               // once it was looked for
  bool looked = false;
};

// Nodes by name.
using NamedNodes = std::unordered_map<std::string_view, xmlNode*>;

// A module that is being written.
struct Output {
  Compilation* all = nullptr;
  Module* module = nullptr;                          // as it was read
  Module written;                                    // the tree to be written
  std::vector<WrittenPrefix> prefixes;               // its own comes first
  xmlNode* lastImport = nullptr;                     // where the next one is put
  std::vector<WrittenAugment> augments;              // into other modules, in order
  std::unordered_map<std::string, NamedNodes> hung;  // what these bring, by their target
  bool hungFilled = false;
  bool casesWrapped = false;  // of these augments
  // Typedefs that moved to the level of the module, by their definition, and by the leaf that
  // a deviation gives one to when its paths depend on that; and the leafs of these.
  std::map<std::pair<const xmlNode*, const xmlNode*>, std::string> hoisted;
  std::unordered_map<const xmlNode*, FoundNode> leafsOfTypedefs;
  std::unordered_set<std::string> typedefNames;
  std::unordered_map<std::string, unsigned> typedefNumbers;  // the last that made a name free
  // The leafs whose types were copied into unions, by the copies.
  std::unordered_map<const xmlNode*, FoundNode> copiedTypes;
  size_t typesInUnions = 0;  // that came so
  // Nodes that have left the tree. Paths of other modules may have led to them.
  std::vector<LooseStatement> removed;
  // The same by what they stood in, and what lost one and is to be looked at again.
  std::unordered_map<const xmlNode*, std::vector<const xmlNode*>> left;
  std::vector<xmlNode*> lessened;
  std::unordered_set<const xmlNode*> withoutDefault;  // choices that something has left
  NamedNodes lostIdentities;  // those among them, until one that stays has it as its base
  // Defaults that have left, as they were read, by what had them.
  std::unordered_map<const xmlNode*, std::vector<std::string>> lostDefaults;
  // The enums and bits of types, as they were read, that depend on a feature that is off.
  std::unordered_map<const xmlNode*, std::unordered_set<std::string_view>> itemsOff;
  // The inputs and outputs that operations do not write, as far as a path led to them.
  std::map<std::pair<const xmlNode*, Keyword>, LooseStatement> implied;
  std::vector<DroppedCondition> dropped;
  unsigned depth = 0;    // of copies, while they are made
  bool stopped = false;  // has an error that stops it
  Report report;         // what is wrong or lost
};

// How much something is once it is spelled out.
struct Size {
  uint64_t nodes = 0;
  uint64_t bytes = 0;
};

// The augments of one output by the nodes that they lead to.
struct AugmentIndex {
  std::unordered_map<const xmlNode*, FoundNode> targets;                 // by augment
  std::unordered_map<const xmlNode*, std::vector<const xmlNode*>> into;  // by node of data
  bool filled = false;                                                   // `into` is
};

// What lookups of data have learned of the trees. They begin when arguments are put in
// the words of the written module, from when on no node of a schema comes or goes.
struct DataIndex {
  // Nodes of data by name, of parents that hold many.
  std::unordered_map<const xmlNode*, std::unordered_map<std::string_view, xmlNode*>> below;
  std::unordered_map<const Output*, AugmentIndex> augments;
};

// The conditions of one node, the first of each kind.
struct MustIndex {
  std::unordered_map<std::string, const xmlNode*> byMeaning;
  std::unordered_map<std::string_view, const xmlNode*> byText;  // as it was written
  std::unordered_map<std::string, const xmlNode*> byWritten;    // with modules in literals
};

// One call of the compiler.
struct Compilation {
  Session* session = nullptr;
  Repository* repository = nullptr;
  Report* report = nullptr;
  CompileOptions options;
  std::map<Module*, std::unique_ptr<Output>> outputs;
  std::unordered_map<const xmlNode*, Size> groupingSizes;
  std::unordered_map<Module*, bool> sound;  // whether it and what it needs can be compiled
  std::unordered_map<const Statement*, NamedNodes> children;  // of nodes that have many
  DataIndex data;
  // Leafrefs of typedefs, as they were read, whose target has left, and the type that has
  // taken their place with the leaf that has it.
  std::unordered_map<const xmlNode*, std::pair<const xmlNode*, FoundNode>> settledLeafrefs;
  std::unordered_map<const xmlNode*, MustIndex> musts;  // of nodes that deviations delete from
};

// The tree of a module with all of its nodes, made when it is first asked for; enough
// to look nodes up. Never NULL.
Output* ExpandedOutput(Compilation* all, Module* module);

// All modules that the written form imports, in order.
std::vector<Module*> WrittenImports(Compilation* all, const Output& out);

// Compiles the modules and all that they import: each once, those named first. What is
// `stopped` is not to be written.
std::vector<Output*> CompileAll(Compilation* all, const std::vector<Module*>& modules);

// An error that makes the output meaningless.
void Stop(Output* out, const char* group, const xmlNode* at, std::string message,
          std::string advice = {});

// Something that the output cannot express.
void Lose(Output* out, const xmlNode* at, std::string message);

}  // namespace compiler
