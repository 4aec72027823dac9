// SPDX-License-Identifier: BSD-3-Clause
// The data children of a schema parent are the nodes that its child elements may be bound
// to: those below its choices and cases, and for an operation below input and output, too.
// They are gathered in the order in which a search by name meets them, which is also their
// order in the schema.
#include "data/schema_children.h"

#include <cstring>

#include "data/schema_query.h"
#include "schema/node.h"
#include "schema/node_walk.h"

// Fewer children are compared one by one.
constexpr uint32_t kSmallParent = 8;
// A deeper nest of choices is not indexed: each child is looked at once for each choice
// that it lies in.
constexpr uint32_t kMaxChoiceDepth = 32;

namespace {

// A walk over the nodes below a parent that stops at its data children.
struct ChildWalk {
  QmdRunIndex* index;
  QmdParent* parent;
  uint32_t childCount;
  uint32_t choiceCount;
  uint32_t choiceDepth;
  QmdChoice* choice;  // that the walk is in
  uint32_t trackCount;
  bool fills;  // the second time round
  bool isOdd;
};

}  // namespace

static uint32_t HashOf(const char* name) {
  uint32_t hash = 2166136261u;
  for (; *name != '\0'; ++name) hash = (hash ^ static_cast<unsigned char>(*name)) * 16777619u;
  return hash ^ hash >> 15;
}

uint32_t ConditionsOf(const QmsNode* node) {
  uint32_t flags = 0;
  if (node->when != nullptr) flags |= QMD_CHILD_WHEN;
  if (node->musts != nullptr && node->mustCount != 0) flags |= QMD_CHILD_MUST;
  for (const QmsNode* above = node->parent;
       above != nullptr && QMD_MDL_IsChoiceOrCaseNode(above) != 0; above = above->parent) {
    if (above->when != nullptr) flags |= QMD_CHILD_WHEN;
  }
  return flags;
}

static uint32_t FlagsOf(const QmsNode* node) {
  uint32_t flags = 0;
  if (QM_NODE_IsEnabled(node) != 0) flags |= QMD_CHILD_ENABLED;
  if (node->kind == QMS_NODE_LIST || node->kind == QMS_NODE_LEAF_LIST) flags |= QMD_CHILD_MANY;
  if (IsLeafOrLeafList(node)) flags |= QMD_CHILD_PLAIN;
  return flags | ConditionsOf(node);
}

static uint32_t TrackHash(const QmsModule* module, const QmsNode* group) {
  const auto number = reinterpret_cast<uintptr_t>(module) ^ reinterpret_cast<uintptr_t>(group) >> 3;
  return static_cast<uint32_t>(number >> 4 ^ number >> 14);
}

static bool IsTrack(const QmdTrack* track, const QmsModule* module, const QmsNode* group) {
  return track->module == module && track->group == group;
}

// Until the names are put in, the table serves to find the tracks. Gives the one of a
// child, or the next free one, for which the slot is taken.
static QmdTrack* FindTrack(ChildWalk* walk, const QmsModule* module, const QmsNode* group) {
  QmdParent* parent = walk->parent;
  if (parent->table == nullptr) {
    uint32_t i = 0;
    while (i < walk->trackCount && !IsTrack(&parent->tracks[i], module, group)) ++i;
    return &parent->tracks[i];
  }
  uint32_t slot = TrackHash(module, group) & parent->tableMask;
  for (; parent->table[slot] != 0; slot = (slot + 1) & parent->tableMask) {
    QmdTrack* track = &parent->tracks[parent->table[slot] - 1];
    if (IsTrack(track, module, group)) return track;
  }
  parent->table[slot] = walk->trackCount + 1;
  return &parent->tracks[walk->trackCount];
}

static QmdTrack* TrackOf(ChildWalk* walk, QmsNode* node) {
  const QmsNode* group = QMD_MDL_GetClosestAncestorNodeNotChoiceCase(node);
  QmdTrack* track = FindTrack(walk, node->module, group);
  if (track == &walk->parent->tracks[walk->trackCount]) ++walk->trackCount;
  track->module = node->module;
  track->group = group;
  return track;
}

