// SPDX-License-Identifier: BSD-3-Clause
// The three memory hooks. They live in the lowest layer, because the stack and
// the file handles of this layer are blocks of the library as well.
//
// A refused allocation shows as the failure of the step that wanted the block, and a
// step further up may take that for an answer: a node that cannot be looked up for one
// that is not there. So refusals are also counted, by thread, since a run of the library
// stays on the thread of its caller.
#include "platform/hooks.h"

#include <cstdlib>

constinit QmMallocFunc g_qmMemMallocFunc = std::malloc;
constinit QmReallocFunc g_qmMemReAllocFunc = std::realloc;
constinit QmFreeFunc g_qmMemFreeFunc = std::free;

static constinit thread_local uint32_t t_refused = 0;

static void* CountIfRefused(void* block) {
  if (block == nullptr) ++t_refused;
  return block;
}

void* TakeBlock(size_t size) {
  return CountIfRefused(g_qmMemMallocFunc(size));
}

void* ResizeBlock(void* block, size_t size) {
  return CountIfRefused(g_qmMemReAllocFunc(block, size));
}

uint32_t RefusedAllocations() {
  return t_refused;
}

void NoteRefusedAllocation() {
  ++t_refused;
}
