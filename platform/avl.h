// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

// Ordered trees whose links are embedded in the records. The tree allocates
// nothing; a record stays at its address while it is linked.

// Membership of one record in one tree. A balance of kRtkAvl3NotLinked marks a
// record that is in no tree; the tree itself stores only 0 to 2 there.
struct RtkAvl3Link {
  RtkAvl3Link* left;
  RtkAvl3Link* right;
  RtkAvl3Link* parent;
  int32_t balance;
};
constexpr int32_t kRtkAvl3NotLinked = -1;

// Orders two keys: negative, 0 (equal) or positive.
using RtkAvl3Compare = int32_t (*)(const void* keyA, const void* keyB);

// How a tree reads its records. The key is the pointer stored at `keyPos` (a
// text), not the address of that field.
struct RtkAvl3TreeInfo {
  RtkAvl3Compare compare;
  size_t keyPos;   // offset of the key pointer in the record
  size_t linkPos;  // offset of the RtkAvl3Link in the record
};

// A tree must not be moved in memory: its records point at `header`.
struct RtkAvl3Tree {
  RtkAvl3Link header;           // root, leftmost and rightmost
  const RtkAvl3TreeInfo* info;  // not owned
};

// Makes an empty tree. A zero-filled tree is not an empty one.
void RTK_AVL3_Init(RtkAvl3Tree* tree, const RtkAvl3TreeInfo* info);
// Marks a link as in no tree.
void RTK_AVL3_InitLink(RtkAvl3Link* link);
// Whether the record of a link is in a tree.
bool RTK_AVL3_IsLinked(const RtkAvl3Link* link);

extern "C" {
// 0 when inserted, 1 when an equal key exists (it is stored in *found unless NULL).
uint32_t RTK_AVL3_Insert_Or_Find(RtkAvl3Tree* tree, void* record, void** found);
// The record with an equal key, or NULL.
void* RTK_AVL3_Find(const RtkAvl3Tree* tree, const void* key);
// Unlinks `record` by its own link, whatever its key; nothing for one that is not linked.
void RTK_AVL3_Delete(RtkAvl3Tree* tree, void* record);
// The first record in the order of the keys, and the one after `record`; NULL at the end.
void* RTK_AVL3_First(const RtkAvl3Tree* tree);
void* RTK_AVL3_Next(const RtkAvl3Tree* tree, const void* record);
}
