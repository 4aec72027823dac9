// SPDX-License-Identifier: BSD-3-Clause
// The stack is one array of slots that doubles when it is full and never
// shrinks: its users push and pop a handful of items around one evaluation.
#include "platform/stack.h"

#include <cstddef>

#include <qmodel/error.h>

#include "platform/hooks.h"

struct RtkStack {
  void** slots;  // owned; NULL until the first push
  uint32_t count;
  uint32_t capacity;
};

constexpr uint32_t kFirstCapacity = 16;

static bool GrowSlots(RtkStack* stack) {
  if (stack->capacity > UINT32_MAX / 2) return false;
  const uint32_t capacity = stack->capacity == 0 ? kFirstCapacity : stack->capacity * 2;
  const size_t size = size_t{capacity} * sizeof(void*);
  void* slots = stack->slots == nullptr ? TakeBlock(size) : ResizeBlock(stack->slots, size);
  if (slots == nullptr) return false;
  stack->slots = static_cast<void**>(slots);
  stack->capacity = capacity;
  return true;
}

RtkStack* RTK_CreateStack() {
  auto* stack = static_cast<RtkStack*>(TakeBlock(sizeof(RtkStack)));
  if (stack != nullptr) *stack = RtkStack{nullptr, 0, 0};
  return stack;
}

uint32_t RTK_Push(RtkStack* stack, void* item) {
  if (stack == nullptr) return QM_INVALID;
  if (stack->count == stack->capacity && !GrowSlots(stack)) return QM_NO_MEMORY;
  stack->slots[stack->count++] = item;
  return QM_OK;
}

void* RTK_Pop(RtkStack* stack) {
  if (RTK_GetSize(stack) == 0) return nullptr;
  return stack->slots[--stack->count];
}

void* RTK_Peep(const RtkStack* stack) {
  if (RTK_GetSize(stack) == 0) return nullptr;
  return stack->slots[stack->count - 1];
}

uint32_t RTK_GetSize(const RtkStack* stack) {
  return stack != nullptr ? stack->count : 0;
}

void RTK_DeleteStack(RtkStack* stack) {
  if (stack == nullptr) return;
  g_qmMemFreeFunc(stack->slots);
  g_qmMemFreeFunc(stack);
}
