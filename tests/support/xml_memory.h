// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

// Hooks for libxml2's own allocator that can refuse one allocation.
namespace xml_memory {

// Puts them in the place of libxml2's; false when libxml2 refuses them.
bool Install();

// Refuses the n-th allocation from now (1 is the next); 0: none.
void RefuseNth(uint64_t n);

// What is left of n; 0 once the allocation was refused.
uint64_t Left();

}  // namespace xml_memory
