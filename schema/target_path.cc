// SPDX-License-Identifier: BSD-3-Clause
// Schema-node paths as plain text. The converter turns the prefixes of a module
// into module names and writes them as the JSON encoding does (RFC 7951 section
// 4): at the first step and where the module changes. The splitter cuts such a
// path in front of the last step that is qualified, since that step names the
// module to which the rest of the path belongs.
#include "schema/target_path.h"

#include <cstring>

#include <qmodel/schema.h>

#include "context/guard.h"
#include "context/memory.h"
#include "context/string.h"
#include "context/text_scan.h"
#include "platform/string.h"
#include "schema/module.h"

namespace {

constexpr uint32_t kPathSize = 3096;

// Text under construction in a buffer of the caller, always NUL-terminated.
struct PathWriter {
  char* out;
  uint32_t size;
  uint32_t used;
};

}  // namespace

static bool Write(PathWriter* writer, const char* text) {
  const size_t length = RTK_StrLen(text);
  if (length >= writer->size - writer->used) return false;
  std::memcpy(writer->out + writer->used, text, length + 1);
  writer->used += static_cast<uint32_t>(length);
  return true;
}

uint32_t QM_XPATH_NeedAppendModifiedModName(const char* lastPrefix, const char* prefix) {
  if (*lastPrefix == '\0') return 1;
  if (*prefix == '\0') return 0;
  return RTK_StrCmp(lastPrefix, prefix) != 0 ? 1 : 0;
}

uint32_t QM_XPATH_UpdateCurrentXpathModName(QmsModule* module, const char* prefix, char* lastPrefix,
                                            uint32_t lastPrefixSize) {
  const char* source = prefix;
  if (*prefix == '\0') {
    if (*lastPrefix != '\0') return QM_OK;
    source = QM_MOD_GetModulePrefix(module);
    if (source == nullptr) return QM_INVALID;
  }
  const size_t length = RTK_StrLen(source);
  if (length >= lastPrefixSize) return QM_INVALID;
  std::memcpy(lastPrefix, source, length + 1);
  return QM_OK;
}

static uint32_t WriteStep(QmsModule* module, PathWriter* writer, char* lastPrefix,
                          const char* prefix, const char* node) {
  if (RTK_StrCmp(node, "..") != 0 && QM_XPATH_NeedAppendModifiedModName(lastPrefix, prefix) != 0) {
    const uint32_t ret =
        QM_XPATH_UpdateCurrentXpathModName(module, prefix, lastPrefix, kQmsNameSize);
    if (ret != QM_OK) return ret;
    const char* moduleName = QMS_MOD_GetModuleNameByPrefix(module, lastPrefix);
    if (moduleName == nullptr) return QM_INVALID;
    if (!Write(writer, moduleName) || !Write(writer, ":")) return QM_INVALID;
  }
  return Write(writer, node) ? QM_OK : QM_INVALID;
}

uint32_t QM_XPATH_GetJsonFormatXpath(QmsModule* module, const char* path, char* out,
                                     uint32_t outSize) {
  if (module == nullptr || path == nullptr || out == nullptr || outSize == 0) return QM_INVALID;
  PathWriter writer = {out, outSize, 0};
  char lastPrefix[kQmsNameSize] = "";
  char prefix[kQmsNameSize] = "";
  char node[kQmsNameSize] = "";
  *out = '\0';
  while (*path != '\0') {
    if (*path == '/') {
      if (!Write(&writer, "/")) return QM_INVALID;
      ++path;
    }
    path = QM_UTL_GetXPathNextPredicatedPrefixNode(path, prefix, kQmsNameSize, node, kQmsNameSize);
    if (path == nullptr) return QM_INVALID;
    const uint32_t ret = WriteStep(module, &writer, lastPrefix, prefix, node);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

char* QM_XPATH_TransformToJsonFormat(QmsModule* module, const char* path) {
  char buffer[kPathSize];
  if (QM_XPATH_GetJsonFormatXpath(module, path, buffer, kPathSize) != QM_OK) return nullptr;
  return QM_UTL_StrDup(buffer);
}

// Gives the module name of the last step written as "/module:node", or NULL.
const char* QM_XPATH_GetXpathLastModNameFromRear(const char* path, uint32_t* nameLength) {
  const size_t pathLength = RTK_StrLen(path);
  if (pathLength > UINT32_MAX) return nullptr;
  uint32_t end = static_cast<uint32_t>(pathLength);
  for (;;) {
    const uint32_t nodeLength = QM_UTL_ConsumeIdentNameFromTail(path, end);
    if (nodeLength == 0 || nodeLength == end) return nullptr;
    end -= nodeLength + 1;  // now at the character before the node name
    if (path[end] == ':') break;
    if (path[end] != '/') return nullptr;
  }
  const uint32_t length = QM_UTL_ConsumeIdentNameFromTail(path, end);
  if (length == 0 || length == end || path[end - length - 1] != '/') return nullptr;
  *nameLength = length;
  return path + end - length;
}

uint32_t CopyBothParts(const char* path, const char* slash, char** outParentPath,
                       char** outLastPart) {
  QmHeld<char> lastPart(QM_UTL_StrDup(slash));
  if (!lastPart) return QM_INVALID;
  if (slash != path) {
    *outParentPath = QM_UTL_StrDupWithSpecifyLength(path, static_cast<uint32_t>(slash - path));
    if (*outParentPath == nullptr) return QM_INVALID;
  }
  *outLastPart = lastPart.Release();
  return QM_OK;
}

uint32_t QM_XPATH_SplitTargetNodeXpath(const char* path, char* lastModName,
                                       uint32_t lastModNameSize, char** outParentPath,
                                       char** outLastPart) {
  if (outParentPath != nullptr) *outParentPath = nullptr;
  if (outLastPart != nullptr) *outLastPart = nullptr;
  if (path == nullptr || lastModName == nullptr) return QM_INVALID;
  uint32_t nameLength = 0;
  const char* name = QM_XPATH_GetXpathLastModNameFromRear(path, &nameLength);
  if (name == nullptr || nameLength >= lastModNameSize) return QM_INVALID;
  std::memcpy(lastModName, name, nameLength);
  lastModName[nameLength] = '\0';
  if (outParentPath == nullptr || outLastPart == nullptr) return QM_OK;
  return CopyBothParts(path, name - 1, outParentPath, outLastPart);
}

bool GetTargetModuleName(const char* path, char (&name)[kQmsNameSize]) {
  return QM_XPATH_SplitTargetNodeXpath(path, name, kQmsNameSize, nullptr, nullptr) == QM_OK &&
         name[0] != '\0';
}
