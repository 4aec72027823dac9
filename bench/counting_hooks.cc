// SPDX-License-Identifier: BSD-3-Clause
#include "bench/counting_hooks.h"

#include <cstdlib>

#include <qmodel/memory.h>

namespace {

uint64_t g_blocks = 0;
uint64_t g_bytes = 0;

void* Malloc(size_t size) {
  ++g_blocks;
  g_bytes += size;
  return std::malloc(size);
}

void* Realloc(void* block, size_t size) {
  ++g_blocks;
  g_bytes += size;
  return std::realloc(block, size);
}

}  // namespace

AllocationCounter::AllocationCounter() : blocks_(g_blocks), bytes_(g_bytes) {}

void AllocationCounter::Report(benchmark::State* state) const {
  state->counters["allocs"] = benchmark::Counter(static_cast<double>(g_blocks - blocks_),
                                                 benchmark::Counter::kAvgIterations);
  state->counters["bytes"] =
      benchmark::Counter(static_cast<double>(g_bytes - bytes_), benchmark::Counter::kAvgIterations);
}

int main(int argc, char** argv) {
  if (QM_MemRegisterCallBack(Malloc, Realloc, std::free) != 0) return 1;
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
