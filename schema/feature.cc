// SPDX-License-Identifier: BSD-3-Clause
// Features of loaded modules: asking for and clearing the enabled flag. They are
// enabled while a module is loaded, or through its record.
#include "schema/module.h"
#include "schema/module_registry.h"

uint32_t QM_CTX_DisableModFeature(QmCtx* ctx, const char* modName, const char* featName) noexcept {
  if (ctx == nullptr || modName == nullptr || featName == nullptr) return QM_INVALID;
  QmsFeature* feature = QM_CTX_FindFeatureByModNameAndFeatName(ctx, modName, featName);
  if (feature == nullptr) return QM_INVALID;
  SetFeatureEnabled(feature, false);
  return QM_OK;
}

uint32_t QM_CTX_IsModFeatureEnable(QmCtx* ctx, const char* modName, const char* featName) noexcept {
  if (ctx == nullptr || modName == nullptr || featName == nullptr) return QM_INVALID;
  const QmsFeature* feature = QM_CTX_FindFeatureByModNameAndFeatName(ctx, modName, featName);
  return feature != nullptr && IsFeatureEnabled(feature) ? 1 : 0;
}
