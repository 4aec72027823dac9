// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <type_traits>

#include "context/internal.h"
#include "context/records.h"

// The largest count that a 16-bit counter beside an array can hold.
constexpr uint32_t kMaxArrayCount = 65535;

QM_BEGIN_INTERNAL_DECLS

// Makes *array a zero-filled block for `count` elements; nothing for none. 22 when
// `array` is NULL, *array is set or `elemSize` is 0; 12 without memory.
uint32_t QM_UTL_NewArray(void** array, uint32_t count, uint32_t elemSize);
// Moves *array to a block with `addCount` more, zero-filled elements; the elements
// move, so no pointer to one may be kept. With an `oldCount` of 0 the same as
// QM_UTL_NewArray(). 22 when `array` is NULL or `elemSize` is 0; 12 without memory,
// with the array as before.
uint32_t QM_UTL_ExpandArray(void** array, uint32_t oldCount, uint32_t addCount, uint32_t elemSize);

QM_END_INTERNAL_DECLS

// The same for an array of one record type, and growth by one element, which is
// refused with 22 before a 16-bit counter would overflow.
template <typename Elem>
uint32_t NewArrayOf(Elem** array, uint32_t count) {
  void* block = const_cast<std::remove_const_t<Elem>*>(*array);
  const uint32_t ret = QM_UTL_NewArray(&block, count, sizeof(Elem));
  *array = static_cast<Elem*>(block);
  return ret;
}

template <typename Elem>
uint32_t ExpandArrayOf(Elem** array, uint32_t oldCount, uint32_t addCount) {
  void* block = const_cast<std::remove_const_t<Elem>*>(*array);
  const uint32_t ret = QM_UTL_ExpandArray(&block, oldCount, addCount, sizeof(Elem));
  *array = static_cast<Elem*>(block);
  return ret;
}

template <typename Elem>
uint32_t GrowByOne(Elem** array, uint32_t count) {
  if (count >= kMaxArrayCount) return QM_INVALID;
  return ExpandArrayOf(array, count, 1);
}
