// SPDX-License-Identifier: BSD-3-Clause
//
// The restrictions of a type other than numbered names. Bases, patterns and union
// members are list-like: each child with the mark of the kind becomes the next item of
// the body, whose array has been made for all of them. The typedef that a type derives
// from, fraction-digits, length, path and range a type has once: of several children of
// one such kind only the first is read.
#include "yin/load_restriction.h"

#include <cstdlib>
#include <cstring>

#include <qmodel/error.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/string.h"
#include "context/text_scan.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "schema/target_path.h"
#include "types/type.h"
#include "yin/argument.h"
#include "yin/load_type.h"
#include "yin/range_expression.h"

constexpr unsigned long kMaxFractionDigits = 18;

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

template <typename Item>
static uint32_t FillItems(QmsModule* module, xmlNode* typeElem, uint32_t mark,
                          QmtFillOneFunc fillOne, Item* items, uint32_t count) {
  QmtSegFiller filler = {static_cast<uint16_t>(count), sizeof(Item), mark, fillOne, nullptr};
  return QMT_LOADER_FillTypeConstraintSeg(module, typeElem, &filler, items);
}

uint32_t FillQualifiedName(QmsModule* module, const char* text, const char** moduleName,
                           const char** name) {
  char prefix[kQmsNameSize] = "";
  char local[kQmsNameSize] = "";
  if (QM_UTL_GetXPathNextPrefixAndNode(text, prefix, kQmsNameSize, local, kQmsNameSize) != QM_OK) {
    return QM_INVALID;
  }
  const char* owner =
      prefix[0] == '\0' ? module->name : QMS_MOD_GetModuleNameByPrefix(module, prefix);
  if (owner == nullptr) return QM_INVALID;
  QmDict* dict = ModuleDict(module);
  if (!InternText(dict, moduleName, owner) || !InternText(dict, name, local)) return QM_NO_MEMORY;
  return QM_OK;
}

uint32_t InternPart(QmsModule* module, const char* text, size_t length, const char** field) {
  if (text[length] == '\0') {
    return InternText(ModuleDict(module), field, text) ? QM_OK : QM_NO_MEMORY;
  }
  QmHeld<char> part(static_cast<char*>(AllocZeroed(length + 1)));
  if (!part) return QM_NO_MEMORY;
  std::memcpy(part.Get(), text, length);
  return InternText(ModuleDict(module), field, part.Get()) ? QM_OK : QM_NO_MEMORY;
}

static uint32_t FillOneBase(QmsModule* module, xmlNode* element, void* item,
                            uint8_t* /*explicitMark*/) {
  auto* base = static_cast<QmtIdentRef*>(item);
  const char* argument = ReadArgument(module, element, QMS_STMT_BASE);
  if (argument == nullptr) return QM_INVALID;
  return FillQualifiedName(module, argument, &base->moduleName, &base->identityName);
}

uint32_t FillBases(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                   uint32_t itemCount) {
  return FillItems(module, typeElem, QMT_MARK_BASE, FillOneBase,
                   static_cast<QmtConsBase*>(entry->body)->items, itemCount);
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
                               uint8_t* /*explicitMark*/) {
  auto* pattern = static_cast<QmtPattern*>(item);
  const char* argument = QM_XML_GetFirstPropertyValue(element);
  if (argument == nullptr) return QM_INVALID;
  // Deliberate: "invert-match" is the only modifier, so its value is not read.
  pattern->invertMatch = FirstChildElementNamed(element, "modifier") != nullptr ? 1 : 0;
  return InternPattern(module, argument, &pattern->pattern);
}

uint32_t FillPatterns(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                      uint32_t itemCount) {
  return FillItems(module, typeElem, QMT_MARK_PATTERN, FillOnePattern,
                   static_cast<QmtConsPattern*>(entry->body)->items, itemCount);
}

static uint32_t FillOneMember(QmsModule* module, xmlNode* element, void* item,
                              uint8_t* /*explicitMark*/) {
  return QMT_LOADER_ParseTypeStmt(module, element, QMS_STMT_TYPE, item);
}

// Recurses as deep as the document nests its types, which the XML parser bounds.
uint32_t FillUnion(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                   uint32_t itemCount) {
  return FillItems(module, typeElem, QMT_MARK_UNION, FillOneMember,
                   static_cast<QmtConsUnion*>(entry->body)->members, itemCount);
}

uint32_t FillDerived(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                     uint32_t /*itemCount*/) {
  auto* body = static_cast<QmtConsDerived*>(entry->body);
  const char* name = QM_XML_GetFirstPropertyValue(typeElem);
  if (name == nullptr) return QM_INVALID;
  return FillQualifiedName(module, name, &body->moduleName, &body->typedefName);
}

