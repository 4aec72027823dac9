// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

// A last-in-first-out stack of pointers. It owns its slots, not the items.

struct RtkStack;

extern "C" {
// A new, empty stack, or NULL without memory. Deleted with RTK_DeleteStack().
RtkStack* RTK_CreateStack();
// 0; 12 without memory, with the stack as before; 22 for a NULL stack.
uint32_t RTK_Push(RtkStack* stack, void* item);
// The topmost item, taken off; NULL for an empty or NULL stack.
void* RTK_Pop(RtkStack* stack);
// The topmost item, left in place; NULL for an empty or NULL stack.
void* RTK_Peep(const RtkStack* stack);
// Number of items; 0 for a NULL stack.
uint32_t RTK_GetSize(const RtkStack* stack);
// Frees the stack but not what its items point to. NULL is accepted.
void RTK_DeleteStack(RtkStack* stack);
}
