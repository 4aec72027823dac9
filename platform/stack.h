// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

// A last-in-first-out stack of pointers. It owns its slots, not the items.

struct RtkStack;

extern "C" {
RtkStack* RTK_CreateStack();
uint32_t RTK_Push(RtkStack* stack, void* item);
void* RTK_Pop(RtkStack* stack);
void* RTK_Peep(const RtkStack* stack);
uint32_t RTK_GetSize(const RtkStack* stack);
void RTK_DeleteStack(RtkStack* stack);
}
