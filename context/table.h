// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>

// Whether each row of a table stands at the id that it carries, so that an id is an
// index: RowsStandAtTheir<&Row::id>(kTable). The first row may have another id than 0.
template <auto Id, typename Row, size_t Count>
consteval bool RowsStandAtTheir(const Row (&table)[Count], size_t firstId = 0) {
  for (size_t i = 0; i < Count; ++i) {
    if (table[i].*Id != firstId + i) return false;
  }
  return true;
}
