// SPDX-License-Identifier: BSD-3-Clause
//
// The argument of a YIN statement is its first attribute, whatever that is
// called (RFC 7950 section 13.1 gives each statement one). The texts stay in
// the document until a parser interns them.
#include "yin/argument.h"

#include <cstdint>

#include "context/dict.h"
#include "context/guard.h"
#include "context/load_error.h"
#include "context/text_scan.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/target_path.h"
#include "yin/keyword.h"

static void RecordMissingValue(QmsModule* module, uint32_t stmt) {
  QM_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                     QMS_LOADER_GetKeywordByStmt(stmt));
}

const char* ReadArgument(QmsModule* module, const xmlNode* element, uint32_t stmt) {
  const char* value = QM_XML_GetFirstPropertyValue(element);
  if (value == nullptr) RecordMissingValue(module, stmt);
  return value;
}

const char* ReadAbsolutePath(QmsModule* module, const xmlNode* element, uint32_t stmt) {
  const char* path = QM_XML_GetFirstPropertyValue(element);
  if (path != nullptr && path[0] == '/') return path;
  RecordMissingValue(module, stmt);
  return nullptr;
}

xmlNode* FirstChildElementNamed(const xmlNode* element, const char* name) {
  for (xmlNode* child = element->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE && RTK_StrCmp(XmlText(child->name), name) == 0) {
      return child;
    }
  }
  return nullptr;
}

uint32_t InternOrRefuse(QmsModule* module, const char** field, const char* text) {
  return InternText(ModuleDict(module), field, text) ? QM_OK : QM_INVALID;
}

uint32_t InternArgument(QmsModule* module, const xmlNode* element, uint32_t stmt,
                        const char** field, const char** value) {
  const char* argument = ReadArgument(module, element, stmt);
  if (value != nullptr) *value = argument;
  return argument == nullptr ? uint32_t{QM_INVALID} : InternOrRefuse(module, field, argument);
}

void RecordBadValue(QmsModule* module, const char* value, uint32_t stmt) {
  QM_CTX_AddModError(module->ctx, module->name, "Failed to parse value \"%s\" of statement \"%s\".",
                     value, QMS_LOADER_GetKeywordByStmt(stmt));
}

void RecordBadStatement(QmsModule* module, uint32_t stmt) {
  QM_CTX_AddModError(module->ctx, module->name, "Failed to parse statement \"%s\".",
                     QMS_LOADER_GetKeywordByStmt(stmt));
}

uint32_t ReadReference(QmsModule* module, const char* text, QmsReference* reference) {
  char prefix[kQmsNameSize];
  const uint32_t ret = QM_UTL_GetXPathNextPrefixAndNode(text, prefix, sizeof(prefix),
                                                        reference->name, sizeof(reference->name));
  if (ret != QM_OK) {
    QM_CTX_AddModError(module->ctx, module->name, "Failed to parse xpath \"%s\".", text);
    return ret;
  }
  reference->module =
      prefix[0] == '\0' ? module->name : QMS_MOD_GetModuleNameByPrefix(module, prefix);
  if (reference->module != nullptr) return QM_OK;
  QM_CTX_AddModError(module->ctx, module->name, "Failed to find module by prefix \"%s\".", prefix);
  return QM_INVALID;
}

// Refused here and not where it is used: an unload splits the path again, and would fail
// on such a module for good.
char* QualifyTargetPath(QmsModule* module, const char* path) {
  QmHeld<char> qualified(QM_XPATH_TransformToJsonFormat(module, path));
  char target[kQmsNameSize] = "";
  return qualified && GetTargetModuleName(qualified.Get(), target) ? qualified.Release() : nullptr;
}
