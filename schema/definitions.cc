// SPDX-License-Identifier: BSD-3-Clause
// The global definitions of a module, kind by kind: what links it to others,
// features, identities with their bases, extensions, deviations with their deviates.
// All texts are interned, so two definitions are compared by the pointers of their
// texts and must come from one context.
#include "schema/definitions.h"

#include <qmodel/schema.h>

#include "context/dict.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "schema/record_array.h"
#include "types/type.h"

// The Fill of an element with one text.
template <typename Elem>
static uint32_t FillText(QmDict* dict, Elem* elem, const char* Elem::*field, const char* text) {
  if (dict == nullptr || elem == nullptr || text == nullptr) return QM_INVALID;
  return InternText(dict, &(elem->*field), text) ? QM_OK : QM_NO_MEMORY;
}

// What links a module to others (RFC 7950 sections 7.1.5 and 7.1.6).

uint32_t QMS_MOD_FillImport(QmDict* dict, QmsImport* import, const char* moduleName,
                            const char* prefix) {
  if (dict == nullptr || import == nullptr) return QM_INVALID;
  // An import without prefix is refused here: the section demands one.
  const bool filled = InternBoth(dict, &import->moduleName, moduleName, &import->prefix, prefix);
  return filled ? QM_OK : QM_INVALID;
}

uint32_t QMS_MOD_AppendOneImport(QmsModule* mod, const char* moduleName, const char* prefix) {
  return AppendTo(mod, &QmsModule::imports, &QmsModule::importCount, QMS_MOD_FillImport, moduleName,
                  prefix);
}

QmsImport* QMS_MOD_FindImportByPrefix(QmsImport* imports, uint32_t count, const char* prefix) {
  return FindByText(imports, count, &QmsImport::prefix, prefix);
}

void QMS_MOD_ClearImport(QmDict* dict, QmsImport* import) {
  if (import == nullptr) return;
  ReleaseText(dict, &import->moduleName);
  ReleaseText(dict, &import->prefix);
}

void QMS_MOD_FreeImports(QmDict* dict, QmsImport* imports, uint32_t count) {
  FreeArrayOf(dict, imports, count, QMS_MOD_ClearImport);
}

uint32_t QMS_MOD_FillInclude(QmDict* dict, QmsInclude* include, const char* subName) {
  return FillText(dict, include, &QmsInclude::submoduleName, subName);
}

uint32_t QMS_MOD_AppendOneInclude(QmsModule* mod, const char* subName) {
  return AppendTo(mod, &QmsModule::includes, &QmsModule::includeCount, QMS_MOD_FillInclude,
                  subName);
}

QmsInclude* QMS_MOD_FindIncludeBySubName(QmsInclude* includes, uint32_t count, const char* name) {
  return FindByText(includes, count, &QmsInclude::submoduleName, name);
}

void QMS_MOD_ClearInclude(QmDict* dict, QmsInclude* include) {
  if (include == nullptr) return;
  ReleaseText(dict, &include->submoduleName);
}

void QMS_MOD_FreeIncludes(QmDict* dict, QmsInclude* includes, uint32_t count) {
  FreeArrayOf(dict, includes, count, QMS_MOD_ClearInclude);
}

void QMS_MOD_FreeMrgSource(QmsModule* mod) {
  if (mod == nullptr) return;
  // A dictionary without buckets holds nothing, so nothing is released.
  QmDict noTexts = {};
  QmDict* dict = mod->ctx == nullptr ? &noTexts : ModuleDict(mod);
  FreeArrayOf(dict, mod->mergeSources, mod->mergeSourceCount, ReleaseText);
  mod->mergeSources = nullptr;
  mod->mergeSourceCount = 0;
}

// Features (RFC 7950 section 7.20.1).

uint32_t QMS_MOD_FillFeature(QmDict* dict, QmsFeature* feature, const char* name) {
  return FillText(dict, feature, &QmsFeature::name, name);
}

