// SPDX-License-Identifier: BSD-3-Clause
// What clients list of a context and of its modules. Scans take no NULL.
#include <qmodel/error.h>
#include <qmodel/inspect.h>

#include "context/list.h"
#include "context/records.h"
#include "context/relation.h"
#include "platform/avl.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/module_registry.h"
#include "schema/node.h"

QmsModule* QM_CTX_GetNextModule(QmCtx* ctx, const QmsModule* mod) noexcept {
  if (ctx == nullptr) return nullptr;
  return static_cast<QmsModule*>(mod == nullptr ? RTK_AVL3_First(&ctx->modByName)
                                                : RTK_AVL3_Next(&ctx->modByName, mod));
}

uint32_t QM_CTX_ScanAllModule(QmCtx* ctx, QmModuleScanFunc cb, void* arg) noexcept {
  if (ctx == nullptr || cb == nullptr) return QM_INVALID;
  for (QmsModule* at = QM_CTX_GetNextModule(ctx, nullptr); at != nullptr;
       at = QM_CTX_GetNextModule(ctx, at)) {
    const uint32_t ret = cb(at, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

const char* QM_MOD_GetDescription(const QmsModule* mod) noexcept {
  return mod == nullptr ? nullptr : mod->description;
}

uint32_t QM_MOD_GetYangVersion(const QmsModule* mod) noexcept {
  return mod != nullptr && mod->yangVersion == QMS_YANG_VERSION_1_1 ? 11 : 1;
}

uint32_t QM_MOD_ScanInclude(const QmsModule* mod, QmTextScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; mod->includes != nullptr && i < mod->includeCount; ++i) {
    const uint32_t ret = cb(mod->includes[i].submoduleName, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_ScanImport(const QmsModule* mod, QmTextScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; mod->imports != nullptr && i < mod->importCount; ++i) {
    const uint32_t ret = cb(mod->imports[i].moduleName, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_ScanDeviatingModule(const QmsModule* mod, QmTextScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  const QmCtxModRelTbl* table = QM_CTX_FindModRelationTbl(mod->ctx, mod->name);
  if (table == nullptr) return QM_OK;
  for (const QmListLink* link = table->items.next; link != &table->items; link = link->next) {
    const auto* item = RecordOf<QmCtxModRelItem>(link);
    if (item->relType != QM_RELATION_DEVIATION) continue;
    // A relation may outlive the module that it came from.
    if (QM_CTX_GetModuleByModName(mod->ctx, item->srcModName) == nullptr) continue;
    const uint32_t ret = cb(item->srcModName, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_MOD_ScanAllFeature(const QmsModule* mod, QmFeatureScanFunc cb, void* arg) noexcept {
  if (mod == nullptr || cb == nullptr) return QM_INVALID;
  for (uint32_t i = 0; mod->features != nullptr && i < mod->featureCount; ++i) {
    const uint32_t ret = cb(&mod->features[i], arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

const char* QM_FEATURE_GetName(const QmsFeature* feature) noexcept {
  return feature == nullptr ? nullptr : feature->name;
}

uint32_t QM_FEATURE_IsEnabled(const QmsFeature* feature) noexcept {
  return feature != nullptr && IsFeatureEnabled(feature) ? 1 : 0;
}

static uint32_t ScanIfFeatures(QmCtx* ctx, const QmsIfFeature* array, uint32_t count,
                               QmIfFeatureScanFunc cb, void* arg) {
  for (uint32_t i = 0; array != nullptr && i < count; ++i) {
    const uint32_t enabled = QM_CTX_IsModFeatureEnable(ctx, array[i].module, array[i].feature);
    const uint32_t ret = cb(array[i].module, array[i].feature, enabled, arg);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_FEATURE_ScanIfFeature(QmCtx* ctx, const QmsFeature* feature, QmIfFeatureScanFunc cb,
                                  void* arg) noexcept {
  if (ctx == nullptr || feature == nullptr || cb == nullptr) return QM_INVALID;
  return ScanIfFeatures(ctx, feature->ifFeatures, feature->ifFeatureCount, cb, arg);
}

uint32_t QM_NODE_ScanIfFeature(const QmsNode* node, QmIfFeatureScanFunc cb, void* arg) noexcept {
  if (node == nullptr || cb == nullptr || NodeCtx(node) == nullptr) return QM_INVALID;
  return ScanIfFeatures(NodeCtx(node), node->ifFeatures, node->ifFeatureCount, cb, arg);
}

QmsIdentity* QM_MOD_FindIdentity(QmsModule* mod, const char* name) noexcept {
  return mod == nullptr || name == nullptr ? nullptr : QMS_MOD_FindIdentityByName(mod, name);
}
