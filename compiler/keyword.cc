// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/keyword.h"

#include <algorithm>
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

consteval bool NamesAscend() {
  for (size_t i = 1; i < std::size(kRows); ++i)
    if (kRows[i - 1].name >= kRows[i].name) return false;
  return true;
}
static_assert(NamesAscend(), "statements are looked up by halving");

}  // namespace

const KeywordRow& RowOf(Keyword keyword) noexcept {
  return kRows[static_cast<size_t>(keyword)];
}

Keyword FindKeyword(std::string_view name) noexcept {
  const auto* row =
      std::lower_bound(std::begin(kRows) + 1, std::end(kRows), name,
                       [](const KeywordRow& r, std::string_view n) { return r.name < n; });
  if (row == std::end(kRows) || row->name != name) return Keyword::kNone;
  return static_cast<Keyword>(row - std::begin(kRows));
}

}  // namespace compiler