uint32_t QMS_MOD_AppendOneFeature(QmsModule* mod, const char* name) {
  return AppendTo(mod, &QmsModule::features, &QmsModule::featureCount, QMS_MOD_FillFeature, name);
}

QmsFeature* QMS_MOD_FindFeatureByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return FindByInterned(ModuleDictOrNull(mod), mod->features, mod->featureCount, &QmsFeature::name,
                        name);
}

uint32_t QMS_MOD_CheckTwoFeatureSame(const QmsFeature* a, const QmsFeature* b) {
  if (a == nullptr || b == nullptr || a->name != b->name) return 0;
  return QMS_NODE_CheckTwoIfFeatureArraySame(a->ifFeatures, a->ifFeatureCount, b->ifFeatures,
                                             b->ifFeatureCount);
}

void QMS_MDL_ClearFeature(QmDict* dict, QmsFeature* feature) {
  if (feature == nullptr) return;
  ReleaseText(dict, &feature->name);
  DropArrayOf(dict, &feature->ifFeatures, &feature->ifFeatureCount, QMS_NODE_FreeIfFeatures);
  feature->flags = 0;
}

void QMS_MOD_FreeFeatures(QmDict* dict, QmsFeature* features, uint32_t count) {
  FreeArrayOf(dict, features, count, QMS_MDL_ClearFeature);
}

// Identities and their bases (RFC 7950 section 7.18).

uint32_t QMS_MOD_FillIdentity(QmDict* dict, QmsIdentity* identity, const char* name) {
  return FillText(dict, identity, &QmsIdentity::name, name);
}

uint32_t QMS_MOD_AppendOneIdentity(QmsModule* mod, const char* name) {
  return AppendTo(mod, &QmsModule::identities, &QmsModule::identityCount, QMS_MOD_FillIdentity,
                  name);
}

QmsIdentity* QMS_MOD_FindIdentityByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return FindByInterned(ModuleDictOrNull(mod), mod->identities, mod->identityCount,
                        &QmsIdentity::name, name);
}

uint32_t QMS_MOD_CheckTwoIdentitySame(const QmsIdentity* a, const QmsIdentity* b) {
  if (a == nullptr || b == nullptr || a->name != b->name) return 0;
  if (!ArraysAreSame(a->bases, a->baseCount, b->bases, b->baseCount,
                     QMS_MOD_CheckTwoIdentBaseSame)) {
    return 0;
  }
  return QMS_NODE_CheckTwoIfFeatureArraySame(a->ifFeatures, a->ifFeatureCount, b->ifFeatures,
                                             b->ifFeatureCount);
}

void QMS_MDL_ClearIdentity(QmDict* dict, QmsIdentity* identity) {
  if (identity == nullptr) return;
  ReleaseText(dict, &identity->name);
  ReleaseText(dict, &identity->description);
  DropArrayOf(dict, &identity->ifFeatures, &identity->ifFeatureCount, QMS_NODE_FreeIfFeatures);
  DropArrayOf(dict, &identity->bases, &identity->baseCount, QMS_MDL_FreeIdentBases);
}

void QMS_MOD_FreeIdentities(QmDict* dict, QmsIdentity* identities, uint32_t count) {
  FreeArrayOf(dict, identities, count, QMS_MDL_ClearIdentity);
}

uint32_t QMS_MOD_FillIdentBase(QmDict* dict, QmsIdentBase* base, const char* prefix,
                               const char* name) {
  if (dict == nullptr || base == nullptr || prefix == nullptr || name == nullptr) {
    return QM_INVALID;
  }
  return InternBoth(dict, &base->prefix, prefix, &base->name, name) ? QM_OK : QM_NO_MEMORY;
}

static uint32_t FillBaseFrom(QmDict* dict, QmsIdentBase* dst, const QmsIdentBase* src) {
  return QMS_MOD_FillIdentBase(dict, dst, src->prefix, src->name);
}

uint32_t QMS_MOD_CheckTwoIdentBaseSame(const QmsIdentBase* a, const QmsIdentBase* b) {
  if (a == nullptr || b == nullptr) return 0;
  return a->prefix == b->prefix && a->name == b->name ? 1 : 0;
}

