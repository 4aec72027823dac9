// SPDX-License-Identifier: BSD-3-Clause
// Merging the record of a module read from a second file into that of the first:
// its global definitions one by one, each looked up in the destination by its
// key, then its schema trees. What both records hold must be the same; only an
// include or a typedef that is there already is kept without a comparison, and a
// deviation is always taken over. A merged feature is disabled, a merged typedef
// has no units, and a merged identity no description.
#include "schema/merge_definitions.h"

#include "context/load_error.h"
#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/ext_inst.h"
#include "schema/merge_tree.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "schema/record_array.h"
#include "schema/typedef.h"
#include "types/type.h"

// A record is not merged into itself: it would append its deviations to the array that
// is being walked, which moves as it grows, and find each of its nodes to be its own twin.
static bool CanMerge(const QmsModule* dst, const QmsModule* src) {
  return dst != nullptr && src != nullptr && dst != src && dst->ctx != nullptr &&
         dst->ctx == src->ctx;
}

// Merges the elements of one array in order, up to the first failure.
template <typename Elem>
static uint32_t MergeEach(QmsModule* dst, const QmsModule* src, Elem* QmsModule::*array,
                          uint16_t QmsModule::*count,
                          uint32_t (*mergeOne)(QmsModule*, const Elem*)) {
  if (!CanMerge(dst, src)) return QM_INVALID;
  for (uint32_t i = 0; src->*array != nullptr && i < src->*count; ++i) {
    const uint32_t ret = mergeOne(dst, &(src->*array)[i]);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

// Gives the status of a step; records `format` with `text`, mostly the element's
// name, when it is not 0.
static uint32_t Checked(uint32_t status, QmsModule* dst, const char* format, const char* text) {
  if (status != QM_OK) QM_CTX_AddModError(dst->ctx, dst->name, format, text);
  return status;
}

static uint32_t MergeImport(QmsModule* dst, const QmsImport* src) {
  const QmsImport* own = QMS_MOD_FindImportByPrefix(dst->imports, dst->importCount, src->prefix);
  if (own == nullptr) {
    const uint32_t ret = QMS_MOD_AppendOneImport(dst, src->moduleName, src->prefix);
    if (ret != QM_OK) {
      QM_CTX_AddModError(dst->ctx, dst->name,
                         "Failed to merge import module name \"%s\" with prefix \"%s\".",
                         src->moduleName, src->prefix);
    }
    return ret;
  }
  if (RTK_StrCmp(own->moduleName, src->moduleName) == 0) return QM_OK;
  QM_CTX_AddModError(dst->ctx, dst->name,
                     "The import module name \"%s\" corresponding to the prefix \"%s\" is "
                     "different from the existing module name \"%s\".",
                     src->moduleName, src->prefix, own->moduleName);
  return QM_INVALID;
}

static uint32_t MergeInclude(QmsModule* dst, const QmsInclude* src) {
  const char* name = src->submoduleName;
  if (QMS_MOD_FindIncludeBySubName(dst->includes, dst->includeCount, name) != nullptr) return QM_OK;
  return Checked(QMS_MOD_AppendOneInclude(dst, name), dst,
                 "Failed to merge include module name \"%s\".", name);
}

static uint32_t CopyIfFeaturesOf(QmsModule* dst, QmsIfFeature** array, uint16_t* count,
                                 const QmsIfFeature* src, uint16_t srcCount) {
  const bool copied =
      CopyCounted(ModuleDict(dst), array, count, src, srcCount, QMS_NODE_CopyIfFeaturesArray);
  return copied ? QM_OK : QM_NO_MEMORY;
}

static uint32_t AppendFeatureFrom(QmsModule* dst, const QmsFeature* src) {
  const uint32_t ret = Checked(QMS_MOD_AppendOneFeature(dst, src->name), dst,
                               "Failed to merge feature name \"%s\".", src->name);
  if (ret != QM_OK) return ret;
  QmsFeature* feature = &dst->features[dst->featureCount - 1];
  return Checked(CopyIfFeaturesOf(dst, &feature->ifFeatures, &feature->ifFeatureCount,
                                  src->ifFeatures, src->ifFeatureCount),
                 dst, "Failed to merge if-feature informations of feature \"%s\".", src->name);
}

static uint32_t MergeFeature(QmsModule* dst, const QmsFeature* src) {
  const QmsFeature* own = QMS_MOD_FindFeatureByName(dst, src->name);
  if (own == nullptr) return AppendFeatureFrom(dst, src);
  if (QMS_MOD_CheckTwoFeatureSame(own, src) != 0) return QM_OK;
  return Checked(QM_INVALID, dst,
                 "The if-feature informations of the feature \"%s\" are different from the "
                 "existing feature",
                 src->name);
}

static uint32_t CopyBasesOf(QmsModule* dst, QmsIdentity* identity, const QmsIdentity* src) {
  const bool copied = CopyCounted(ModuleDict(dst), &identity->bases, &identity->baseCount,
                                  src->bases, src->baseCount, QMS_MOD_CopyIdentBaseArray);
  return copied ? QM_OK : QM_NO_MEMORY;
}

static uint32_t AppendIdentityFrom(QmsModule* dst, const QmsIdentity* src) {
  uint32_t ret = Checked(QMS_MOD_AppendOneIdentity(dst, src->name), dst,
                         "Failed to merge identity name \"%s\".", src->name);
  if (ret != QM_OK) return ret;
  QmsIdentity* identity = &dst->identities[dst->identityCount - 1];
  ret = Checked(CopyBasesOf(dst, identity, src), dst,
                "Failed to merge base informations of identity \"%s\".", src->name);
  if (ret != QM_OK) return ret;
  return Checked(CopyIfFeaturesOf(dst, &identity->ifFeatures, &identity->ifFeatureCount,
                                  src->ifFeatures, src->ifFeatureCount),
                 dst, "Failed to merge if-feature informations of identity \"%s\".", src->name);
}

static uint32_t MergeIdentity(QmsModule* dst, const QmsIdentity* src) {
  const QmsIdentity* own = QMS_MOD_FindIdentityByName(dst, src->name);
  if (own == nullptr) return AppendIdentityFrom(dst, src);
  if (QMS_MOD_CheckTwoIdentitySame(own, src) != 0) return QM_OK;
  return Checked(QM_INVALID, dst,
                 "The information of the identity \"%s\" is different from the existing identity",
                 src->name);
}

static uint32_t MergeExtension(QmsModule* dst, const QmsExtension* src) {
  const QmsExtension* own = QMS_MOD_FindExtensionByName(dst, src->name);
  if (own == nullptr) {
    return Checked(QMS_MOD_AppendOneExtension(dst, src->name, src->argument, src->yinElement), dst,
                   "Failed to merge extension name \"%s\".", src->name);
  }
  if (QMS_MOD_CheckTwoExtensionSame(own, src) != 0) return QM_OK;
  return Checked(QM_INVALID, dst,
                 "The information of the extension \"%s\" is different from the existing extension",
                 src->name);
}

static uint32_t MergeDeviation(QmsModule* dst, const QmsDeviation* src) {
  if (QMS_MOD_CheckSameDeviationExist(dst, src) != 0) return QM_OK;
  const uint32_t ret = Checked(QMS_MOD_AppendOneDeviation(dst, src->targetPath), dst,
                               "Failed to merge deviation \"%s\".", src->targetPath);
  if (ret != QM_OK) return ret;
  QmsDeviation* deviation = &dst->deviations[dst->deviationCount - 1];
  const bool copied = CopyCounted(ModuleDict(dst), &deviation->deviates, &deviation->deviateCount,
                                  src->deviates, src->deviateCount, QMS_MOD_CopyDeviateArray);
  return Checked(copied ? QM_OK : QM_NO_MEMORY, dst,
                 "Failed to merge deviate informations of deviation \"%s\".", src->targetPath);
}

static uint32_t MergeTypeDef(QmsModule* dst, const QmsTypedef* src) {
  if (QMS_MOD_FindQmsTypDefByName(dst, src->name) != nullptr) return QM_OK;
  const uint32_t ret = Checked(AppendNextTypeDef(dst, src->name, &src->type, src->defaultValue),
                               dst, "Failed to merge typedef \"%s\".", src->name);
  if (ret != QM_OK) return ret;
  QmtType* type = &dst->typedefs[dst->typedefCount - 1].type;
  return Checked(QMT_TYPE_UpdateRealTypeDerivedFrom(type, dst), dst,
                 "Failed to update real type of typedef \"%s\".", src->name);
}

uint32_t QMS_MOD_MergeNonNodeMemberImport(QmsModule* dst, QmsModule* src) {
  return MergeEach(dst, src, &QmsModule::imports, &QmsModule::importCount, MergeImport);
}

uint32_t QMS_MOD_MergeNonNodeMemberInclude(QmsModule* dst, QmsModule* src) {
  return MergeEach(dst, src, &QmsModule::includes, &QmsModule::includeCount, MergeInclude);
}

uint32_t QMS_MOD_MergeNonNodeMemberFeature(QmsModule* dst, QmsModule* src) {
  return MergeEach(dst, src, &QmsModule::features, &QmsModule::featureCount, MergeFeature);
}

uint32_t QMS_MOD_MergeNonNodeMemberIdentity(QmsModule* dst, QmsModule* src) {
  return MergeEach(dst, src, &QmsModule::identities, &QmsModule::identityCount, MergeIdentity);
}

uint32_t QMS_MOD_MergeNonNodeMemberExtension(QmsModule* dst, QmsModule* src) {
  return MergeEach(dst, src, &QmsModule::extensions, &QmsModule::extensionCount, MergeExtension);
}

uint32_t QMS_MOD_MergeNonNodeMemberDeviation(QmsModule* dst, QmsModule* src) {
  return MergeEach(dst, src, &QmsModule::deviations, &QmsModule::deviationCount, MergeDeviation);
}

uint32_t QMS_MOD_MergeNonNodeMemberTypeDef(QmsModule* dst, QmsModule* src) {
  // Once for all that are merged; the registration resolves them again.
  if (CanMerge(dst, src) && src->typedefCount != 0) ClearResolvedTypedefs(dst);
  return MergeEach(dst, src, &QmsModule::typedefs, &QmsModule::typedefCount, MergeTypeDef);
}

static uint32_t MergeModuleExtInsts(QmsModule* dst, QmsModule* src) {
  const uint32_t ret = QMS_EXT_MergeExtInsts(ModuleDict(dst), &dst->extInsts, &dst->extInstCount,
                                             src->extInsts, src->extInstCount);
  return Checked(ret, dst, "%s", "Failed to merge global extension instance informations.");
}

// Order matters where the first failure is the one that is reported.
constexpr uint32_t (*kMemberMerges[])(QmsModule*, QmsModule*) = {
    QMS_MOD_MergeNonNodeMemberImport,    QMS_MOD_MergeNonNodeMemberInclude,
    QMS_MOD_MergeNonNodeMemberFeature,   QMS_MOD_MergeNonNodeMemberIdentity,
    QMS_MOD_MergeNonNodeMemberExtension, QMS_MOD_MergeNonNodeMemberDeviation,
    QMS_MOD_MergeNonNodeMemberTypeDef,   MergeModuleExtInsts,
};

uint32_t QMS_MOD_MergeGlobalDefData(QmsModule* dst, QmsModule* src) {
  if (!CanMerge(dst, src)) return QM_INVALID;
  for (const auto merge : kMemberMerges) {
    const uint32_t ret = merge(dst, src);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_MOD_MergeTwoModuleInSameCtx(QmsModule* dst, QmsModule* src) {
  if (!CanMerge(dst, src)) return QM_INVALID;
  const uint32_t ret = Checked(QMS_MOD_MergeGlobalDefData(dst, src), dst, "%s",
                               "Failed to merge global definitions.");
  if (ret != QM_OK) return ret;
  return Checked(QMS_MOD_MergeTreeNodeData(dst, src), dst, "%s", "Failed to merge schema tree.");
}
