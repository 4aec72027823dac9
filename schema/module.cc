// SPDX-License-Identifier: BSD-3-Clause
// The module record as others read it: its header, the names behind prefixes,
// its features and identities; and its end. A NULL module has no texts and no
// definitions.
#include "schema/module.h"

#include <qmodel/schema.h>

#include "context/dict.h"
#include "context/memory.h"
#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/ext_inst.h"
#include "schema/module_nodes.h"
#include "schema/module_registry.h"
#include "schema/node.h"
#include "schema/node_array.h"
#include "schema/record_array.h"
#include "schema/typedef.h"

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
  const uint32_t others = feature->flags & ~uint32_t{QMS_FEATURE_ENABLED};
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

// The end of a module record: first its texts and definitions, then its nodes,
// then the record. Freeing a node gives the client its private data back through
// a hook that may ask for the node's module, so every field is NULL from the
// moment on that its content is gone.
//
// A record that has lost its context has no dictionary to give texts back to: its
// blocks are freed, its texts are left alone.

static void ReleaseHeaderTexts(QmDict* dict, QmsModule* mod) {
  ReleaseText(dict, &mod->name);
  ReleaseText(dict, &mod->ns);
  ReleaseText(dict, &mod->prefix);
  ReleaseText(dict, &mod->description);
  ReleaseText(dict, &mod->revision);
  ReleaseText(dict, &mod->organization);
}

static void FreeDefinitions(QmDict* dict, QmsModule* mod) {
  DropArrayOf(dict, &mod->imports, &mod->importCount, QMS_MOD_FreeImports);
  DropArrayOf(dict, &mod->includes, &mod->includeCount, QMS_MOD_FreeIncludes);
  DropArrayOf(dict, &mod->features, &mod->featureCount, QMS_MOD_FreeFeatures);
  DropArrayOf(dict, &mod->identities, &mod->identityCount, QMS_MOD_FreeIdentities);
  DropArrayOf(dict, &mod->extensions, &mod->extensionCount, QMS_MOD_FreeExtensions);
  DropArrayOf(dict, &mod->deviations, &mod->deviationCount, QMS_MOD_FreeDeviation);
  QMS_MOD_FreeMrgSource(mod);
  DropArrayOf(dict, &mod->extInsts, &mod->extInstCount, QMS_EXT_FreeExtInsts);
  DropArrayOf(dict, &mod->typedefs, &mod->typedefCount, QMS_TYPE_FreeTypDefArray);
}

static void ReleaseNonNodeMember(QmsModule* mod) {
  ReleaseHeaderTexts(ModuleDict(mod), mod);
  FreeDefinitions(ModuleDict(mod), mod);
}

void QMS_MOD_DestroyNonNodeMember(QmsModule* mod) {
  if (mod == nullptr || mod->ctx == nullptr) return;
  // While the name is still there: the nodes outlive the typedefs.
  ClearResolvedTypedefs(mod);
  ReleaseNonNodeMember(mod);
}

// The list is advanced before its head goes, so that it never names a freed node.
static void FreeNodeList(QmsNode** list) {
  while (*list != nullptr) {
    QmsNode* node = *list;
    *list = node->next;
    if (*list != nullptr) (*list)->prev = nullptr;
    QMS_NODE_Free(node);
  }
}

static void FreeNodeListWithoutTexts(QmsNode** list) {
  FreeNodesWithoutTexts(*list);
  *list = nullptr;
}

void QMS_MOD_DestroyNodeMember(QmsModule* mod) {
  if (mod == nullptr) return;
  const auto freeList = mod->ctx != nullptr ? FreeNodeList : FreeNodeListWithoutTexts;
  for (const QmsTopList& list : kTopLists) {
    mod->*list.tail = nullptr;
    freeList(&(mod->*list.head));
  }
}

void QMS_MOD_Free(QmsModule* mod) {
  if (mod == nullptr) return;
  if (mod->ctx != nullptr) {
    // The nodes outlive the typedefs for a moment, in which only a hook could look at them.
    if (mod->ctx->pridataFreeFunc != nullptr) ClearResolvedTypedefs(mod);
    ReleaseNonNodeMember(mod);
  } else {
    // A dictionary without buckets holds nothing, so no text is released.
    QmDict noTexts = {};
    FreeDefinitions(&noTexts, mod);
  }
  QMS_MOD_DestroyNodeMember(mod);
  g_qmMemFreeFunc(mod);
}
