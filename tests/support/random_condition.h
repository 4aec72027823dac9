// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <random>
#include <string>
#include <vector>

// Conditions from a seed: mostly well formed, over the names that are given, with a token
// too many, too few or out of place now and then.
namespace random_condition {

class Writer {
 public:
  Writer(uint64_t seed, std::vector<std::string> names, std::vector<std::string> constants)
      : random_(seed), names_(std::move(names)), constants_(std::move(constants)) {}

  std::string Condition();

 private:
  uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(random_() % bound); }
  const std::string& One(const std::vector<std::string>& of) {
    return of[Below(static_cast<uint32_t>(of.size()))];
  }
  std::string Path();
  std::string Operand(uint32_t depth);
  std::string Expression(uint32_t depth);

  std::mt19937_64 random_;
  std::vector<std::string> names_;
  std::vector<std::string> constants_;
};

}  // namespace random_condition
