// SPDX-License-Identifier: BSD-3-Clause
#include "tests/differential/own_memory.h"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <unordered_set>

#include "context/memory.h"

namespace own_memory {
namespace {

thread_local bool t_own = false;
thread_local bool t_refused = false;

std::mutex g_mutex;
QmMallocFunc g_malloc = nullptr;
QmReallocFunc g_realloc = nullptr;
QmFreeFunc g_free = nullptr;
// What outlives its scope, as a compiled pattern that a context keeps, goes back to where
// it came from.
std::unordered_set<void*>* g_blocks = nullptr;
std::atomic<size_t> g_blockCount{0};

void Track(void* block) {
  if (block == nullptr) return;
  const std::lock_guard lock(g_mutex);
  g_blocks->insert(block);
  g_blockCount = g_blocks->size();
}

bool Untrack(void* block) {
  if (g_blockCount == 0) return false;
  const std::lock_guard lock(g_mutex);
  const bool found = g_blocks->erase(block) != 0;
  g_blockCount = g_blocks->size();
  return found;
}

void* Malloc(size_t size) {
  if (t_own) {
    void* block = std::malloc(size == 0 ? 1 : size);
    Track(block);
    return block;
  }
  void* block = g_malloc(size);
  t_refused = t_refused || block == nullptr;
  return block;
}

void* Realloc(void* block, size_t size) {
  if (block == nullptr) return Malloc(size);
  if (Untrack(block)) {
    void* grown = std::realloc(block, size == 0 ? 1 : size);
    Track(grown == nullptr ? block : grown);
    return grown;
  }
  void* grown = g_realloc(block, size);
  t_refused = t_refused || grown == nullptr;
  return grown;
}

void Free(void* block) {
  if (block == nullptr) return;
  if (Untrack(block)) {
    std::free(block);
  } else {
    g_free(block);
  }
}

}  // namespace

void StandBeforeHooks() {
  const std::lock_guard lock(g_mutex);
  if (g_qmMemMallocFunc == Malloc) return;
  if (g_blocks == nullptr) g_blocks = new std::unordered_set<void*>;
  g_malloc = g_qmMemMallocFunc;
  g_realloc = g_qmMemReAllocFunc;
  g_free = g_qmMemFreeFunc;
  g_qmMemMallocFunc = Malloc;
  g_qmMemReAllocFunc = Realloc;
  g_qmMemFreeFunc = Free;
}

Scope::Scope() : outer_(t_own) {
  t_own = true;
}

Scope::~Scope() {
  t_own = outer_;
}

bool TakeRefused() {
  const bool refused = t_refused;
  t_refused = false;
  return refused;
}

}  // namespace own_memory
