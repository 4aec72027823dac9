// SPDX-License-Identifier: BSD-3-Clause
#include "tests/compiler/refusal/refused_memory.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// What is counted, while `g_on`. A block knows whether it was, since gtest's are not.
bool g_on = false;
bool g_forGood = false;
uint64_t g_countdown = 0;  // 0: nothing is refused
uint64_t g_refused = 0;
int64_t g_live = 0;

constexpr size_t kHead = 16;  // keeps the alignment of the block behind it

bool RefuseThis() {
  if (!g_on || g_countdown == 0) return false;
  if (g_countdown > 1) {
    --g_countdown;
    return false;
  }
  if (!g_forGood) g_countdown = 0;
  ++g_refused;
  return true;
}

void* Allocate(size_t size) {
  if (RefuseThis()) return nullptr;
  auto* block = static_cast<char*>(std::malloc(size + kHead));
  if (block == nullptr) std::abort();
  *block = g_on ? 1 : 0;
  g_live += g_on ? 1 : 0;
  return block + kHead;
}

void Release(void* content) {
  if (content == nullptr) return;
  char* block = static_cast<char*>(content) - kHead;
  g_live -= *block;
  std::free(block);
}

void* Reallocate(void* content, size_t size) {
  if (content == nullptr) return Allocate(size);
  if (RefuseThis()) return nullptr;
  void* block = std::realloc(static_cast<char*>(content) - kHead, size + kHead);
  if (block == nullptr) std::abort();
  return static_cast<char*>(block) + kHead;
}

char* Duplicate(const char* text) {
  const size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(Allocate(size));
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

// Before anything of libxml2 is made.
const bool g_installed = xmlMemSetup(Release, Allocate, Reallocate, Duplicate) == 0;

// One run with the n-th allocation refused; true when there was one.
bool RunOnce(const std::function<RunOutcome()>& scenario, uint64_t n, bool forGood,
             RunOutcome* outcome) {
  g_forGood = forGood;
  g_countdown = n;
  g_refused = 0;
  g_live = 0;
  *outcome = scenario();
  g_countdown = 0;
  EXPECT_EQ(g_live, 0) << "blocks are left when allocation " << n << " is refused";
  return g_refused > 0;
}

}  // namespace

void* operator new(size_t size) {
  void* block = Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new[](size_t size) {
  return operator new(size);
}
void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  Release(block);
}
void operator delete[](void* block) noexcept {
  Release(block);
}
void operator delete(void* block, size_t /*size*/) noexcept {
  Release(block);
}
void operator delete[](void* block, size_t /*size*/) noexcept {
  Release(block);
}

Watch::Watch() {
  g_on = true;
}
Watch::~Watch() {
  g_on = false;
}

uint64_t RefuseEach(const std::function<RunOutcome()>& scenario, bool forGood, uint64_t fewest) {
  EXPECT_TRUE(g_installed);
  xmlInitParser();
  const RunOutcome undisturbed = scenario();
  EXPECT_FALSE(undisturbed.refused);
  uint64_t unnoticed = 0;
  for (uint64_t n = 1;; ++n) {
    RunOutcome outcome;
    const bool refused = RunOnce(scenario, n, forGood, &outcome);
    if (!refused) {
      EXPECT_EQ(outcome.result, undisturbed.result);
      EXPECT_GT(n, fewest) << "so few allocations hardly are all";
      return unnoticed;
    }
    if (outcome.refused) continue;
    ++unnoticed;
    EXPECT_EQ(outcome.result, undisturbed.result) << "when allocation " << n << " is refused";
  }
}
