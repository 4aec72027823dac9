// SPDX-License-Identifier: BSD-3-Clause
// The entry points of loading and unloading. They check their arguments, let the files
// beside this one do the work, and settle what a client sees of it: a load error for
// every failed load, and the word to the modules that waited for the new one.
#include <qmodel/schema.h>

#include "context/guard.h"
#include "context/kept_pattern.h"
#include "context/load_error.h"
#include "context/xml_parse.h"
#include "coupling/change_event.h"
#include "loader/context_life.h"
#include "loader/import_load.h"
#include "loader/module_load.h"
#include "loader/register.h"
#include "loader/unload.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/module_registry.h"
#include "yin/reader.h"

// Lets the modules already loaded couple to the new one.
static void AnnounceModule(QmCtx* ctx, const char* modName) {
  static_cast<void>(QMS_MOD_NotifyModuleChangeEvent(ctx, modName, QMS_EVENT_COUPLE, 0));
}

uint32_t QM_CTX_LoadModule(QmCtx* ctx, const char* modName) noexcept {
  if (ctx == nullptr || modName == nullptr) return QM_INVALID;
  const uint32_t ret = QMS_LOADER_LoadModuleByModName(ctx, modName);
  if (ret != QM_OK) {
    if (QM_CTX_GetErrNodeByModName(ctx, modName) == nullptr) {
      QM_CTX_AddModError(ctx, modName, "Failed to load module \"%s\".", modName);
    }
    return ret;
  }
  if ((ctx->loadFlags & QM_LOAD_IMPORTS) != 0) {
    return QMS_LOADER_LoadModuleImportedNames(ctx, modName);
  }
  AnnounceModule(ctx, modName);
  return QM_OK;
}

// Registers a module that was built from memory, or destroys it.
static uint32_t RegisterModule(QmCtx* ctx, QmsModule* module) {
  const uint32_t ret = QMS_LOADER_AppendModuleToCtx(ctx, module, nullptr);
  if (ret != QM_OK) {
    QM_CTX_DestroyModuleNode(ctx, module);
    return ret;
  }
  AnnounceModule(ctx, QM_MOD_GetModuleName(module));
  return QM_OK;
}

static QmsModule* BuildModule(QmCtx* ctx, xmlDoc* doc) {
  const QmOwn<FreeParsedDocument> owned(doc);
  return QMS_LOADER_ParseYinContent(ctx, doc, nullptr);
}

uint32_t QM_CTX_LoadMemory(QmCtx* ctx, const char* yinText) noexcept {
  if (ctx == nullptr || yinText == nullptr) return QM_INVALID;
  xmlDoc* doc = ParseXmlText(yinText, RTK_StrLen(yinText));
  if (doc == nullptr) return QM_INVALID;
  QmsModule* module = BuildModule(ctx, doc);
  if (module == nullptr) return QM_FAILED;
  // Deliberate: the first loaded wins, silently.
  if (QM_CTX_GetModuleByModName(ctx, QM_MOD_GetModuleName(module)) != nullptr) {
    QMS_MOD_Free(module);
    return QM_OK;
  }
  return RegisterModule(ctx, module);
}

uint32_t QM_CTX_UnloadModule(QmCtx* ctx, const char* modName) noexcept {
  // A NULL name names no module, and unloading what is not there succeeds.
  if (ctx == nullptr || modName == nullptr) return QM_OK;
  const uint32_t ret = QMS_LOADER_UnloadModuleProc(ctx, modName);
  // Last, since the hooks of an unload may check values.
  DropKeptPatterns(ctx);
  return ret;
}
