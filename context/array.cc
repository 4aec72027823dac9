// SPDX-License-Identifier: BSD-3-Clause
// Arrays as the records keep them: a block and, beside it, a count that the
// caller raises once a new element is whole. A block has exactly the size asked
// for; growing makes a new one, so the elements move.
#include "context/array.h"

#include <cstring>

#include "context/memory.h"

// A zero-filled block for `count` elements, or NULL, also when the size in bytes
// cannot be told.
static void* AllocElements(size_t count, size_t elemSize) {
  size_t size = 0;
  if (__builtin_mul_overflow(count, elemSize, &size)) return nullptr;
  return AllocZeroed(size);
}

uint32_t QM_UTL_NewArray(void** array, uint32_t count, uint32_t elemSize) {
  if (array == nullptr || *array != nullptr || elemSize == 0) return QM_INVALID;
  if (count == 0) return QM_OK;
  *array = AllocElements(count, elemSize);
  return *array != nullptr ? QM_OK : QM_NO_MEMORY;
}

uint32_t QM_UTL_ExpandArray(void** array, uint32_t oldCount, uint32_t addCount, uint32_t elemSize) {
  if (array == nullptr || elemSize == 0) return QM_INVALID;
  if (oldCount == 0) return QM_UTL_NewArray(array, addCount, elemSize);
  if (addCount == 0) return QM_OK;
  void* grown = AllocElements(size_t{oldCount} + addCount, elemSize);
  if (grown == nullptr) return QM_NO_MEMORY;
  // A count may have outlived its block; its elements are then empty ones.
  if (*array != nullptr) std::memcpy(grown, *array, size_t{oldCount} * elemSize);
  g_qmMemFreeFunc(*array);
  *array = grown;
  return QM_OK;
}
