// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <benchmark/benchmark.h>

#include <cstdint>

// Counts what the library allocates between its making and Report(), which adds
// allocations and bytes per iteration to a benchmark: figures that do not jitter.
class AllocationCounter {
 public:
  AllocationCounter();
  void Report(benchmark::State* state) const;

 private:
  uint64_t blocks_;
  uint64_t bytes_;
};
