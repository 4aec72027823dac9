// SPDX-License-Identifier: BSD-3-Clause
// Ordered trees over links that lie inside the records. The rebalancing is
// Boost.Intrusive's, driven through a node-traits record that maps it onto our
// own link. Searching is written out here: one three-way compare per level
// instead of two, and the first record that compares equal ends the descent.
//
// The tree's header node follows that library's convention: its parent is the
// root, its left the first record, its right the last one.
#include "platform/avl.h"

#include <boost/intrusive/avltree_algorithms.hpp>

namespace {

struct LinkTraits {
  using node = RtkAvl3Link;
  using node_ptr = RtkAvl3Link*;
  using const_node_ptr = const RtkAvl3Link*;
  using balance = int32_t;

  static node_ptr get_parent(const_node_ptr n) { return n->parent; }
  static void set_parent(node_ptr n, node_ptr parent) { n->parent = parent; }
  static node_ptr get_left(const_node_ptr n) { return n->left; }
  static void set_left(node_ptr n, node_ptr left) { n->left = left; }
  static node_ptr get_right(const_node_ptr n) { return n->right; }
  static void set_right(node_ptr n, node_ptr right) { n->right = right; }
  static balance get_balance(const_node_ptr n) { return n->balance; }
  static void set_balance(node_ptr n, balance b) { n->balance = b; }
  // Shifted by one, so that a linked record never shows kRtkAvl3NotLinked.
  static balance negative() { return 0; }
  static balance zero() { return 1; }
  static balance positive() { return 2; }
};

// Where a key is, or where it would hang.
struct Place {
  RtkAvl3Link* equal;   // the record with this key, or NULL
  RtkAvl3Link* parent;  // else the future parent, NULL in an empty tree
  bool isLeft;          // and the side below it
};

using Algorithms = boost::intrusive::avltree_algorithms<LinkTraits>;

}  // namespace

static RtkAvl3Link* LinkOf(const RtkAvl3Tree* tree, void* record) {
  return reinterpret_cast<RtkAvl3Link*>(static_cast<char*>(record) + tree->info->linkPos);
}

static void* RecordOf(const RtkAvl3Tree* tree, RtkAvl3Link* link) {
  return reinterpret_cast<char*>(link) - tree->info->linkPos;
}

static const void* KeyOf(const RtkAvl3Tree* tree, const void* record) {
  return *reinterpret_cast<const void* const*>(static_cast<const char*>(record) +
                                               tree->info->keyPos);
}

static bool IsUsable(const RtkAvl3Tree* tree) {
  return tree->info != nullptr;
}

static Place FindPlace(const RtkAvl3Tree* tree, const void* key) {
  Place place{nullptr, nullptr, true};
  RtkAvl3Link* link = tree->header.parent;
  while (link != nullptr) {
    const int32_t order = tree->info->compare(key, KeyOf(tree, RecordOf(tree, link)));
    if (order == 0) {
      place.equal = link;
      return place;
    }
    place.parent = link;
    place.isLeft = order < 0;
    link = place.isLeft ? link->left : link->right;
  }
  return place;
}

void RTK_AVL3_Init(RtkAvl3Tree* tree, const RtkAvl3TreeInfo* info) {
  Algorithms::init_header(&tree->header);
  tree->info = info;
}

void RTK_AVL3_InitLink(RtkAvl3Link* link) {
  *link = RtkAvl3Link{nullptr, nullptr, nullptr, kRtkAvl3NotLinked};
}

bool RTK_AVL3_IsLinked(const RtkAvl3Link* link) {
  return link->balance != kRtkAvl3NotLinked;
}

uint32_t RTK_AVL3_Insert_Or_Find(RtkAvl3Tree* tree, void* record, void** found) {
  const Place place = FindPlace(tree, KeyOf(tree, record));
  if (place.equal != nullptr) {
    if (found != nullptr) *found = RecordOf(tree, place.equal);
    return 1;
  }
  Algorithms::insert_commit_data commit;
  commit.link_left = place.isLeft;
  commit.node = place.parent != nullptr ? place.parent : &tree->header;
  Algorithms::insert_unique_commit(&tree->header, LinkOf(tree, record), commit);
  return 0;
}

void* RTK_AVL3_Find(const RtkAvl3Tree* tree, const void* key) {
  if (!IsUsable(tree)) return nullptr;
  RtkAvl3Link* link = FindPlace(tree, key).equal;
  return link != nullptr ? RecordOf(tree, link) : nullptr;
}

void RTK_AVL3_Delete(RtkAvl3Tree* tree, void* record) {
  if (!IsUsable(tree)) return;
  RtkAvl3Link* link = LinkOf(tree, record);
  if (!RTK_AVL3_IsLinked(link)) return;
  Algorithms::erase(&tree->header, link);
  RTK_AVL3_InitLink(link);
}

void* RTK_AVL3_First(const RtkAvl3Tree* tree) {
  if (!IsUsable(tree) || tree->header.parent == nullptr) return nullptr;
  return RecordOf(tree, tree->header.left);
}

void* RTK_AVL3_Next(const RtkAvl3Tree* tree, const void* record) {
  RtkAvl3Link* next = Algorithms::next_node(LinkOf(tree, const_cast<void*>(record)));
  return next != &tree->header ? RecordOf(tree, next) : nullptr;
}
