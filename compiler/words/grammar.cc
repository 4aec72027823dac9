// SPDX-License-Identifier: BSD-3-Clause
// The tables "Substatements" of RFC 7950, a row a statement; the last column is what
// RFC 6020 allows, which is less: actions, anydata, notifications in nodes, features of
// enums and identities and so on came with version 1.1.
#include "compiler/words/grammar.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace compiler {

namespace {

constexpr SubStatement kModuleRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kAugment, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContact, 0, 1, 1},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kDeviation, 0, kAnyNumber, kAnyNumber},
    {Keyword::kExtension, 0, kAnyNumber, kAnyNumber},
    {Keyword::kFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIdentity, 0, kAnyNumber, kAnyNumber},
    {Keyword::kImport, 0, kAnyNumber, kAnyNumber},
    {Keyword::kInclude, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kNamespace, 1, 1, 1},
    {Keyword::kNotification, 0, kAnyNumber, kAnyNumber},
    {Keyword::kOrganization, 0, 1, 1},
    {Keyword::kPrefix, 1, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kRevision, 0, kAnyNumber, kAnyNumber},
    {Keyword::kRpc, 0, kAnyNumber, kAnyNumber},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
    {Keyword::kYangVersion, 0, 1, 1},
};

constexpr SubStatement kSubmoduleRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kAugment, 0, kAnyNumber, kAnyNumber},
    {Keyword::kBelongsTo, 1, 1, 1},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContact, 0, 1, 1},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kDeviation, 0, kAnyNumber, kAnyNumber},
    {Keyword::kExtension, 0, kAnyNumber, kAnyNumber},
    {Keyword::kFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIdentity, 0, kAnyNumber, kAnyNumber},
    {Keyword::kImport, 0, kAnyNumber, kAnyNumber},
    {Keyword::kInclude, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kNotification, 0, kAnyNumber, kAnyNumber},
    {Keyword::kOrganization, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kRevision, 0, kAnyNumber, kAnyNumber},
    {Keyword::kRpc, 0, kAnyNumber, kAnyNumber},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
    {Keyword::kYangVersion, 0, 1, 1},
};

constexpr SubStatement kImportRows[] = {
    {Keyword::kDescription, 0, 1, 0},
    {Keyword::kPrefix, 1, 1, 1},
    {Keyword::kReference, 0, 1, 0},
    {Keyword::kRevisionDate, 0, 1, 1},
};

constexpr SubStatement kIncludeRows[] = {
    {Keyword::kDescription, 0, 1, 0},
    {Keyword::kReference, 0, 1, 0},
    {Keyword::kRevisionDate, 0, 1, 1},
};

constexpr SubStatement kRevisionRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kBelongsToRows[] = {
    {Keyword::kPrefix, 1, 1, 1},
};

constexpr SubStatement kTypedefRows[] = {
    {Keyword::kDefault, 0, 1, 1}, {Keyword::kDescription, 0, 1, 1}, {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},  {Keyword::kType, 1, 1, 1},        {Keyword::kUnits, 0, 1, 1},
};