// The argument of the first child with that mark, or NULL.
static const char* FirstMarkedArgument(const xmlNode* typeElem, uint32_t mark) {
  const xmlNode* element = QM_XML_GetFirstChildNodeWithPriVal(typeElem, mark);
  return element == nullptr ? nullptr : QM_XML_GetFirstPropertyValue(element);
}

// Deliberate: leading blanks and what follows the digits are passed over.
uint32_t FillFraction(QmsModule* /*module*/, xmlNode* typeElem, QmtType* /*type*/,
                      QmtConstraint* entry, uint32_t /*itemCount*/) {
  const char* argument = FirstMarkedArgument(typeElem, QMT_MARK_FRACTION);
  if (argument == nullptr) return QM_INVALID;
  const unsigned long digits = std::strtoul(argument, nullptr, 10);
  if (digits == 0 || digits > kMaxFractionDigits) return QM_INVALID;
  static_cast<QmtConsFraction*>(entry->body)->digits = static_cast<uint8_t>(digits);
  return QM_OK;
}

// Reads the expression into a list whose segments have `layout`.
static uint32_t FillSegments(QmtType* type, QmtSegList* list, const char* expr,
                             const QmtRangeLayout* layout) {
  if (layout->pushFn == nullptr) return QM_INVALID;
  const uint32_t capacity = QM_UTL_CountCharNumber(expr, '|') + 1;
  const uint32_t ret = QM_UTL_NewArray(&list->segs, capacity, layout->segSize);
  if (ret != QM_OK) return ret;
  list->segSize = layout->segSize;
  list->capacity = capacity;
  QmtRangeParseState state = {};
  state.list = list;
  state.baseType = type->baseType;
  state.fractionDigits = QMT_TYPE_GetTypeConsDataFractionVal(type);
  if (QMT_LOADER_ScanParseRangeExprWithCb(expr, layout->pushFn, &state) != QM_OK) {
    return QM_INVALID;
  }
  const bool concrete = type->baseType != QMT_BASE_TYPEDEF || state.usesMinMax == 0;
  const uint32_t kindFlag = concrete ? QMT_RANGE_CONCRETE : QMT_RANGE_MIN_MAX;
  type->rangeFlags = static_cast<uint16_t>(type->rangeFlags | QMT_RANGE_STATED | kindFlag);
  return QM_OK;
}

uint32_t FillLength(QmsModule* /*module*/, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                    uint32_t /*itemCount*/) {
  const char* argument = FirstMarkedArgument(typeElem, QMT_MARK_LENGTH);
  if (argument == nullptr) return QM_INVALID;
  const bool minMaxOfBase =
      type->baseType == QMT_BASE_TYPEDEF && RTK_StrChr(argument, 'm') != nullptr;
  // Lengths are u32 pairs, as uint32 ranges are, unless they wait for their base.
  const QmtRangeLayout layout = RangeLayoutOf(minMaxOfBase ? QMT_BASE_TYPEDEF : QMT_BASE_UINT32);
  return FillSegments(type, static_cast<QmtSegList*>(entry->body), argument, &layout);
}

uint32_t FillRange(QmsModule* /*module*/, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t /*itemCount*/) {
  const char* argument = FirstMarkedArgument(typeElem, QMT_MARK_RANGE);
  if (argument == nullptr) return QM_INVALID;
  const QmtRangeLayout layout = RangeLayoutOf(type->baseType);
  return FillSegments(type, static_cast<QmtSegList*>(entry->body), argument, &layout);
}

// Absent or anything but "f…" is true, RFC 7950 section 9.9.3.
static uint32_t ReadRequireInstance(const xmlNode* typeElem) {
  for (const xmlNode* child = typeElem->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE || PrivateMark(child) != 0) continue;
    if (RTK_StrCmp(XmlText(child->name), "require-instance") != 0) continue;
    const char* value = QM_XML_GetFirstPropertyValue(child);
    return value != nullptr && *value == 'f' ? 0 : 1;
  }
  return 1;
}

uint32_t FillPath(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                  uint32_t /*itemCount*/) {
  auto* body = static_cast<QmtConsPath*>(entry->body);
  const char* argument = FirstMarkedArgument(typeElem, QMT_MARK_PATH);
  if (argument == nullptr || body->path != nullptr) return QM_INVALID;
  if (*argument != '.' && *argument != '/') return QM_INVALID;
  body->requireInstance = ReadRequireInstance(typeElem);
  QmHeld<char> path(QM_XPATH_TransformToJsonFormat(module, argument));
  if (!path) return QM_INVALID;
  return InternText(ModuleDict(module), &body->path, path.Get()) ? QM_OK : QM_NO_MEMORY;
}