void QMS_MDL_ClearIdentBase(QmDict* dict, QmsIdentBase* base) {
  if (base == nullptr) return;
  ReleaseText(dict, &base->prefix);
  ReleaseText(dict, &base->name);
}

void QMS_MDL_FreeIdentBases(QmDict* dict, QmsIdentBase* bases, uint32_t count) {
  FreeArrayOf(dict, bases, count, QMS_MDL_ClearIdentBase);
}

QmsIdentBase* QMS_MOD_CopyIdentBaseArray(QmDict* dict, const QmsIdentBase* bases, uint32_t count) {
  return CopyArrayOf(dict, bases, count, FillBaseFrom, QMS_MDL_ClearIdentBase);
}

// Definitions of extensions (RFC 7950 section 7.19).

uint32_t QMS_MOD_SetExtension(QmDict* dict, QmsExtension* ext, const char* name,
                              const char* argument, uint32_t yinElement) {
  if (dict == nullptr || ext == nullptr || name == nullptr) return QM_INVALID;
  if (!InternText(dict, &ext->name, name) || !InternOptional(dict, &ext->argument, argument)) {
    QMS_MDL_ClearExtension(dict, ext);
    return QM_NO_MEMORY;
  }
  ext->yinElement = yinElement;
  return QM_OK;
}

uint32_t QMS_MOD_AppendOneExtension(QmsModule* mod, const char* name, const char* argument,
                                    uint32_t yinElement) {
  return AppendTo(mod, &QmsModule::extensions, &QmsModule::extensionCount, QMS_MOD_SetExtension,
                  name, argument, yinElement);
}

QmsExtension* QMS_MOD_FindExtensionByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return FindByText(mod->extensions, mod->extensionCount, &QmsExtension::name, name);
}

uint32_t QMS_MOD_CheckTwoExtensionSame(const QmsExtension* a, const QmsExtension* b) {
  if (a == nullptr || b == nullptr) return 0;
  return a->name == b->name && a->argument == b->argument && a->yinElement == b->yinElement ? 1 : 0;
}

void QMS_MDL_ClearExtension(QmDict* dict, QmsExtension* ext) {
  if (ext == nullptr) return;
  ReleaseText(dict, &ext->name);
  ReleaseText(dict, &ext->argument);
  ext->yinElement = 0;
}

void QMS_MOD_FreeExtensions(QmDict* dict, QmsExtension* extensions, uint32_t count) {
  FreeArrayOf(dict, extensions, count, QMS_MDL_ClearExtension);
}

// Deviations and their deviates (RFC 7950 section 7.20.3) as a module keeps
// them: what is to be changed at which target. Applying them is a matter of
// their own.

uint32_t QMS_MOD_FillDeviationTargetNode(QmDict* dict, QmsDeviation* dev, const char* path) {
  return FillText(dict, dev, &QmsDeviation::targetPath, path);
}

uint32_t QMS_MOD_AppendOneDeviation(QmsModule* mod, const char* targetPath) {
  return AppendTo(mod, &QmsModule::deviations, &QmsModule::deviationCount,
                  QMS_MOD_FillDeviationTargetNode, targetPath);
}

void QMS_MOD_ClearDeviation(QmDict* dict, QmsDeviation* deviation) {
  if (deviation == nullptr) return;
  ReleaseText(dict, &deviation->targetPath);
  DropArrayOf(dict, &deviation->deviates, &deviation->deviateCount, QMS_MOD_FreeDeviate);
  deviation->flags = 0;
}

void QMS_MOD_FreeDeviation(QmDict* dict, QmsDeviation* deviations, uint32_t count) {
  FreeArrayOf(dict, deviations, count, QMS_MOD_ClearDeviation);
}

// The type of a replace deviate; most deviates have none.
static bool CopyDeviateType(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src) {
  if (src->type == nullptr) return true;
  dst->type = QMT_TYPE_CopyQmtRealType(dict, src->type);
  return dst->type != nullptr;
}