static void FillChild(ChildWalk* walk, QmsNode* node, uint32_t order) {
  QmdChild* child = &walk->parent->children[order];
  child->node = node;
  child->order = order;
  child->hash = HashOf(node->name);
  child->flags = FlagsOf(node);
  child->namesake = child;
  child->choice = walk->choice;
  if (walk->choice != nullptr) {
    child->branch = node->parent == walk->choice->node ? node : node->parent;
  }
  child->track = TrackOf(walk, node);
}

static void VisitChild(ChildWalk* walk, QmsNode* node) {
  const QmsModule* module = node->module;
  if (module == nullptr || module->name == nullptr || module->ns == nullptr || !node->name) {
    walk->isOdd = true;
  } else if (walk->fills) {
    FillChild(walk, node, walk->childCount);
  }
  ++walk->childCount;
}

static void EnterChoice(ChildWalk* walk, QmsNode* node) {
  if (++walk->choiceDepth > kMaxChoiceDepth) walk->isOdd = true;
  if (walk->fills) {
    QmdChoice* choice = &walk->parent->choices[walk->choiceCount];
    choice->node = node;
    choice->outer = walk->choice;
    if (walk->choice != nullptr) {
      choice->outerBranch = node->parent == walk->choice->node ? node : node->parent;
    }
    walk->choice = choice;
  }
  ++walk->choiceCount;
}

static void LeaveChoice(ChildWalk* walk) {
  --walk->choiceDepth;
  if (walk->choice != nullptr) walk->choice = walk->choice->outer;
}

// A node that has no element: the walk goes through it.
static void PassThrough(ChildWalk* walk, QmsNode* node, uint32_t travType) {
  if (node->kind == QMS_NODE_CASE &&
      (node->parent == nullptr || node->parent->kind != QMS_NODE_CHOICE)) {
    walk->isOdd = true;
  }
  if (node->kind != QMS_NODE_CHOICE || node->firstChild == nullptr) return;
  if (travType == QMS_TRAV_PARENT) {
    LeaveChoice(walk);
  } else {
    EnterChoice(walk, node);
  }
}

static void WalkBelow(ChildWalk* walk, QmsNode* root, bool skipsInputs) {
  uint32_t travType = QMS_TRAV_TOP;
  QmsNode* cur = QMS_NODE_GetTreeNodeNextNode(root, root, &travType);
  while (cur != nullptr && !walk->isOdd) {
    const bool isInput = skipsInputs && cur->kind == QMS_NODE_INPUT && cur->parent == root;
    const bool isData = IsDataTreeNode(cur);
    if (isData) VisitChild(walk, cur);
    if (!isData && !isInput) PassThrough(walk, cur, travType);
    cur = isData || isInput ? QMS_NODE_GetTreeNodeSibOrParent(root, cur, &travType)
                            : QMS_NODE_GetTreeNodeNextNode(root, cur, &travType);
  }
}

// In an operation a name is looked for in the input first, wherever that stands.
static void WalkChildren(ChildWalk* walk) {
  QmsNode* root = walk->parent->node;
  const bool isOperation = IsOperation(root);
  walk->childCount = 0;
  walk->choiceCount = 0;
  QmsNode* part = isOperation ? root->firstChild : nullptr;
  for (; part != nullptr; part = NextChild(root, part)) {
    if (part->kind == QMS_NODE_INPUT) WalkBelow(walk, part, false);
  }
  WalkBelow(walk, root, isOperation);
}

static uint32_t TableSize(uint32_t childCount) {
  if (childCount <= kSmallParent) return 0;
  uint32_t size = 4 * kSmallParent;
  while (size < childCount * 2) size *= 2;
  return size;
}

static bool TakeArrays(ChildWalk* walk) {
  QmdRunIndex* index = walk->index;
  QmdParent* parent = walk->parent;
  const uint32_t tableSize = TableSize(walk->childCount);
  const auto take = [index](auto** array, size_t count) {
    if (count == 0) return true;
    void* bytes = IndexBytes(index, count * sizeof **array);
    *array = static_cast<std::remove_reference_t<decltype(*array)>>(bytes);
    return bytes != nullptr;
  };
  if (!take(&parent->children, walk->childCount) || !take(&parent->choices, walk->choiceCount) ||
      !take(&parent->table, tableSize) || !take(&parent->tracks, walk->childCount)) {
    return false;
  }
  parent->childCount = walk->childCount;
  parent->tableMask = tableSize == 0 ? 0 : tableSize - 1;
  return true;
}

