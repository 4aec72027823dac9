// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>

// Memory hooks that count live blocks and can refuse allocations. Registered by
// the main function of every test program before anything else, since the
// library takes hooks once per process.
namespace counting_memory {

// Which allocations are refused from now on.
enum class Refuse { kNone, kOnce, kFromThenOn };

// Registers the hooks; false when the library refuses them.
bool Install();

// Blocks that are allocated now.
size_t LiveBlocks();

// Allocations asked for since the process started.
uint64_t AllocationCount();

// Refuses the n-th allocation from now (1 is the next), or it and all later ones.
void RefuseNth(uint64_t n, Refuse mode);

// Ends refusing; gives the number of allocations refused since RefuseNth().
uint64_t StopRefusing();

// Refuses every allocation of the calling thread until it says otherwise; other threads
// go on.
void RefuseInThisThread(bool refuse);

// Runs `scenario` with the n-th allocation refused, for n = 1, 2, 3 and so on (or
// `first` and every `stride`-th one after it), in both modes, until a run sees no refusal. After
// each run no block may be left. `scenario(refusing)` checks its own results. Gives the number of
// injected failures.
uint64_t FailEachAllocation(void (*scenario)(bool refusing), uint64_t stride = 1,
                            uint64_t first = 1);

}  // namespace counting_memory
