// SPDX-License-Identifier: BSD-3-Clause
//
// Reads a whole YIN file into memory and parses it. The size is taken from the
// end of the file; a file that shrinks meanwhile leaves zeros in the buffer and
// is then refused as XML, so a short read needs no handling of its own.
#include "yin/reader.h"

#include <climits>
#include <cstdint>
#include <cstdio>

#include "context/guard.h"
#include "context/memory.h"
#include "context/xml_parse.h"

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
