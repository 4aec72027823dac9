// SPDX-License-Identifier: BSD-3-Clause
//
// Which files hold a module. Three forms of names are known: "m.yin", the
// plain file; "m@2020-01-01.yin", a revision file; "m@@part.yin", one of the
// files that make up a split module. Revision dates are not compared: the
// first file that a directory lists is as good as any. Files of a split module
// are told apart by their suffix, and a load reads each suffix once.
#include "yin/file_lookup.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "context/array.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/text_scan.h"
#include "platform/file.h"
#include "platform/string.h"

constexpr uint8_t kTriesByDefault = 1;
constexpr char kSuffixMark[] = "@@";

void FreePathCollection(QmsPathCollection* collection) {
  if (collection == nullptr) return;
  g_qmMemFreeFunc(collection->objs);
  g_qmMemFreeFunc(collection);
}

// False when the text does not fit whole.
static bool FormatPath(char (&out)[kQmsPathSize], const char* format, const char* dir,
                       const char* name) __attribute__((format(printf, 2, 0)));
static bool FormatPath(char (&out)[kQmsPathSize], const char* format, const char* dir,
                       const char* name) {
  const int length = snprintf(out, sizeof(out), format, dir, name);
  return length >= 0 && static_cast<uint32_t>(length) < sizeof(out);
}

// The name goes into a path and into a wildcard pattern, so that anything but
// an identifier (RFC 7950 section 6.2) could lead elsewhere.
static bool IsFileNameSafe(const char* name) {
  return name != nullptr && name[0] != '\0' &&
         QM_UTL_ConsumeIdentNameBestEffort(name) == RTK_StrLen(name);
}

// Copies the text between "@@" and the next "." of the file's base name; "" for
// a name without "@@".
static uint32_t ReadSuffix(const char* path, QmsPathObj* obj, bool* suffixed) {
  const char* slash = RTK_StrRChr(path, '/');
  const char* mark = RTK_StrStr(slash == nullptr ? path : slash + 1, kSuffixMark);
  *suffixed = mark != nullptr;
  obj->suffix[0] = '\0';
  if (mark == nullptr) return QM_OK;
  const char* start = mark + sizeof(kSuffixMark) - 1;
  const char* end = RTK_StrChr(start, '.');
  if (end == nullptr || end - start >= static_cast<ptrdiff_t>(sizeof(obj->suffix))) {
    return QM_INVALID;
  }
  const auto length = static_cast<size_t>(end - start);
  std::memcpy(obj->suffix, start, length);
  obj->suffix[length] = '\0';
  return QM_OK;
}

uint32_t QMS_LOADER_AppendOnePathObj(QmsPathCollection* collection, const char* path) {
  if (collection == nullptr || path == nullptr) return QM_INVALID;
  QmsPathObj obj;
  bool suffixed = false;
  const size_t length = RTK_StrLen(path);
  if (length >= sizeof(obj.path)) return QM_OK;
  std::memcpy(obj.path, path, length + 1);
  uint32_t ret = ReadSuffix(path, &obj, &suffixed);
  if (ret == QM_OK) ret = GrowByOne(&collection->objs, collection->count);
  if (ret != QM_OK) return ret;
  collection->objs[collection->count++] = obj;
  (suffixed ? collection->hasSuffixed : collection->hasPlain) = 1;
  return QM_OK;
}

uint32_t QMS_LOADER_FillFullNameWithNoRevision(QmsPathCollection* collection, const char* dir,
                                               const char* name) {
  char path[kQmsPathSize];
  if (!FormatPath(path, "%s/%s.yin", dir, name) || RTK_VFS_IsFileExist(path) != 1) {
    return QM_NOT_FOUND;
  }
  return QMS_LOADER_AppendOnePathObj(collection, path);
}

// One name of a listing; what is no file, or does not fit a path, is passed over.
static uint32_t AppendListedFile(QmsPathCollection* collection, const char* dir,
                                 const char* fileName) {
  char path[kQmsPathSize];
  if (!FormatPath(path, "%s/%s", dir, fileName) || RTK_VFS_IsFileExist(path) != 1) return QM_OK;
  const uint32_t ret = QMS_LOADER_AppendOnePathObj(collection, path);
  if (ret != QM_OK) return ret;
  const bool isMix = collection->hasSuffixed != 0 && collection->hasPlain != 0;
  return isMix ? uint32_t{QM_INVALID} : uint32_t{QM_OK};
}

uint32_t QMS_LOADER_FillFullNameWithRevision(QmsPathCollection* collection, const char* dir,
                                             const char* name) {
  char pattern[kQmsPathSize];
  char fileName[kQmsPathSize];
  if (!FormatPath(pattern, "%s/%s@*.yin", dir, name)) return QM_OK;
  RtkVfsFind* find = RTK_VFS_FindFirst(pattern, fileName, sizeof(fileName));
  if (find == nullptr) return QM_OK;
  uint32_t ret = QM_OK;
  do {
    ret = AppendListedFile(collection, dir, fileName);
  } while (ret == QM_OK && RTK_VFS_FindNext(find, fileName, sizeof(fileName)) == QM_OK);
  RTK_VFS_FindClose(find);
  return ret;
}

// Adds the candidates of one directory. Only missing memory is a failure: a
// listing that was cut short deliberately does not end the search.
static bool FillFromDir(QmsPathCollection* collection, const char* dir, const char* name,
                        bool* isPlain) {
  uint32_t ret = QMS_LOADER_FillFullNameWithNoRevision(collection, dir, name);
  *isPlain = ret != QM_NOT_FOUND;
  if (!*isPlain) ret = QMS_LOADER_FillFullNameWithRevision(collection, dir, name);
  return ret != QM_NO_MEMORY;
}

QmsPathCollection* QMS_LOADER_CollectFilePathMatchedInAllDir(QmCtx* ctx, const char* name) {
  if (ctx == nullptr || !IsFileNameSafe(name)) return nullptr;
  QmOwn<FreePathCollection> collection(NewRecord<QmsPathCollection>());
  if (!collection) return nullptr;
  collection->maxTries = kTriesByDefault;
  bool isPlain = false;
  for (uint32_t i = 0; i < ctx->searchDirCount && !isPlain; ++i) {
    // With gaps in the list, a part of a module would be loaded for the whole.
    if (!FillFromDir(collection.Get(), ctx->searchDirs[i], name, &isPlain)) return nullptr;
  }
  return collection->count > 0 ? collection.Release() : nullptr;
}
