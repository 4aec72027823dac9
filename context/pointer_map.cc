// SPDX-License-Identifier: BSD-3-Clause
//
// Open addressing, never more than half full: a search ends after a slot or two, and the
// table doubles in one step that either succeeds or leaves it as it was.
#include "context/pointer_map.h"

#include <cstddef>

#include <qmodel/error.h>

#include "context/array.h"
#include "context/memory.h"

constexpr uint32_t kFirstCapacity = 16;
constexpr uint32_t kLargestCapacity = 1u << 28;

// Blocks are aligned, so the low bits of an address say little.
static uint32_t FirstSlot(const void* key, uint32_t capacity) {
  const uint64_t bits = reinterpret_cast<uintptr_t>(key) >> 4;
  return static_cast<uint32_t>(bits * 0x9E3779B97F4A7C15u >> 32) & (capacity - 1);
}

// The slot of the key, or the free one where it belongs.
static QmPointerEntry* SlotOf(QmPointerEntry* slots, uint32_t capacity, const void* key) {
  uint32_t slot = FirstSlot(key, capacity);
  while (slots[slot].key != nullptr && slots[slot].key != key) slot = (slot + 1) & (capacity - 1);
  return &slots[slot];
}

QmPointerEntry* FindPointer(const QmPointerMap* map, const void* key) {
  if (map->count == 0) return nullptr;
  QmPointerEntry* entry = SlotOf(map->slots, map->capacity, key);
  return entry->key == nullptr ? nullptr : entry;
}

static bool MakeRoom(QmPointerMap* map) {
  if (map->count < map->capacity / 2) return true;
  const uint32_t capacity = map->capacity == 0 ? kFirstCapacity : map->capacity * 2;
  QmPointerEntry* slots = nullptr;
  if (capacity > kLargestCapacity || NewArrayOf(&slots, capacity) != QM_OK) return false;
  for (uint32_t i = 0; i < map->capacity; ++i) {
    const QmPointerEntry entry = map->slots[i];
    if (entry.key != nullptr) *SlotOf(slots, capacity, entry.key) = entry;
  }
  g_qmMemFreeFunc(map->slots);
  map->slots = slots;
  map->capacity = capacity;
  return true;
}

bool AddPointer(QmPointerMap* map, const void* key, void* value) {
  if (!MakeRoom(map)) return false;
  *SlotOf(map->slots, map->capacity, key) = {key, value};
  ++map->count;
  return true;
}

void FreePointerMap(QmPointerMap* map) {
  g_qmMemFreeFunc(map->slots);
  *map = QmPointerMap{};
}
