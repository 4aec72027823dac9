// SPDX-License-Identifier: BSD-3-Clause
// The three memory hooks. They live in the lowest layer, because the stack and
// the file handles of this layer are blocks of the library as well.
#include "platform/hooks.h"

#include <cstdlib>

constinit QmMallocFunc g_qmMemMallocFunc = std::malloc;
constinit QmReallocFunc g_qmMemReAllocFunc = std::realloc;
constinit QmFreeFunc g_qmMemFreeFunc = std::free;
