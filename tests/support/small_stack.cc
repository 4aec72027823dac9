// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/small_stack.h"

#include <pthread.h>
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

namespace small_stack {

namespace {

constexpr size_t kGuard = size_t{64} * 1024;
constexpr unsigned char kPaint = 0xA5;

void* RunBody(void* body) {
  (*static_cast<const std::function<void()>*>(body))();
  return nullptr;
}

// The stack grows down, so what is left of the paint is at its low end.
size_t PaintLeft(const unsigned char* stack) {
  size_t left = 0;
  while (left < kSize && stack[left] == kPaint) ++left;
  return left;
}

}  // namespace

size_t Run(const std::function<void()>& body) {
  void* block =
      mmap(nullptr, kGuard + kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (block == MAP_FAILED) std::abort();
  auto* stack = static_cast<unsigned char*>(block) + kGuard;
  if (mprotect(stack, kSize, PROT_READ | PROT_WRITE) != 0) std::abort();
  std::memset(stack, kPaint, kSize);
  pthread_attr_t attributes;
  pthread_t thread = {};
  std::function<void()> copy = body;
  if (pthread_attr_init(&attributes) != 0 || pthread_attr_setstack(&attributes, stack, kSize) != 0)
    std::abort();
  if (pthread_create(&thread, &attributes, RunBody, &copy) != 0) std::abort();
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  const size_t used = kSize - PaintLeft(stack);
  munmap(block, kGuard + kSize);
  return used;
}

}  // namespace small_stack
