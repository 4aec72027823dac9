// SPDX-License-Identifier: BSD-3-Clause
// The registry of modules: two trees over the same records, by name and by
// namespace. The records belong to the layer above, which also says where their
// keys and links lie; here they are only linked and found.
#include "schema/module_registry.h"

#include <qmodel/schema.h>

#include "platform/string.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "schema/typedef.h"

// Deliberate: a module without a key collides with every other.
int32_t QM_CTX_ModTreeKeyCompare(const void* keyA, const void* keyB) {
  if (keyA == nullptr || keyB == nullptr) return 0;
  return RTK_StrCmp(static_cast<const char*>(keyA), static_cast<const char*>(keyB));
}

uint32_t QM_CTX_InitModuleTree(QmCtx* ctx) {
  if (ctx == nullptr) return QM_INVALID;
  RTK_AVL3_Init(&ctx->modByName, &g_qmsModuleNameTreeInfo);
  RTK_AVL3_Init(&ctx->modByNs, &g_qmsModuleNsTreeInfo);
  return QM_OK;
}

uint32_t QM_CTX_AddModuleNode(QmCtx* ctx, QmsModule* module) {
  if (ctx == nullptr || module == nullptr) return QM_FAILED;
  if (RTK_AVL3_Insert_Or_Find(&ctx->modByName, module, nullptr) != 0) return QM_FAILED;
  if (RTK_AVL3_Insert_Or_Find(&ctx->modByNs, module, nullptr) == 0) return QM_OK;
  RTK_AVL3_Delete(&ctx->modByName, module);
  return QM_FAILED;
}

// The search of a tree, written out: modules are looked up for each value and each step of
// a path that names one, and the tree's own search would call for each compare.
template <auto Key, size_t kLinkPos>
static QmsModule* FindModule(const RtkAvl3Tree* tree, const char* key) {
  if (tree->info == nullptr) return nullptr;
  for (RtkAvl3Link* link = tree->header.parent; link != nullptr;) {
    auto* module = reinterpret_cast<QmsModule*>(reinterpret_cast<char*>(link) - kLinkPos);
    const char* own = module->*Key;
    const int32_t order = own == nullptr || own == key ? 0 : RTK_StrCmp(key, own);
    if (order == 0) return module;
    link = order < 0 ? link->left : link->right;
  }
  return nullptr;
}

QmsModule* QM_CTX_GetModuleByModName(QmCtx* ctx, const char* name) noexcept {
  if (ctx == nullptr || name == nullptr) return nullptr;
  return FindModule<&QmsModule::name, offsetof(QmsModule, nameLink)>(&ctx->modByName, name);
}

QmsModule* QM_CTX_GetModuleByModNs(QmCtx* ctx, const char* ns) noexcept {
  if (ctx == nullptr || ns == nullptr) return nullptr;
  return FindModule<&QmsModule::ns, offsetof(QmsModule, nsLink)>(&ctx->modByNs, ns);
}

// Finds a definition of a module by both names.
template <auto FindInModule>
static auto FindDefinition(QmCtx* ctx, const char* modName, const char* name)
    -> decltype(FindInModule(nullptr, name)) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, modName);
  return module != nullptr && name != nullptr ? FindInModule(module, name) : nullptr;
}

QmsIdentity* QM_CTX_FindIdentityByModNameAndIdentName(QmCtx* ctx, const char* modName,
                                                      const char* identName) {
  return FindDefinition<QMS_MOD_FindIdentityByName>(ctx, modName, identName);
}

QmsFeature* QM_CTX_FindFeatureByModNameAndFeatName(QmCtx* ctx, const char* modName,
                                                   const char* featName) {
  return FindDefinition<QMS_MOD_FindFeatureByName>(ctx, modName, featName);
}

QmsTypedef* QM_CTX_FindTdefObjByModAndTdefName(QmCtx* ctx, const char* modName,
                                               const char* tdefName) {
  return FindDefinition<QMS_MOD_FindQmsTypDefByName>(ctx, modName, tdefName);
}

// Features of loaded modules: asking for and clearing the enabled flag. They are
// enabled while a module is loaded, or through its record.

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
