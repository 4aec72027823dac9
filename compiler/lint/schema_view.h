// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The schema as it is meant: a tree of nodes that point at the statements which define
// them, with what `uses`, `refine` and `augment` bring. Nothing is copied and nothing is
// changed, so it can be had of modules that have errors: what cannot be followed is
// left out and noted. Deviations are not applied, since it is the author of the module
// who is to be told.
#include <deque>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "compiler/reading/records.h"

namespace compiler {

struct SchemaNode;

// The children of one node by name, those of one name in their order.
using ChildrenByName = std::unordered_map<std::string_view, std::vector<SchemaNode*>>;

struct SchemaNode {
  xmlNode* statement = nullptr;      // of a case that is not written: that of its only child;
                                     // of an input or output that is not: that of the rpc
  Keyword keyword = Keyword::kNone;  // kModule, kGrouping, kNone (of data): the top of a tree
  Module* space = nullptr;           // whose namespace the node has
  const char* name = "";
  SchemaNode* parent = nullptr;
  SchemaNode* firstChild = nullptr;
  SchemaNode* lastChild = nullptr;
  SchemaNode* next = nullptr;
  const Place* usedAt = nullptr;  // the outermost `uses` that brought it; NULL: none
  mutable uint8_t config = 0;     // what ConfigOf() found, and one more; 0: not asked yet
  bool written = true;            // false: the case, input or output is not written
  bool augmented = false;         // brought by an augment of a module
  std::vector<xmlNode*> changes;  // refine statements, innermost first
  mutable std::unique_ptr<ChildrenByName> byName;  // once a name was looked for among many
};

// An augment or a refine, and what its path leads to.
struct TargetView {
  xmlNode* statement = nullptr;
  SchemaNode* start = nullptr;    // where its path begins
  SchemaNode* target = nullptr;   // NULL: the path leads nowhere
  SchemaNode* reached = nullptr;  // the last node on the way
  SchemaNode* first = nullptr;    // what an augment or uses has brought there, up to `last`
  SchemaNode* last = nullptr;
  std::string_view failed;  // the step that was not found
  const Place* usedAt = nullptr;
  Module* space = nullptr;  // of the nodes that it brings
  bool unknown = false;     // the path leads into what could not be read: nothing to say
};

// The augments, refines and `uses` that concern one module, in order.
struct ModuleTargets {
  std::vector<TargetView*> augments;  // that it writes
  std::vector<TargetView*> inner;     // augments and refines of `uses` that it writes
  std::vector<TargetView*> brought;   // augments of `uses`, and `uses`, that bring it nodes
};

// The nodes of one name that stand beside another of it, each with the first of them.
using Twins = std::vector<std::pair<const SchemaNode*, const SchemaNode*>>;

// The nodes of all trees by name, as far as they were entered.
struct NodeIndex {
  std::unordered_map<std::string_view, std::vector<const SchemaNode*>> named;
  std::vector<const SchemaNode*> open;  // that hold what no statement defines
  size_t count = 0;
};

struct SchemaView {
  std::deque<SchemaNode> nodes;
  std::unordered_map<const Module*, SchemaNode*> trees;
  std::vector<const Module*> order;                       // of the trees
  std::unordered_map<const xmlNode*, SchemaNode*> alone;  // groupings and templates of data
  std::deque<TargetView> augments;                        // of modules
  std::deque<TargetView> inner;                           // augments and refines of `uses`
  std::deque<TargetView> uses;  // each `uses`, the target being the node it stands in
  std::unordered_map<const Module*, ModuleTargets> targets;  // of the three, by module
  std::unordered_map<const SchemaNode*, bool> holes;         // nodes with a `uses` not found
  // Data children by name of the nodes that were asked for one, once all trees stand.
  mutable std::unordered_map<const SchemaNode*,
                             std::unordered_multimap<std::string_view, SchemaNode*>>
      dataChildren;
  mutable std::unordered_map<const SchemaNode*, bool> open;    // kept by StepDown()
  mutable std::unordered_map<const SchemaNode*, Twins> twins;  // by parent; kept by lint
  mutable NodeIndex index;                                     // kept by NodesNamed()
  // Augments whose targets were not found, by their module.
  std::unordered_map<const Module*, std::vector<const xmlNode*>> lost;
  // The templates of data in `alone`, by their module.
  std::unordered_map<const Module*, std::vector<const SchemaNode*>> templates;
  bool full = false;  // there would be more nodes than kMaxSchemaNodes
};

// More than three times the 1,000,000 nodes that a module may have to be compiled: groupings
// that double count here with their own nodes, which are twice those of the largest, and so do
// cases, inputs and outputs that are not written.
inline constexpr size_t kMaxSchemaNodes = 3200000;

// Adds the trees of the modules and of all that they import, with their augments. Those
// that are there already stay.
void AddToView(SchemaView* view, std::span<Module* const> modules);

// Where the path of an augment or deviation of a module leads, as far as the trees know.
TargetView FollowAbsolute(const SchemaView& view, xmlNode* statement);

// The tree of a grouping by itself, its top a node of kind kGrouping; or that of a template
// of data: of kind kNone, where it is the root for its nodes, kGrouping where it augments
// another.
SchemaNode* ViewAlone(SchemaView* view, xmlNode* holder);

// The property `keyword` of a node as the last refine left it; NULL: it has none.
const char* PropertyOf(const SchemaNode* node, Keyword keyword) noexcept;
xmlNode* PropertyStatement(const SchemaNode* node, Keyword keyword) noexcept;

// The child of that name in the namespace of `space`; NULL: there is none.
SchemaNode* FindChild(const SchemaNode* parent, const Module* space, std::string_view name);

// The same, as data see it: choices, cases, input and output are looked through.
SchemaNode* FindDataChild(const SchemaView& view, const SchemaNode* parent, const Module* space,
                          std::string_view name);

// The next node after `node` (`parent` itself at first) that data see as a child of
// `parent`, and the choices, cases, inputs and outputs on the way; NULL: no more.
const SchemaNode* NextSeen(const SchemaNode* parent, const SchemaNode* node) noexcept;

// The nodes of data and operations of that name in all trees; NULL: there are none.
const std::vector<const SchemaNode*>* NodesNamed(const SchemaView& view, std::string_view name);

// True when data may have nodes at `node` that no statement defines: anydata, anyxml, and
// what an extension says that it brings nodes, as a mount point does.
bool HoldsAnything(const SchemaNode* node);

// True when a node of that name and module may stand where it could not be read, or in an
// augment that leads nowhere.
bool MayBeLost(const SchemaView& view, const Module* module, std::string_view name);

// The next node of the tree below `top` after `node`; NULL: no more.
SchemaNode* NextNode(const SchemaNode* top, const SchemaNode* node) noexcept;

// The same, past what stands in `node`.
SchemaNode* NextBehind(const SchemaNode* top, const SchemaNode* node) noexcept;

// The parent as data see it; the top of the tree for a top-level node.
SchemaNode* DataParent(const SchemaNode* node) noexcept;

// The top of the tree that the node is in.
const SchemaNode* TopOf(const SchemaNode* node) noexcept;

// A node that stands in data trees: container, leaf, leaf-list, list, anydata, anyxml,
// and the roots of operations and notifications.
bool IsDataNode(const SchemaNode* node) noexcept;

// True when children of the node may be missing: a `uses` there could not be followed, or
// its module could not be read to the last word.
bool MayMiss(const SchemaView& view, const SchemaNode* node);

// True when what data see as children of `node` is not all known, since a `uses` could
// not be followed.
bool HasHole(const SchemaView& view, const SchemaNode* node);

}  // namespace compiler