constexpr SubStatement kTypeRows[] = {
    {Keyword::kBase, 0, kAnyNumber, 1},
    {Keyword::kBit, 0, kAnyNumber, kAnyNumber},
    {Keyword::kEnum, 0, kAnyNumber, kAnyNumber},
    {Keyword::kFractionDigits, 0, 1, 1},
    {Keyword::kLength, 0, 1, 1},
    {Keyword::kPath, 0, 1, 1},
    {Keyword::kPattern, 0, kAnyNumber, kAnyNumber},
    {Keyword::kRange, 0, 1, 1},
    {Keyword::kRequireInstance, 0, 1, 1},
    {Keyword::kType, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kContainerRows[] = {
    {Keyword::kAction, 0, kAnyNumber, 0},
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kConfig, 0, 1, 1},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kNotification, 0, kAnyNumber, 0},
    {Keyword::kPresence, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kMustRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kErrorAppTag, 0, 1, 1},
    {Keyword::kErrorMessage, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kLeafRows[] = {
    {Keyword::kConfig, 0, 1, 1},      {Keyword::kDefault, 0, 1, 1},
    {Keyword::kDescription, 0, 1, 1}, {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMandatory, 0, 1, 1},   {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},   {Keyword::kStatus, 0, 1, 1},
    {Keyword::kType, 1, 1, 1},        {Keyword::kUnits, 0, 1, 1},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kLeafListRows[] = {
    {Keyword::kConfig, 0, 1, 1},
    {Keyword::kDefault, 0, kAnyNumber, 0},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMaxElements, 0, 1, 1},
    {Keyword::kMinElements, 0, 1, 1},
    {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kOrderedBy, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kType, 1, 1, 1},
    {Keyword::kUnits, 0, 1, 1},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kListRows[] = {
    {Keyword::kAction, 0, kAnyNumber, 0},
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kConfig, 0, 1, 1},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kKey, 0, 1, 1},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMaxElements, 0, 1, 1},
    {Keyword::kMinElements, 0, 1, 1},
    {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kNotification, 0, kAnyNumber, 0},
    {Keyword::kOrderedBy, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUnique, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kChoiceRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kCase, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, 0},
    {Keyword::kConfig, 0, 1, 1},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDefault, 0, 1, 1},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMandatory, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kCaseRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kAnydataRows[] = {
    {Keyword::kConfig, 0, 1, 1},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMandatory, 0, 1, 1},
    {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kAnyxmlRows[] = {
    {Keyword::kConfig, 0, 1, 1},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMandatory, 0, 1, 1},
    {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kGroupingRows[] = {
    {Keyword::kAction, 0, kAnyNumber, 0},
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kNotification, 0, kAnyNumber, 0},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kUsesRows[] = {
    {Keyword::kAugment, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kRefine, 0, kAnyNumber, kAnyNumber},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kRefineRows[] = {
    {Keyword::kConfig, 0, 1, 1},      {Keyword::kDefault, 0, kAnyNumber, 1},
    {Keyword::kDescription, 0, 1, 1}, {Keyword::kIfFeature, 0, kAnyNumber, 0},
    {Keyword::kMandatory, 0, 1, 1},   {Keyword::kMaxElements, 0, 1, 1},
    {Keyword::kMinElements, 0, 1, 1}, {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kPresence, 0, 1, 1},    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kRpcRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kInput, 0, 1, 1},
    {Keyword::kOutput, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kActionRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kInput, 0, 1, 1},
    {Keyword::kOutput, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kInputRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMust, 0, kAnyNumber, 0},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kOutputRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMust, 0, kAnyNumber, 0},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kNotificationRows[] = {
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kGrouping, 0, kAnyNumber, kAnyNumber},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kMust, 0, kAnyNumber, 0},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kTypedef, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
};

constexpr SubStatement kAugmentRows[] = {
    {Keyword::kAction, 0, kAnyNumber, 0},
    {Keyword::kAnydata, 0, kAnyNumber, 0},
    {Keyword::kAnyxml, 0, kAnyNumber, kAnyNumber},
    {Keyword::kCase, 0, kAnyNumber, kAnyNumber},
    {Keyword::kChoice, 0, kAnyNumber, kAnyNumber},
    {Keyword::kContainer, 0, kAnyNumber, kAnyNumber},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeaf, 0, kAnyNumber, kAnyNumber},
    {Keyword::kLeafList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kList, 0, kAnyNumber, kAnyNumber},
    {Keyword::kNotification, 0, kAnyNumber, 0},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
    {Keyword::kUses, 0, kAnyNumber, kAnyNumber},
    {Keyword::kWhen, 0, 1, 1},
};

constexpr SubStatement kIdentityRows[] = {
    {Keyword::kBase, 0, kAnyNumber, 1},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, 0},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
};

constexpr SubStatement kExtensionRows[] = {
    {Keyword::kArgument, 0, 1, 1},
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
};

constexpr SubStatement kArgumentRows[] = {
    {Keyword::kYinElement, 0, 1, 1},
};

constexpr SubStatement kFeatureRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kIfFeature, 0, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
};

constexpr SubStatement kDeviationRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kDeviate, 1, kAnyNumber, kAnyNumber},
    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kDeviateRows[] = {
    {Keyword::kConfig, 0, 1, 1},      {Keyword::kDefault, 0, kAnyNumber, 1},
    {Keyword::kMandatory, 0, 1, 1},   {Keyword::kMaxElements, 0, 1, 1},
    {Keyword::kMinElements, 0, 1, 1}, {Keyword::kMust, 0, kAnyNumber, kAnyNumber},
    {Keyword::kType, 0, 1, 1},        {Keyword::kUnique, 0, kAnyNumber, kAnyNumber},
    {Keyword::kUnits, 0, 1, 1},
};

