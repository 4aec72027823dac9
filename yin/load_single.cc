// SPDX-License-Identifier: BSD-3-Clause
#include <cstdlib>

#include <qmodel/error.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/guard.h"
#include "context/string.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/target_path.h"
#include "types/type.h"
#include "yin/load_range.h"
#include "yin/load_type.h"
#include "yin/module_access.h"

// The restrictions that a type has once: the typedef it derives from,
// fraction-digits, length, path and range. Of several children of one such kind
// only the first is read.

namespace {

constexpr unsigned long kMaxFractionDigits = 18;

}  // namespace

uint32_t FillDerived(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                     uint32_t itemCount) {
  static_cast<void>(type);
  static_cast<void>(itemCount);
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
uint32_t FillFraction(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                      uint32_t itemCount) {
  static_cast<void>(module);
  static_cast<void>(type);
  static_cast<void>(itemCount);
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

uint32_t FillLength(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                    uint32_t itemCount) {
  static_cast<void>(module);
  static_cast<void>(itemCount);
  const char* argument = FirstMarkedArgument(typeElem, QMT_MARK_LENGTH);
  if (argument == nullptr) return QM_INVALID;
  const bool minMaxOfBase =
      type->baseType == QMT_BASE_TYPEDEF && RTK_StrChr(argument, 'm') != nullptr;
  // Lengths are u32 pairs, as uint32 ranges are, unless they wait for their base.
  const QmtRangeLayout layout = RangeLayoutOf(minMaxOfBase ? QMT_BASE_TYPEDEF : QMT_BASE_UINT32);
  return FillSegments(type, static_cast<QmtSegList*>(entry->body), argument, &layout);
}

uint32_t FillRange(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                   uint32_t itemCount) {
  static_cast<void>(module);
  static_cast<void>(itemCount);
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

uint32_t FillPath(QmsModule* module, xmlNode* typeElem, QmtType* type, QmtConstraint* entry,
                  uint32_t itemCount) {
  static_cast<void>(type);
  static_cast<void>(itemCount);
  auto* body = static_cast<QmtConsPath*>(entry->body);
  const char* argument = FirstMarkedArgument(typeElem, QMT_MARK_PATH);
  if (argument == nullptr || body->path != nullptr) return QM_INVALID;
  if (*argument != '.' && *argument != '/') return QM_INVALID;
  body->requireInstance = ReadRequireInstance(typeElem);
  QmHeld<char> path(QM_XPATH_TransformToJsonFormat(module, argument));
  if (!path) return QM_INVALID;
  return InternText(DictOfModule(module), &body->path, path.Get()) ? QM_OK : QM_NO_MEMORY;
}
