// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/counting_memory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>

#include <qmodel/memory.h>

namespace counting_memory {
namespace {

std::atomic<size_t> g_live{0};
std::atomic<uint64_t> g_asked{0};
std::atomic<uint64_t> g_countdown{0};  // 0: nothing is refused
std::atomic<bool> g_persistent{false};
std::atomic<uint64_t> g_refused{0};
thread_local bool t_refusing = false;

bool RefuseThis() {
  g_asked.fetch_add(1);
  if (t_refusing) return true;
  uint64_t left = g_countdown.load();
  if (left == 0) return false;
  if (left > 1) {
    g_countdown.store(left - 1);
    return false;
  }
  if (!g_persistent.load()) g_countdown.store(0);
  g_refused.fetch_add(1);
  return true;
}

void* CountingMalloc(size_t size) {
  if (RefuseThis()) return nullptr;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) g_live.fetch_add(1);
  return block;
}

void* CountingRealloc(void* block, size_t size) {
  if (block == nullptr) return CountingMalloc(size);
  if (RefuseThis()) return nullptr;
  return std::realloc(block, size == 0 ? 1 : size);
}

void CountingFree(void* block) {
  if (block == nullptr) return;
  g_live.fetch_sub(1);
  std::free(block);
}

}  // namespace

bool Install() {
  return QM_MemRegisterCallBack(CountingMalloc, CountingRealloc, CountingFree) == 0;
}

size_t LiveBlocks() {
  return g_live.load();
}

uint64_t AllocationCount() {
  return g_asked.load();
}

void RefuseNth(uint64_t n, Refuse mode) {
  g_refused.store(0);
  g_persistent.store(mode == Refuse::kFromThenOn);
  g_countdown.store(mode == Refuse::kNone ? 0 : n);
}

uint64_t StopRefusing() {
  g_countdown.store(0);
  return g_refused.exchange(0);
}

void RefuseInThisThread(bool refuse) {
  t_refusing = refuse;
}

uint64_t FailEachAllocation(void (*scenario)(bool refusing), uint64_t stride, uint64_t first) {
  uint64_t injected = 0;
  for (Refuse mode : {Refuse::kOnce, Refuse::kFromThenOn}) {
    for (uint64_t n = first;; n += stride) {
      SCOPED_TRACE(testing::Message()
                   << "allocation " << n << " refused"
                   << (mode == Refuse::kFromThenOn ? ", and all later ones" : ""));
      const size_t before = LiveBlocks();
      RefuseNth(n, mode);
      scenario(true);
      const uint64_t refused = StopRefusing();
      EXPECT_EQ(before, LiveBlocks()) << "blocks leaked";
      if (refused == 0) break;
      injected += refused;
      if (testing::Test::HasFatalFailure()) return injected;
    }
  }
  scenario(false);
  return injected;
}

}  // namespace counting_memory
