// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/data_template.h"

#include <string_view>

#include "compiler/reading/statement.h"
#include "compiler/words/grammar.h"

namespace compiler {

namespace {

struct TemplateRow {
  std::string_view space;
  std::string_view name;
  DataTemplate kind;
};

constexpr std::string_view kStructures = "urn:ietf:params:xml:ns:yang:ietf-yang-structure-ext";

constexpr TemplateRow kRows[] = {
    {"urn:ietf:params:xml:ns:yang:ietf-restconf", "yang-data", DataTemplate::kYangData},
    {kStructures, "structure", DataTemplate::kStructure},
    {kStructures, "augment-structure", DataTemplate::kAugmentStructure},
};

}  // namespace

DataTemplate DataTemplateOf(const xmlNode* statement) noexcept {
  if (!Is(statement, Keyword::kNone) || statement->ns == nullptr || statement->ns->href == nullptr)
    return DataTemplate::kNone;
  const std::string_view space = reinterpret_cast<const char*>(statement->ns->href);
  for (const TemplateRow& row : kRows)
    if (row.name == NameOf(statement) && row.space == space) return row.kind;
  return DataTemplate::kNone;
}

bool MayStandInTemplate(DataTemplate holder, Keyword keyword) noexcept {
  if (IsDataDefinition(keyword) || keyword == Keyword::kNone) return true;
  switch (keyword) {
    case Keyword::kStatus:
    case Keyword::kDescription:
    case Keyword::kReference:
      return holder != DataTemplate::kYangData;
    case Keyword::kMust:
    case Keyword::kTypedef:
    case Keyword::kGrouping:
      return holder == DataTemplate::kStructure;
    case Keyword::kCase:
      return holder == DataTemplate::kAugmentStructure;
    default:
      return false;
  }
}

}  // namespace compiler
