// SPDX-License-Identifier: BSD-3-Clause
//
// Loads one module by name: finds its files, reads them one after the other
// into one record, and hands the record to the registration. A module that is
// loaded already is only ever extended, by parts of it that were not there
// before. A file that fails ends the reading, but what was read until then is
// registered; the cause stands in the load errors.
#include <cstdint>

#include "context/context.h"
#include "context/guard.h"
#include "context/load_error.h"
#include "context/xml_parse.h"
#include "coupling/couple_augment.h"
#include "coupling/detach.h"
#include "loader/module_load.h"
#include "loader/register.h"
#include "schema/merge_definitions.h"
#include "schema/module.h"
#include "schema/node.h"
#include "yin/file_lookup.h"
#include "yin/load_assister.h"
#include "yin/reader.h"

constexpr uint8_t kFilesPerLoad = 10;

QmsModule* QMS_LOADER_ReadFilePathToQmMod(QmCtx* ctx, const char* path, const char* modName,
                                          QmsLoadAssister* assister) {
  const QmOwn<FreeParsedDocument> doc(QMS_LOADER_ReadYinFileToXmlDoc(path));
  if (doc) return QMS_LOADER_ParseYinContent(ctx, doc.Get(), assister);
  QM_CTX_AddModError(ctx, modName, "Failed to read content from the yin file.");
  return nullptr;
}

// An augment whose path no longer leads to its target is taken out by its links.
static void UncoupleAll(QmsModule* module) {
  for (QmsNode* augment = module->augmentNodes; augment != nullptr; augment = augment->next) {
    if (!IsCoupledAugment(augment)) continue;
    static_cast<void>(QMS_NODE_UnCoupleAugmentNode(augment));
    if (IsCoupledAugment(augment)) ForceDetach(augment);
  }
}

// A merge moves nodes under the augments of the destination. Under a coupled one
// that would cut the child list of its target, so the augments are taken out
// first; the registration couples them again. Those of other modules stay: their
// nodes in the trees of the destination belong to the comparison.
static uint32_t MergeInto(QmCtx* ctx, QmsModule* module, QmsModule* part, const char* modName) {
  UncoupleAll(module);
  const uint32_t ret = QMS_MOD_MergeTwoModuleInSameCtx(module, part);
  if (ret != QM_OK) QM_CTX_AddModError(ctx, modName, "Failed to merge module \"%s\".", modName);
  return ret;
}

static uint32_t ReadFileInto(QmCtx* ctx, const char* path, const char* modName,
                             QmsLoadAssister* assister, QmsModule** module) {
  QmOwn<QMS_MOD_Free> part(QMS_LOADER_ReadFilePathToQmMod(ctx, path, modName, assister));
  if (!part) {
    QM_CTX_AddModError(ctx, modName, "Failed to parse module \"%s\" from the yin file.", modName);
    return QM_INVALID;
  }
  if (*module != nullptr) return MergeInto(ctx, *module, part.Get(), modName);
  *module = part.Release();
  return QM_OK;
}

uint32_t QMS_LOADER_LoadModuleByPath(QmCtx* ctx, const char* path, const char* modName,
                                     QmsLoadAssister* assister, QmsModule** module) {
  QM_CTX_SetCurYinFile(ctx, path);
  const uint32_t ret = ReadFileInto(ctx, path, modName, assister, module);
  QM_CTX_ClearCurYinFile(ctx);
  return ret;
}

// Gives the number of files that were read.
static uint32_t ReadAllParts(QmCtx* ctx, QmsPathCollection* files, QmsLoadAssister* assister,
                             QmsModule** module) {
  uint32_t count = 0;
  // The first candidate is for a module that is not loaded; one that is loaded
  // and has all its parts would get the same deviations a second time.
  if (*module != nullptr && !HasUnloadedSuffix(assister)) return count;
  files->maxTries = kFilesPerLoad;
  for (;;) {
    const QmsPathObj* file = QMS_LOADER_GetNextPathObjToProc(files, assister);
    if (file == nullptr) return count;
    if (QMS_LOADER_LoadModuleByPath(ctx, file->path, assister->modName, assister, module) !=
        QM_OK) {
      return count;
    }
    ++count;
    QMS_LOADER_ResetCurrentLoadingSuffix(assister);
  }
}

static uint32_t ReadAndRegister(QmCtx* ctx, QmsModule* existing, QmsPathCollection* files,
                                QmsLoadAssister* assister) {
  uint32_t ret = QMS_LOADER_PreFillLoadAssisterFromExisting(assister, existing, files);
  if (ret != QM_OK) return ret;
  QmsModule* module = existing;
  const uint32_t count = ReadAllParts(ctx, files, assister, &module);
  ret = QMS_LOADER_AppendModuleToCtx(ctx, module, assister);
  if (ret != QM_OK && module != existing) QMS_MOD_Free(module);
  if (ret == QM_OK && existing != nullptr && count != 0) {
    RaiseModuleEvent(ctx, module, QM_AGENT_EVENT_MODULE_EXTENDED);
  }
  return ret;
}

uint32_t QMS_LOADER_LoadModuleByModName(QmCtx* ctx, const char* modName) {
  if (ctx == nullptr || modName == nullptr) return QM_INVALID;
  const QmOwn<FreePathCollection> files(QMS_LOADER_CollectFilePathMatchedInAllDir(ctx, modName));
  QmsModule* existing = QM_CTX_GetModuleByModName(ctx, modName);
  if (existing == nullptr) QM_CTX_DeleteErrNodeByModName(ctx->errMng, modName);
  if (!files) {
    QM_CTX_AddModError(ctx, modName, "Failed to find \"%s\" from search directories.", modName);
    return QM_NOT_FOUND;
  }
  if (existing != nullptr && existing->mergeSourceCount == 0) return QM_OK;
  QmsLoadAssister assister = {};
  assister.modName = modName;
  assister.current = kQmsNoSuffix;
  const uint32_t ret = ReadAndRegister(ctx, existing, files.Get(), &assister);
  ClearLoadAssister(&assister);
  return ret;
}
