// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// "did you mean": the nearest of the names that could have been meant.
#include <cstdint>
#include <string>
#include <string_view>

namespace compiler {

// How many names are held against wrong ones in one run: some tenths of a second.
inline constexpr uint64_t kMostComparedNames = uint64_t{1} << 22;

// The number of letters to insert, leave out, change or swap with their neighbour that
// makes `b` of `a`, or `limit` + 1 when it is more than that.
unsigned EditDistance(std::string_view a, std::string_view b, unsigned limit);

// Takes candidates one after the other and keeps the nearest; of equally near ones the
// first.
class Suggestion {
 public:
  // `left` counts down the names that may still be compared in all, so that thousands of
  // mistakes among thousands of names end; NULL: any number.
  explicit Suggestion(std::string_view wanted, uint64_t* left = nullptr);
  // False: no more are compared.
  bool Consider(std::string_view candidate);

  // `did you mean "x"?`, or `otherwise` when nothing is near enough.
  std::string Advice(std::string_view otherwise) const;

 private:
  std::string wanted_;
  std::string best_;
  uint64_t* left_;
  unsigned limit_;  // what is at most allowed; one less than the best so far
};

}  // namespace compiler
