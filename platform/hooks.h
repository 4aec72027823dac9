// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

#include <qmodel/memory.h>

// Every block of the library, this layer's included, is made and released
// through these three. They start as the C library's functions and change at
// most once, before the first context is created; registration is the business
// of context/memory.
extern QmMallocFunc g_qmMemMallocFunc;
extern QmReallocFunc g_qmMemReAllocFunc;
extern QmFreeFunc g_qmMemFreeFunc;

// The ways to a block: through the first two hooks, with refusals counted. A block that
// cannot be resized stays as it is.
void* TakeBlock(size_t size);
void* ResizeBlock(void* block, size_t size);

// How many allocations the calling thread was refused so far. What makes sure that a
// result does not rest on one compares the counts before and after.
uint32_t RefusedAllocations();
// Counts one that was refused elsewhere, in libxml2.
void NoteRefusedAllocation();
