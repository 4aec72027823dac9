// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The statements of YANG and the names of their arguments in YIN (RFC 7950, section
// 13.1, table 1).
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace compiler {

// In alphabetical order of the statements' names.
enum class Keyword : uint8_t {
  kNone,
  kAction,
  kAnydata,
  kAnyxml,
  kArgument,
  kAugment,
  kBase,
  kBelongsTo,
  kBit,
  kCase,
  kChoice,
  kConfig,
  kContact,
  kContainer,
  kDefault,
  kDescription,
  kDeviate,
  kDeviation,
  kEnum,
  kErrorAppTag,
  kErrorMessage,
  kExtension,
  kFeature,
  kFractionDigits,
  kGrouping,
  kIdentity,
  kIfFeature,
  kImport,
  kInclude,
  kInput,
  kKey,
  kLeaf,
  kLeafList,
  kLength,
  kList,
  kMandatory,
  kMaxElements,
  kMinElements,
  kModifier,
  kModule,
  kMust,
  kNamespace,
  kNotification,
  kOrderedBy,
  kOrganization,
  kOutput,
  kPath,
  kPattern,
  kPosition,
  kPrefix,
  kPresence,
  kRange,
  kReference,
  kRefine,
  kRequireInstance,
  kRevision,
  kRevisionDate,
  kRpc,
  kStatus,
  kSubmodule,
  kType,
  kTypedef,
  kUnique,
  kUnits,
  kUses,
  kValue,
  kWhen,
  kYangVersion,
  kYinElement,
};
inline constexpr size_t kKeywordCount = 69;

struct KeywordRow {
  std::string_view name;
  std::string_view argument;  // empty: the statement takes none
  bool argumentIsElement;     // in YIN
};

const KeywordRow& RowOf(Keyword keyword) noexcept;

// kNone when `name` is no statement of YANG.
Keyword FindKeyword(std::string_view name) noexcept;

}  // namespace compiler
