// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

// Numbers that depend on the seed and on nothing else, on any machine (splitmix64).
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}

  // A number from 0 to limit - 1.
  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(Next() >> 32U) % limit; }

 private:
  uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15U;
    uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
  }

  uint64_t state_;
};
