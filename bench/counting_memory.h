// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <functional>

// Counts what the library takes through its memory hooks, and libxml2 through its own.
struct MemoryUse {
  int64_t allocations = 0;  // through the library's hooks
  int64_t bytes = 0;        // asked for in them
  int64_t peak = 0;         // of the bytes held through the hooks, above those before
  int64_t xmlPeak = 0;      // of libxml2's
  int64_t held = 0;         // through the hooks at the end, above those before
  int64_t xmlHeld = 0;      // by libxml2
};

// Installs the hooks; before the first context and before any use of libxml2.
void CountMemory();

MemoryUse MeasureMemory(const std::function<void()>& run);