static bool IsNamed(const QmdChild* child, const char* moduleName, uint32_t hash,
                    const char* name) {
  return child->hash == hash && NamesEqual(child->node->name, name) &&
         IsOfModule(child->node, moduleName);
}

// Finds the first child of the name and puts the child into the table, unless another
// one of its module and name is there.
static void TableChild(QmdParent* parent, QmdChild* child, uint32_t number) {
  uint32_t slot = child->hash & parent->tableMask;
  for (; parent->table[slot] != 0; slot = (slot + 1) & parent->tableMask) {
    QmdChild* other = &parent->children[parent->table[slot] - 1];
    if (other->hash != child->hash || !NamesEqual(other->node->name, child->node->name)) continue;
    child->namesake = other->namesake;
    if (IsOfModule(other->node, child->node->module->name)) return;
  }
  parent->table[slot] = number;
}

static void FindNamesake(QmdParent* parent, QmdChild* child) {
  for (QmdChild* other = parent->children; other != child; ++other) {
    if (other->hash == child->hash && NamesEqual(other->node->name, child->node->name)) {
      child->namesake = other;
      return;
    }
  }
}

static void IndexNames(QmdParent* parent) {
  if (parent->table != nullptr) {
    std::memset(parent->table, 0, (size_t{parent->tableMask} + 1) * sizeof *parent->table);
  }
  for (uint32_t i = 0; i < parent->childCount; ++i) {
    if (parent->table != nullptr) {
      TableChild(parent, &parent->children[i], i + 1);
    } else {
      FindNamesake(parent, &parent->children[i]);
    }
  }
}

void IndexChildren(QmdRunIndex* index, QmdParent* parent) {
  ChildWalk walk = {};
  walk.index = index;
  walk.parent = parent;
  WalkChildren(&walk);
  if (walk.isOdd) {
    parent->isRefused = true;
    return;
  }
  if (!TakeArrays(&walk)) return;
  walk.fills = true;
  WalkChildren(&walk);
  // There could have been as many tracks as children; they were taken last.
  if (parent->tracks != nullptr) {
    GiveBackBytes(index, parent->tracks, walk.childCount * sizeof(QmdTrack),
                  walk.trackCount * sizeof(QmdTrack));
  }
  IndexNames(parent);
  parent->holder = parent;
  parent->isBuilt = true;
}

QmdChild* FindChild(const QmdParent* parent, const char* moduleName, const char* name) {
  const uint32_t hash = HashOf(name);
  if (parent->table == nullptr) {
    for (uint32_t i = 0; i < parent->childCount; ++i) {
      if (IsNamed(&parent->children[i], moduleName, hash, name)) return &parent->children[i];
    }
    return nullptr;
  }
  uint32_t slot = hash & parent->tableMask;
  for (; parent->table[slot] != 0; slot = (slot + 1) & parent->tableMask) {
    QmdChild* child = &parent->children[parent->table[slot] - 1];
    if (IsNamed(child, moduleName, hash, name)) return child;
  }
  return nullptr;
}

QmdChild* FindChildOfNode(const QmdParent* parent, const QmsNode* node) {
  if (parent->table != nullptr) {
    if (node->module == nullptr || node->name == nullptr) return nullptr;
    QmdChild* child = FindChild(parent, node->module->name, node->name);
    return child != nullptr && child->node == node ? child : nullptr;
  }
  for (uint32_t i = 0; i < parent->childCount; ++i) {
    if (parent->children[i].node == node) return &parent->children[i];
  }
  return nullptr;
}

QmdChoice* FindChoiceOfNode(const QmdParent* parent, QmsNode* node) {
  const QmsNode* first = QMS_NODE_GetFirstSlibingDataTreeNode(node->firstChild, node);
  const QmdChild* child = first == nullptr ? nullptr : FindChildOfNode(parent, first);
  QmdChoice* choice = child == nullptr ? nullptr : child->choice;
  while (choice != nullptr && choice->node != node) choice = choice->outer;
  return choice;
}
