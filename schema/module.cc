// SPDX-License-Identifier: BSD-3-Clause
// The module record as others read it: its header, the names behind prefixes,
// its features and identities. A NULL module has no texts and no definitions.
#include "schema/module.h"

#include <qmodel/schema.h>

#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module_registry.h"

constinit const RtkAvl3TreeInfo g_qmsModuleNameTreeInfo = {
    QM_CTX_ModTreeKeyCompare, offsetof(QmsModule, name), offsetof(QmsModule, nameLink)};
constinit const RtkAvl3TreeInfo g_qmsModuleNsTreeInfo = {
    QM_CTX_ModTreeKeyCompare, offsetof(QmsModule, ns), offsetof(QmsModule, nsLink)};

const char* QM_MOD_GetModuleName(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->name;
}

const char* QM_MOD_GetModuleNs(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->ns;
}

const char* QM_MOD_GetModulePrefix(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->prefix;
}

const char* QM_MOD_GetOrganization(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->organization;
}

const char* QM_MOD_GetRevision(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->revision;
}

void* QM_MOD_GetPrivate(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->privateData;
}

void* QM_MOD_SetPrivate(QmsModule* mod, void* p) noexcept {
  if (mod == nullptr) return nullptr;
  void* previous = mod->privateData;
  mod->privateData = p;
  return previous;
}

QmtType* QM_MOD_GetRealTypeByTypDefName(QmsModule* mod, const char* name) noexcept {
  QmsTypedef* td = QMS_MOD_FindQmsTypDefByName(mod, name);
  return td == nullptr ? nullptr : &td->type;
}

const char* QMS_MOD_GetImportModNameByPrefix(const QmsModule* mod, const char* prefix) {
  if (mod == nullptr) return nullptr;
  const QmsImport* import = QMS_MOD_FindImportByPrefix(mod->imports, mod->importCount, prefix);
  return import == nullptr ? nullptr : import->moduleName;
}

// The module's own prefix comes first, even when an import repeats it.
const char* QMS_MOD_GetModuleNameByPrefix(const QmsModule* mod, const char* prefix) {
  if (mod == nullptr || prefix == nullptr) return nullptr;
  if (mod->prefix != nullptr && RTK_StrCmp(mod->prefix, prefix) == 0) return mod->name;
  return QMS_MOD_GetImportModNameByPrefix(mod, prefix);
}

bool IsFeatureEnabled(const QmsFeature* feature) {
  return (feature->flags & QMS_FEATURE_ENABLED) != 0;
}

void SetFeatureEnabled(QmsFeature* feature, bool enabled) {
  const uint32_t others = feature->flags & ~static_cast<uint32_t>(QMS_FEATURE_ENABLED);
  feature->flags = static_cast<uint16_t>(enabled ? others | QMS_FEATURE_ENABLED : others);
}

static uint32_t SwitchFeature(QmsModule* mod, const char* name, bool enabled) {
  QmsFeature* feature = QMS_MOD_FindFeatureByName(mod, name);
  if (feature == nullptr) return QM_INVALID;
  SetFeatureEnabled(feature, enabled);
  return QM_OK;
}

uint32_t QM_MOD_EnableFeature(QmsModule* mod, const char* name) noexcept {
  if (mod == nullptr || name == nullptr) return QM_INVALID;
  if (RTK_StrCmp(name, "*") != 0) return SwitchFeature(mod, name, true);
  for (uint32_t i = 0; mod->features != nullptr && i < mod->featureCount; ++i) {
    SetFeatureEnabled(&mod->features[i], true);
  }
  return QM_OK;
}

uint32_t QM_MOD_DisableFeature(QmsModule* mod, const char* name) noexcept {
  return SwitchFeature(mod, name, false);
}

uint32_t QM_MOD_ScanAllIdentity(QmsModule* mod, QmIdentityScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; mod->identities != nullptr && i < mod->identityCount; ++i) {
    const uint32_t ret = cb(&mod->identities[i], arg, 0);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_ScanIdentityBase(QmsIdentity* identity, QmIdentBaseScanFunc cb,
                                 void* arg) noexcept {
  if (identity == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; identity->bases != nullptr && i < identity->baseCount; ++i) {
    const uint32_t ret = cb(identity->bases[i].prefix, identity->bases[i].name, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

const char* QM_MOD_GetIdentityName(const QmsIdentity* identity) noexcept {
  return identity == nullptr ? nullptr : identity->name;
}

const char* QM_MOD_GetIdentityDescription(const QmsIdentity* identity) noexcept {
  return identity == nullptr ? nullptr : identity->description;
}