constexpr SubStatement kRangeRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kErrorAppTag, 0, 1, 1},
    {Keyword::kErrorMessage, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kLengthRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kErrorAppTag, 0, 1, 1},
    {Keyword::kErrorMessage, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kPatternRows[] = {
    {Keyword::kDescription, 0, 1, 1},  {Keyword::kErrorAppTag, 0, 1, 1},
    {Keyword::kErrorMessage, 0, 1, 1}, {Keyword::kModifier, 0, 1, 0},
    {Keyword::kReference, 0, 1, 1},
};

constexpr SubStatement kEnumRows[] = {
    {Keyword::kDescription, 0, 1, 1}, {Keyword::kIfFeature, 0, kAnyNumber, 0},
    {Keyword::kReference, 0, 1, 1},   {Keyword::kStatus, 0, 1, 1},
    {Keyword::kValue, 0, 1, 1},
};

constexpr SubStatement kBitRows[] = {
    {Keyword::kDescription, 0, 1, 1}, {Keyword::kIfFeature, 0, kAnyNumber, 0},
    {Keyword::kPosition, 0, 1, 1},    {Keyword::kReference, 0, 1, 1},
    {Keyword::kStatus, 0, 1, 1},
};

constexpr SubStatement kWhenRows[] = {
    {Keyword::kDescription, 0, 1, 1},
    {Keyword::kReference, 0, 1, 1},
};

struct Holder {
  Keyword keyword;
  std::span<const SubStatement> rows;
};

constexpr Holder kHolders[] = {
    {Keyword::kModule, kModuleRows},
    {Keyword::kSubmodule, kSubmoduleRows},
    {Keyword::kImport, kImportRows},
    {Keyword::kInclude, kIncludeRows},
    {Keyword::kRevision, kRevisionRows},
    {Keyword::kBelongsTo, kBelongsToRows},
    {Keyword::kTypedef, kTypedefRows},
    {Keyword::kType, kTypeRows},
    {Keyword::kContainer, kContainerRows},
    {Keyword::kMust, kMustRows},
    {Keyword::kLeaf, kLeafRows},
    {Keyword::kLeafList, kLeafListRows},
    {Keyword::kList, kListRows},
    {Keyword::kChoice, kChoiceRows},
    {Keyword::kCase, kCaseRows},
    {Keyword::kAnydata, kAnydataRows},
    {Keyword::kAnyxml, kAnyxmlRows},
    {Keyword::kGrouping, kGroupingRows},
    {Keyword::kUses, kUsesRows},
    {Keyword::kRefine, kRefineRows},
    {Keyword::kRpc, kRpcRows},
    {Keyword::kAction, kActionRows},
    {Keyword::kInput, kInputRows},
    {Keyword::kOutput, kOutputRows},
    {Keyword::kNotification, kNotificationRows},
    {Keyword::kAugment, kAugmentRows},
    {Keyword::kIdentity, kIdentityRows},
    {Keyword::kExtension, kExtensionRows},
    {Keyword::kArgument, kArgumentRows},
    {Keyword::kFeature, kFeatureRows},
    {Keyword::kDeviation, kDeviationRows},
    {Keyword::kDeviate, kDeviateRows},
    {Keyword::kRange, kRangeRows},
    {Keyword::kLength, kLengthRows},
    {Keyword::kPattern, kPatternRows},
    {Keyword::kEnum, kEnumRows},
    {Keyword::kBit, kBitRows},
    {Keyword::kWhen, kWhenRows},
};

consteval std::array<std::span<const SubStatement>, kKeywordCount> ByKeyword() {
  std::array<std::span<const SubStatement>, kKeywordCount> table{};
  for (const Holder& holder : kHolders) table[static_cast<size_t>(holder.keyword)] = holder.rows;
  return table;
}

constexpr auto kTable = ByKeyword();

}  // namespace

std::span<const SubStatement> SubStatementsOf(Keyword parent) noexcept {
  return kTable[static_cast<size_t>(parent)];
}

const SubStatement* FindSubStatement(Keyword parent, Keyword child) noexcept {
  for (const SubStatement& row : SubStatementsOf(parent))
    if (row.keyword == child) return &row;
  return nullptr;
}

Section SectionOf(Keyword keyword) noexcept {
  switch (keyword) {
    case Keyword::kYangVersion:
    case Keyword::kNamespace:
    case Keyword::kPrefix:
    case Keyword::kBelongsTo:
      return Section::kHeader;
    case Keyword::kImport:
    case Keyword::kInclude:
      return Section::kLinkage;
    case Keyword::kOrganization:
    case Keyword::kContact:
    case Keyword::kDescription:
    case Keyword::kReference:
      return Section::kMeta;
    case Keyword::kRevision:
      return Section::kRevision;
    default:
      return Section::kBody;
  }
}

const char* NameOf(Section section) noexcept {
  constexpr const char* kNames[] = {
      "header (yang-version, namespace, prefix, belongs-to)", "linkage (import, include)",
      "meta (organization, contact, description, reference)", "revision", "body"};
  return kNames[static_cast<size_t>(section)];
}

bool IsDataDefinition(Keyword keyword) noexcept {
  constexpr Keyword kKinds[] = {Keyword::kAnydata,   Keyword::kAnyxml, Keyword::kChoice,
                                Keyword::kContainer, Keyword::kLeaf,   Keyword::kLeafList,
                                Keyword::kList,      Keyword::kUses};
  return std::find(std::begin(kKinds), std::end(kKinds), keyword) != std::end(kKinds);
}

}  // namespace compiler
