// SPDX-License-Identifier: BSD-3-Clause
//
// The memory of one load by name: which suffixes of split files are known and
// which of them have been read. It is shared with the submodules of the
// module, so that the part "a" of a module takes the part "a" of its
// submodules, and a module in one file is read once for each part of them.
#include "yin/load_assister.h"

#include <cstdint>
#include <cstring>

#include "context/array.h"
#include "context/memory.h"
#include "platform/string.h"

static int32_t FindFirstUnloaded(const QmsLoadAssister* assister) {
  for (uint32_t i = 0; i < assister->suffixCount; ++i) {
    if (assister->suffixes[i].loaded == 0) return static_cast<int32_t>(i);
  }
  return kQmsNoSuffix;
}

bool HasUnloadedSuffix(const QmsLoadAssister* assister) {
  return FindFirstUnloaded(assister) != kQmsNoSuffix;
}

void ClearLoadAssister(QmsLoadAssister* assister) {
  FreeAndNull(&assister->suffixes);
  assister->suffixCount = 0;
  assister->current = kQmsNoSuffix;
}

static bool IsSuffixKnown(const QmsLoadAssister* assister, const char* suffix) {
  for (uint32_t i = 0; i < assister->suffixCount; ++i) {
    if (RTK_StrCmp(assister->suffixes[i].suffix, suffix) == 0) return true;
  }
  return false;
}

static uint32_t EnterSuffix(QmsLoadAssister* assister, const char* suffix, uint8_t loaded) {
  const size_t length = RTK_StrLen(suffix);
  if (length == 0 || length >= kQmsSuffixSize || IsSuffixKnown(assister, suffix)) return QM_OK;
  const uint32_t ret = GrowByOne(&assister->suffixes, assister->suffixCount);
  if (ret != QM_OK) return ret;
  QmsLoadSuffix* entry = &assister->suffixes[assister->suffixCount];
  std::memcpy(entry->suffix, suffix, length + 1);
  entry->loaded = loaded;
  ++assister->suffixCount;
  return QM_OK;
}

uint32_t QMS_LOADER_AddPathObjToLoadAssister(QmsLoadAssister* assister,
                                             const QmsPathCollection* collection) {
  if (assister->forgetful != 0) return QM_OK;
  for (uint32_t i = 0; i < collection->count; ++i) {
    const uint32_t ret = EnterSuffix(assister, collection->objs[i].suffix, 0);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QMS_LOADER_PreFillLoadAssisterFromExisting(QmsLoadAssister* assister,
                                                    const QmsModule* existing,
                                                    const QmsPathCollection* collection) {
  if (existing != nullptr && existing->mergeSourceCount == 0) return QM_OK;
  const uint32_t count = existing == nullptr ? 0 : existing->mergeSourceCount;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t ret = EnterSuffix(assister, existing->mergeSources[i], 1);
    if (ret != QM_OK) return ret;
  }
  return QMS_LOADER_AddPathObjToLoadAssister(assister, collection);
}

// A candidate without suffix serves every suffix: it is read once for each.
static QmsPathObj* FindCandidateForSuffix(QmsPathCollection* collection, const char* suffix) {
  for (uint32_t i = 0; i < collection->count; ++i) {
    QmsPathObj* obj = &collection->objs[i];
    if (obj->suffix[0] == '\0' || RTK_StrCmp(obj->suffix, suffix) == 0) return obj;
  }
  return nullptr;
}

QmsPathObj* QMS_LOADER_GetNextPathObjToProc(QmsPathCollection* collection,
                                            QmsLoadAssister* assister) {
  if (collection->count == 0 || collection->tries >= collection->maxTries) return nullptr;
  const bool isFirstTry = collection->tries++ == 0;
  const int32_t unloaded = FindFirstUnloaded(assister);
  if (unloaded == kQmsNoSuffix) return isFirstTry ? &collection->objs[0] : nullptr;
  QmsPathObj* obj = FindCandidateForSuffix(collection, assister->suffixes[unloaded].suffix);
  if (obj != nullptr) assister->current = unloaded;
  return obj;
}

void QMS_LOADER_ResetCurrentLoadingSuffix(QmsLoadAssister* assister) {
  if (assister->current == kQmsNoSuffix) return;
  assister->suffixes[assister->current].loaded = 1;
  assister->current = kQmsNoSuffix;
}
