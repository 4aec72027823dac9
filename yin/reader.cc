// SPDX-License-Identifier: BSD-3-Clause
//
// From a YIN file to a module record: the file is read whole into memory and parsed,
// its root looked at, and a record made that the content is read into. The size is
// taken from the end of the file; a file that shrinks meanwhile leaves zeros in the
// buffer and is then refused as XML, so a short read needs no handling of its own.
#include "yin/reader.h"

#include <climits>
#include <cstdint>
#include <cstdio>

#include "context/guard.h"
#include "context/memory.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/keyword.h"
#include "yin/module_content.h"

xmlDoc* QMS_LOADER_ReadFileContentAsDoc(RtkVfsFile* file) {
  if (file == nullptr || RTK_VFS_FSeek(file, 0, SEEK_END) != 0) return nullptr;
  const long size = RTK_VFS_FTell(file);
  if (size < 0 || size > INT_MAX || RTK_VFS_FSeek(file, 0, SEEK_SET) != 0) return nullptr;
  const auto length = static_cast<size_t>(size);
  QmHeld<char> buffer(static_cast<char*>(AllocZeroed(length + 1)));
  if (!buffer) return nullptr;
  static_cast<void>(RTK_VFS_FRead(buffer.Get(), length, 1, file));
  return ParseXmlText(buffer.Get(), length);
}

xmlDoc* QMS_LOADER_ReadYinFileToXmlDoc(const char* path) {
  RtkVfsFile* file = path == nullptr ? nullptr : RTK_VFS_FOpen(path, "r");
  if (file == nullptr) return nullptr;
  static_cast<void>(RTK_VFS_SetBufMode(file, RTK_VFS_FULLY_BUFFERED));
  xmlDoc* doc = QMS_LOADER_ReadFileContentAsDoc(file);
  static_cast<void>(RTK_VFS_FClose(file));
  return doc;
}

uint32_t QMS_LOADER_CheckParsedModNameMatched(const char* name, const QmsLoadAssister* assister) {
  if (name == nullptr) return QM_INVALID;
  if (assister == nullptr || assister->modName == nullptr) return QM_OK;
  return RTK_StrCmp(name, assister->modName) == 0 ? QM_OK : QM_INVALID;
}

QmsModule* QMS_LOADER_ParseYinDocToQmMod(QmCtx* ctx, xmlNode* root, QmsLoadAssister* assister) {
  const char* name = QM_XML_GetTargetPropertyValue(root, "name");
  if (QMS_LOADER_CheckParsedModNameMatched(name, assister) != QM_OK) return nullptr;
  QmOwn<QMS_MOD_Free> module(NewRecord<QmsModule>());
  if (!module) return nullptr;
  module->ctx = ctx;
  RTK_AVL3_InitLink(&module->nameLink);
  RTK_AVL3_InitLink(&module->nsLink);
  if (InternOrRefuse(module.Get(), &module->name, name) != QM_OK) return nullptr;
  if (QMS_LOADER_ParseModuleContent(module.Get(), root, assister) != QM_OK) return nullptr;
  return module.Release();
}

// Only the name of the root decides, its namespace does not. A submodule is
// never loaded by itself.
QmsModule* QMS_LOADER_ParseYinContent(QmCtx* ctx, xmlDoc* doc, QmsLoadAssister* assister) {
  xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc);
  if (ctx == nullptr || root == nullptr) return nullptr;
  if (QMS_LOADER_GetStmtByKeyword(XmlText(root->name)) != QMS_STMT_MODULE) return nullptr;
  return QMS_LOADER_ParseYinDocToQmMod(ctx, root, assister);
}
