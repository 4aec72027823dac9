// SPDX-License-Identifier: BSD-3-Clause
// Features, identities with their bases, and extension definitions (RFC 7950
// sections 7.20.1, 7.18 and 7.19). Two definitions are compared by the pointers
// of their interned texts, so both must come from one context.
#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "schema/record_array.h"

uint32_t QMS_MOD_FillFeature(QmDict* dict, QmsFeature* feature, const char* name) {
  if (dict == nullptr || feature == nullptr || name == nullptr) return QM_INVALID;
  return InternText(dict, &feature->name, name) ? QM_OK : QM_NO_MEMORY;
}

uint32_t QMS_MOD_AppendOneFeature(QmsModule* mod, const char* name) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&mod->features, &mod->featureCount, [&](QmsFeature* feature) {
    return QMS_MOD_FillFeature(ModuleDict(mod), feature, name);
  });
}

QmsFeature* QMS_MOD_FindFeatureByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return FindByText(mod->features, mod->featureCount, &QmsFeature::name, name);
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

uint32_t QMS_MOD_FillIdentity(QmDict* dict, QmsIdentity* identity, const char* name) {
  if (dict == nullptr || identity == nullptr || name == nullptr) return QM_INVALID;
  return InternText(dict, &identity->name, name) ? QM_OK : QM_NO_MEMORY;
}

uint32_t QMS_MOD_AppendOneIdentity(QmsModule* mod, const char* name) {
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&mod->identities, &mod->identityCount, [&](QmsIdentity* identity) {
    return QMS_MOD_FillIdentity(ModuleDict(mod), identity, name);
  });
}

QmsIdentity* QMS_MOD_FindIdentityByName(QmsModule* mod, const char* name) {
  if (mod == nullptr) return nullptr;
  return FindByText(mod->identities, mod->identityCount, &QmsIdentity::name, name);
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
  if (mod == nullptr || mod->ctx == nullptr) return QM_INVALID;
  return AppendElem(&mod->extensions, &mod->extensionCount, [&](QmsExtension* ext) {
    return QMS_MOD_SetExtension(ModuleDict(mod), ext, name, argument, yinElement);
  });
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
