// SPDX-License-Identifier: BSD-3-Clause
// The usual table of distances between beginnings, of which three rows are kept.
#include "compiler/words/suggestion.h"

#include <algorithm>
#include <vector>

namespace compiler {

namespace {

// Names are at most this long to be compared: longer ones are not typed by hand.
constexpr size_t kLongestName = 128;

char ToLower(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsEqualWithoutCase(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return ToLower(x) == ToLower(y); });
}

}  // namespace

unsigned EditDistance(std::string_view a, std::string_view b, unsigned limit) {
  const size_t difference = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
  if (difference > limit) return limit + 1;
  std::vector<unsigned> before(b.size() + 1);
  std::vector<unsigned> last(b.size() + 1);
  std::vector<unsigned> row(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) last[j] = static_cast<unsigned>(j);
  for (size_t i = 1; i <= a.size(); ++i) {
    row[0] = static_cast<unsigned>(i);
    for (size_t j = 1; j <= b.size(); ++j) {
      const unsigned change = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(last);
    last.swap(row);
  }
  return std::min(last[b.size()], limit + 1);
}

Suggestion::Suggestion(std::string_view wanted, uint64_t* left)
    : wanted_(wanted.substr(0, kLongestName)),
      left_(left),
      limit_(std::clamp<unsigned>(static_cast<unsigned>(wanted.size()) / 3, 1, 3)) {}

bool Suggestion::Consider(std::string_view candidate) {
  if (left_ != nullptr) {
    if (*left_ == 0) return false;
    --*left_;
  }
  if (candidate.empty() || candidate == wanted_ || candidate.size() > kLongestName) return true;
  if (!best_.empty() && limit_ == 0) return true;
  const unsigned limit = best_.empty() ? limit_ : limit_ - 1;
  const bool sameLetters = IsEqualWithoutCase(wanted_, candidate);
  const unsigned distance = sameLetters ? 1 : EditDistance(wanted_, candidate, limit);
  const bool allDiffer = !sameLetters && distance >= std::max(wanted_.size(), candidate.size());
  if (distance > limit || allDiffer) return true;
  best_ = candidate;
  limit_ = distance;
  return true;
}

std::string Suggestion::Advice(std::string_view otherwise) const {
  if (best_.empty()) return std::string(otherwise);
  return "did you mean \"" + best_ + "\"?";
}

}  // namespace compiler
