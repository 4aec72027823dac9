// SPDX-License-Identifier: BSD-3-Clause
#include <cstring>

#include <qmodel/error.h>
#include <qmodel/schema.h>

#include "context/dict.h"
#include "context/guard.h"
#include "context/load_error.h"
#include "context/memory.h"
#include "context/path_scan.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "yin/load_type.h"
#include "yin/module_access.h"

// The list-like restrictions of a type: base, pattern and union members. Each
// child with the mark of its kind becomes the next item of the body, whose array
// has been made for all of them.

uint32_t QMT_LOADER_FillTypeConstraintSeg(QmsModule* module, xmlNode* typeElem,
                                          QmtSegFiller* filler, void* items) {
  uint32_t index = 0;
  for (xmlNode* child = typeElem->children; child != nullptr; child = child->next) {
    if ((PrivateMark(child) & filler->markBit) == 0) continue;
    if (index >= filler->count) return QM_INVALID;
    void* item = static_cast<char*>(items) + static_cast<size_t>(index) * filler->itemSize;
    uint8_t* mark = filler->explicitMarks == nullptr ? nullptr : &filler->explicitMarks[index];
    const uint32_t ret = filler->fillOne(module, child, item, mark);
    if (ret != QM_OK) return ret;
    ++index;
  }
  return QM_OK;
}

uint32_t FillQualifiedName(QmsModule* module, const char* text, const char** moduleName,
                           const char** name) {
  char prefix[kQmsNameSize] = "";
  char local[kQmsNameSize] = "";
  if (QM_UTL_GetXPathNextPrefixAndNode(text, prefix, kQmsNameSize, local, kQmsNameSize) != QM_OK) {
    return QM_INVALID;
  }
  const char* owner = prefix[0] == '\0' ? QM_MOD_GetModuleName(module)
                                        : QMS_MOD_GetModuleNameByPrefix(module, prefix);
  if (owner == nullptr) return QM_INVALID;
  QmDict* dict = DictOfModule(module);
  if (!InternText(dict, moduleName, owner) || !InternText(dict, name, local)) return QM_NO_MEMORY;
  return QM_OK;
}

static uint32_t FillOneBase(QmsModule* module, xmlNode* element, void* item,
                            uint8_t* explicitMark) {
  static_cast<void>(explicitMark);
  auto* base = static_cast<QmtIdentRef*>(item);
  const char* argument = QM_XML_GetFirstPropertyValue(element);
  if (argument == nullptr) {
    QM_CTX_AddModError(ContextOfModule(module), QM_MOD_GetModuleName(module),
                       "Failed to get value of statement \"%s\".", "base");
    return QM_INVALID;
  }
  return FillQualifiedName(module, argument, &base->moduleName, &base->identityName);
}

uint32_t FillBases(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount) {
  static_cast<void>(type);
  QmtSegFiller filler = {static_cast<uint16_t>(itemCount), sizeof(QmtIdentRef), QMT_MARK_BASE,
                         FillOneBase, nullptr};
  return QMT_LOADER_FillTypeConstraintSeg(module, typeElem, &filler,
                                          static_cast<QmtConsBase*>(entry->body)->items);
}

uint32_t InternPart(QmsModule* module, const char* text, size_t length, const char** field) {
  QmHeld<char> part(static_cast<char*>(AllocZeroed(length + 1)));
  if (!part) return QM_NO_MEMORY;
  std::memcpy(part.Get(), text, length);
  return InternText(DictOfModule(module), field, part.Get()) ? QM_OK : QM_NO_MEMORY;
}

// Patterns match whole values anyway, so "^" and "$" around one are dropped; the
// pattern language would take them as characters (RFC 7950 section 9.4.5).
static uint32_t InternPattern(QmsModule* module, const char* argument, const char** pattern) {
  const size_t length = RTK_StrLen(argument);
  const bool anchored = length > 1 && argument[0] == '^' && argument[length - 1] == '$';
  if (anchored) return InternPart(module, argument + 1, length - 2, pattern);
  return InternPart(module, argument, length, pattern);
}

static uint32_t FillOnePattern(QmsModule* module, xmlNode* element, void* item,
                               uint8_t* explicitMark) {
  static_cast<void>(explicitMark);
  auto* pattern = static_cast<QmtPattern*>(item);
  const char* argument = QM_XML_GetFirstPropertyValue(element);
  if (argument == nullptr) return QM_INVALID;
  // Deliberate: "invert-match" is the only modifier, so its value is not read.
  pattern->invertMatch = FirstChildElementNamed(element, "modifier") != nullptr ? 1 : 0;
  return InternPattern(module, argument, &pattern->pattern);
}

uint32_t FillPatterns(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                      uint32_t itemCount) {
  static_cast<void>(type);
  QmtSegFiller filler = {static_cast<uint16_t>(itemCount), sizeof(QmtPattern), QMT_MARK_PATTERN,
                         FillOnePattern, nullptr};
  return QMT_LOADER_FillTypeConstraintSeg(module, typeElem, &filler,
                                          static_cast<QmtConsPattern*>(entry->body)->items);
}

static uint32_t FillOneMember(QmsModule* module, xmlNode* element, void* item,
                              uint8_t* explicitMark) {
  static_cast<void>(explicitMark);
  return QMT_LOADER_ParseTypeStmt(module, element, QMS_STMT_TYPE, item);
}

// Recurses as deep as the document nests its types, which the XML parser bounds.
uint32_t FillUnion(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount) {
  static_cast<void>(type);
  QmtSegFiller filler = {static_cast<uint16_t>(itemCount), sizeof(QmtType), QMT_MARK_UNION,
                         FillOneMember, nullptr};
  return QMT_LOADER_FillTypeConstraintSeg(module, typeElem, &filler,
                                          static_cast<QmtConsUnion*>(entry->body)->members);
}