uint32_t QMS_MOD_FillDeviate(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src) {
  if (dict == nullptr || dst == nullptr || src == nullptr) return QM_INVALID;
  dst->kind = src->kind;
  dst->flags = src->flags;
  dst->defaultsRewritten = src->defaultsRewritten;
  if (CopyCounted(dict, &dst->musts, &dst->mustCount, src->musts, src->mustCount,
                  QMS_NODE_CopyMustsArray) &&
      CopyCounted(dict, &dst->defaults, &dst->defaultCount, src->defaults, src->defaultCount,
                  QMS_NODE_CopyDefaults) &&
      CopyDeviateType(dict, dst, src) && InternOptional(dict, &dst->units, src->units)) {
    return QM_OK;
  }
  QMS_MOD_ClearDeviate(dict, dst);
  return QM_NO_MEMORY;
}

// A whole copy: the extension instances as well.
static uint32_t FillFrom(QmDict* dict, QmsDeviate* dst, const QmsDeviate* src) {
  const uint32_t ret = QMS_MOD_FillDeviate(dict, dst, src);
  if (ret != QM_OK) return ret;
  if (CopyCounted(dict, &dst->extInsts, &dst->extInstCount, src->extInsts, src->extInstCount,
                  QMS_EXT_CopyExtInsts)) {
    return QM_OK;
  }
  QMS_MOD_ClearDeviate(dict, dst);
  return QM_NO_MEMORY;
}

QmsDeviate* QMS_MOD_CopyDeviateArray(QmDict* dict, const QmsDeviate* deviates, uint32_t count) {
  return CopyArrayOf(dict, deviates, count, FillFrom, QMS_MOD_ClearDeviate);
}

void QMS_MOD_ClearDeviate(QmDict* dict, QmsDeviate* deviate) {
  if (deviate == nullptr) return;
  DropArrayOf(dict, &deviate->musts, &deviate->mustCount, QMS_NODE_FreeMusts);
  DropArrayOf(dict, &deviate->defaults, &deviate->defaultCount, QMS_NODE_FreeDefaults);
  DropArrayOf(dict, &deviate->extInsts, &deviate->extInstCount, QMS_EXT_FreeExtInsts);
  QMT_TYPE_DestroyQmtRealType(dict, deviate->type);
  ReleaseText(dict, &deviate->units);
  *deviate = QmsDeviate{};
}

void QMS_MOD_FreeDeviate(QmDict* dict, QmsDeviate* deviates, uint32_t count) {
  FreeArrayOf(dict, deviates, count, QMS_MOD_ClearDeviate);
}

static uint32_t TextIsSame(const char* const* a, const char* const* b) {
  return *a == *b ? 1 : 0;
}

uint32_t QMS_MOD_CheckTwoDeviateSame(const QmsDeviate* a, const QmsDeviate* b) {
  if (a == nullptr || b == nullptr) return 0;
  if (a->kind != b->kind || a->flags != b->flags || a->units != b->units) return 0;
  const bool same =
      ArraysAreSame(a->musts, a->mustCount, b->musts, b->mustCount, QMS_NODE_CheckTwoMustSame) &&
      ArraysAreSame<const char*>(a->defaults, a->defaultCount, b->defaults, b->defaultCount,
                                 TextIsSame);
  return same ? 1 : 0;
}

// Deliberate: no two deviations count as the same, not even equal ones. One that
// is merged from another source is always new, and each one is applied.
uint32_t QMS_MOD_CheckTwoDeviationSame(const QmsDeviation* /*a*/, const QmsDeviation* /*b*/) {
  return 0;
}

uint32_t QMS_MOD_CheckSameDeviationExist(const QmsModule* mod, const QmsDeviation* dev) {
  if (mod == nullptr || mod->deviations == nullptr) return 0;
  for (uint32_t i = 0; i < mod->deviationCount; ++i) {
    if (QMS_MOD_CheckTwoDeviationSame(&mod->deviations[i], dev) != 0) return 1;
  }
  return 0;
}
