// SPDX-License-Identifier: BSD-3-Clause
// The life of a run's index: its memory, and finding the schema parents in it. Small
// messages need no block at all; larger ones take blocks that double, so that their
// number stays small and none is much larger than what is used of it.
#include "data/run_index.h"

#include <cstring>

#include "context/memory.h"
#include "data/schema_children.h"
#include "schema/node.h"
#include "schema/node_walk.h"

constexpr size_t kFirstBlock = size_t{16} << 10;
constexpr size_t kLargestBlock = size_t{1} << 20;
constexpr size_t kAlignment = 16;
constexpr uint32_t kFewNodes = 20;

void InitRunIndex(QmdRunIndex* index) {
  std::memset(index, 0, offsetof(QmdRunIndex, firstBytes));
  index->parents = index->firstParents;
  index->parentMask = kQmdFirstParents - 1;
  index->free = index->firstBytes;
  index->freeBytes = kQmdFirstBytes;
  index->nextBlock = kFirstBlock;
  index->allowance = kQmdMostIndexBytes;
}

static void* TakeMemory(QmdRunIndex* index, size_t bytes) {
  if (bytes > index->allowance) return nullptr;
  index->allowance -= bytes;
  return TakeBlock(bytes);
}

void FreeRunIndex(QmdRunIndex* index) {
  while (index->blocks != nullptr) {
    QmdBlock* block = index->blocks;
    index->blocks = block->next;
    g_qmMemFreeFunc(block);
  }
  if (index->parents != index->firstParents) g_qmMemFreeFunc(index->parents);
  index->parents = nullptr;
}

static bool TakeBlock(QmdRunIndex* index, size_t size) {
  while (index->nextBlock < size + kAlignment && index->nextBlock < kLargestBlock) {
    index->nextBlock *= 2;
  }
  const size_t bytes = size + kAlignment > index->nextBlock ? size + kAlignment : index->nextBlock;
  auto* block = static_cast<QmdBlock*>(TakeMemory(index, bytes));
  if (block == nullptr) return false;
  block->next = index->blocks;
  index->blocks = block;
  index->free = reinterpret_cast<char*>(block) + kAlignment;
  index->freeBytes = bytes - kAlignment;
  if (index->nextBlock < kLargestBlock) index->nextBlock *= 2;
  return true;
}

static size_t Aligned(size_t size) {
  return (size + kAlignment - 1) / kAlignment * kAlignment;
}

void GiveBackBytes(QmdRunIndex* index, void* bytes, size_t size, size_t used) {
  index->free = static_cast<char*>(bytes) + Aligned(used);
  index->freeBytes += Aligned(size) - Aligned(used);
}

void* IndexBytes(QmdRunIndex* index, size_t size) {
  if (index->isOff) return nullptr;
  size = Aligned(size);
  if (size > index->freeBytes && !TakeBlock(index, size)) {
    index->isOff = true;
    return nullptr;
  }
  void* bytes = index->free;
  index->free += size;
  index->freeBytes -= size;
  std::memset(bytes, 0, size);
  return bytes;
}

static uint32_t FirstSlot(const QmdRunIndex* index, const QmsNode* node) {
  const auto number = reinterpret_cast<uintptr_t>(node) >> 4;
  return static_cast<uint32_t>(number ^ number >> 12) & index->parentMask;
}

// The slot of the node, or the free one where it belongs. There always is one.
static QmdParent** SlotOf(const QmdRunIndex* index, const QmsNode* node) {
  uint32_t slot = FirstSlot(index, node);
  while (index->parents[slot] != nullptr && index->parents[slot]->node != node) {
    slot = (slot + 1) & index->parentMask;
  }
  return &index->parents[slot];
}

QmdParent* FindParent(const QmdRunIndex* index, const QmsNode* node) {
  return *SlotOf(index, node);
}

static bool GrowParents(QmdRunIndex* index) {
  QmdParent** old = index->parents;
  const uint32_t oldMask = index->parentMask;
  const size_t bytes = (size_t{oldMask} + 1) * 2 * sizeof *old;
  auto** grown = static_cast<QmdParent**>(TakeMemory(index, bytes));
  if (grown == nullptr) return false;
  std::memset(grown, 0, bytes);
  index->parents = grown;
  index->parentMask = oldMask * 2 + 1;
  for (uint32_t i = 0; i <= oldMask; ++i) {
    if (old[i] != nullptr) *SlotOf(index, old[i]->node) = old[i];
  }
  if (old != index->firstParents) g_qmMemFreeFunc(old);
  return true;
}

QmdParent* MakeParent(QmdRunIndex* index, QmsNode* node) {
  QmdParent* parent = FindParent(index, node);
  if (parent != nullptr || index->isOff) return parent;
  if (index->parentCount >= index->parentMask / 4 * 3 && !GrowParents(index)) {
    index->isOff = true;
    return nullptr;
  }
  parent = static_cast<QmdParent*>(IndexBytes(index, sizeof(QmdParent)));
  if (parent == nullptr) return nullptr;
  parent->node = node;
  *SlotOf(index, node) = parent;
  ++index->parentCount;
  return parent;
}

QmdParent* IndexedParent(QmdRunIndex* index, QmsNode* node) {
  QmdParent* parent = MakeParent(index, node);
  if (parent == nullptr) return nullptr;
  if (!parent->isBuilt && !parent->isRefused) IndexChildren(index, parent);
  return parent->isBuilt ? parent : nullptr;
}

// Choices and cases are gone through, as children are found in them.
static bool HasFewNodes(QmsNode* node) {
  uint32_t travType = QMS_TRAV_TOP;
  QmsNode* cur = QMS_NODE_GetTreeNodeNextNode(node, node, &travType);
  for (uint32_t steps = 0; cur != nullptr; ++steps) {
    if (steps == kFewNodes) return false;
    cur = IsDataTreeNode(cur) ? QMS_NODE_GetTreeNodeSibOrParent(node, cur, &travType)
                              : QMS_NODE_GetTreeNodeNextNode(node, cur, &travType);
  }
  return true;
}

bool IsSmall(QmdParent* parent) {
  if (!parent->isSized) {
    parent->isSmall = HasFewNodes(parent->node);
    parent->isSized = true;
  }
  return parent->isSmall;
}
