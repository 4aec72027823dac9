// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// All memory of the compiler, that of operator new and that of libxml2, counted and
// refused on demand. The test program replaces both allocators.
#include <cstdint>
#include <functional>
#include <string>

// What one run of a piece of the compiler came to.
struct RunOutcome {
  bool refused = false;  // it said that memory was refused
  std::string result;    // what it gave otherwise
};

// While one lives, allocations are counted and refused: a scenario makes it around the
// call that it is about.
class Watch {
 public:
  Watch();
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
};

// Runs the scenario once for each allocation that it makes, which is refused; with
// `forGood` all after it too. Every run must say so or give the result that the scenario
// gives undisturbed, leave no block, and not disturb the next. The number of runs that
// gave a result although an allocation was refused, is returned: what nobody misses. There
// are at least `fewest` allocations, or the test has missed them.
uint64_t RefuseEach(const std::function<RunOutcome()>& scenario, bool forGood,
                    uint64_t fewest = 100);
