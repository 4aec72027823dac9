// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

// What is known of things, by their addresses: a hash table that a run or a step fills
// for its own speed. Nothing is ever taken out. Zero-filled it is empty.
struct QmPointerEntry {
  const void* key;  // NULL: a free slot
  void* value;
};

struct QmPointerMap {
  QmPointerEntry* slots;
  uint32_t capacity;  // a power of two, or 0
  uint32_t count;
};

// The entry of a key, whose value may be changed; or NULL.
QmPointerEntry* FindPointer(const QmPointerMap* map, const void* key);
// Adds a key that has no entry; false without memory, and the map is as before.
bool AddPointer(QmPointerMap* map, const void* key, void* value);
// Frees the table, not what the values point to.
void FreePointerMap(QmPointerMap* map);
