// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/keyword.h"

#include <array>
#include <iterator>

namespace compiler {

namespace {

constexpr KeywordRow kRows[] = {
    {"", "", false},
    {"action", "name", false},
    {"anydata", "name", false},
    {"anyxml", "name", false},
    {"argument", "name", false},
    {"augment", "target-node", false},
    {"base", "name", false},
    {"belongs-to", "module", false},
    {"bit", "name", false},
    {"case", "name", false},
    {"choice", "name", false},
    {"config", "value", false},
    {"contact", "text", true},
    {"container", "name", false},
    {"default", "value", false},
    {"description", "text", true},
    {"deviate", "value", false},
    {"deviation", "target-node", false},
    {"enum", "name", false},
    {"error-app-tag", "value", false},
    {"error-message", "value", true},
    {"extension", "name", false},
    {"feature", "name", false},
    {"fraction-digits", "value", false},
    {"grouping", "name", false},
    {"identity", "name", false},
    {"if-feature", "name", false},
    {"import", "module", false},
    {"include", "module", false},
    {"input", "", false},
    {"key", "value", false},
    {"leaf", "name", false},
    {"leaf-list", "name", false},
    {"length", "value", false},
    {"list", "name", false},
    {"mandatory", "value", false},
    {"max-elements", "value", false},
    {"min-elements", "value", false},
    {"modifier", "value", false},
    {"module", "name", false},
    {"must", "condition", false},
    {"namespace", "uri", false},
    {"notification", "name", false},
    {"ordered-by", "value", false},
    {"organization", "text", true},
    {"output", "", false},
    {"path", "value", false},
    {"pattern", "value", false},
    {"position", "value", false},
    {"prefix", "value", false},
    {"presence", "value", false},
    {"range", "value", false},
    {"reference", "text", true},
    {"refine", "target-node", false},
    {"require-instance", "value", false},
    {"revision", "date", false},
    {"revision-date", "date", false},
    {"rpc", "name", false},
    {"status", "value", false},
    {"submodule", "name", false},
    {"type", "name", false},
    {"typedef", "name", false},
    {"unique", "tag", false},
    {"units", "name", false},
    {"uses", "name", false},
    {"value", "value", false},
    {"when", "condition", false},
    {"yang-version", "value", false},
    {"yin-element", "value", false},
};
static_assert(std::size(kRows) == kKeywordCount, "one row per statement");

// A word is looked up in one step: four of its features make a slot of its own for each
// statement. The factors were found by trial.
constexpr size_t kSlots = 256;
constexpr size_t kShortest = 3;

constexpr size_t SlotOf(std::string_view name) noexcept {
  return (static_cast<size_t>(name[0]) * 140 + static_cast<size_t>(name[2]) * 150 +
          static_cast<size_t>(name[name.size() - 2]) * 243 + name.size() * 155) %
         kSlots;
}

consteval std::array<uint8_t, kSlots> FillSlots() {
  std::array<uint8_t, kSlots> slots{};
  for (size_t i = 1; i < std::size(kRows); ++i)
    slots[SlotOf(kRows[i].name)] = static_cast<uint8_t>(i);
  return slots;
}
constexpr std::array<uint8_t, kSlots> kRowOfSlot = FillSlots();

consteval bool EachHasASlot() {
  for (size_t i = 1; i < std::size(kRows); ++i)
    if (kRows[i].name.size() < kShortest || kRowOfSlot[SlotOf(kRows[i].name)] != i) return false;
  return true;
}
static_assert(EachHasASlot(), "two statements share a slot");

}  // namespace

const KeywordRow& RowOf(Keyword keyword) noexcept {
  return kRows[static_cast<size_t>(keyword)];
}

Keyword FindKeyword(std::string_view name) noexcept {
  if (name.size() < kShortest) return Keyword::kNone;
  const uint8_t row = kRowOfSlot[SlotOf(name)];
  return kRows[row].name == name ? static_cast<Keyword>(row) : Keyword::kNone;
}

}  // namespace compiler
