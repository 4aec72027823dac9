// SPDX-License-Identifier: BSD-3-Clause
//
// The named numbers of a type: bits with their positions and enums with their values.
// Those that give no number are numbered once all are read, in document order: each
// takes the next free number, which an explicit one pushes beyond itself (RFC 7950
// sections 9.6.4.2 and 9.7.4.2).
#include "yin/load_number.h"

#include <limits>

#include <qmodel/error.h>

#include "context/dict.h"
#include "context/guard.h"
#include "context/memory.h"
#include "context/text_scan.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "yin/argument.h"
#include "yin/load_restriction.h"
#include "yin/load_type.h"

namespace {

constexpr int64_t kMaxExplicitPosition = 4294967294;

}  // namespace

static uint32_t ReadPosition(const xmlNode* element, QmtBit* bit) {
  uint64_t position = 0;
  const char* text = QM_XML_GetFirstPropertyValue(element);
  if (text == nullptr) return QM_INVALID;
  if (QM_UTL_ReadInputStrAsUnsignedInteger(text, nullptr, 0, &position) != QM_OK) {
    return QM_INVALID;
  }
  if (position > static_cast<uint64_t>(kMaxExplicitPosition)) return QM_INVALID;
  bit->position = static_cast<uint32_t>(position);
  return QM_OK;
}

static uint32_t ReadValue(const xmlNode* element, QmtEnum* item) {
  int64_t value = 0;
  const char* text = QM_XML_GetFirstPropertyValue(element);
  if (text == nullptr) return QM_INVALID;
  if (QM_UTL_ReadInputStrAsSignedInteger(text, nullptr, 0, &value) != QM_OK) return QM_INVALID;
  if (value < INT32_MIN || value > INT32_MAX) return QM_INVALID;
  item->value = static_cast<int32_t>(value);
  return QM_OK;
}

template <typename Item, uint32_t (*ReadNumber)(const xmlNode*, Item*)>
static uint32_t FillOneNumbered(QmsModule* module, xmlNode* element, Item* item,
                                uint8_t* explicitMark, const char* numberTag) {
  const char* name = QM_XML_GetFirstPropertyValue(element);
  if (name == nullptr) return QM_INVALID;
  if (!InternText(ModuleDict(module), &item->name, name)) return QM_NO_MEMORY;
  const xmlNode* number = FirstChildElementNamed(element, numberTag);
  if (number == nullptr) return QM_OK;
  const uint32_t ret = ReadNumber(number, item);
  if (ret == QM_OK) *explicitMark = 1;
  return ret;
}

static uint32_t FillOneBit(QmsModule* module, xmlNode* element, void* item, uint8_t* explicitMark) {
  return FillOneNumbered<QmtBit, ReadPosition>(module, element, static_cast<QmtBit*>(item),
                                               explicitMark, "position");
}

static uint32_t FillOneEnum(QmsModule* module, xmlNode* element, void* item,
                            uint8_t* explicitMark) {
  return FillOneNumbered<QmtEnum, ReadValue>(module, element, static_cast<QmtEnum*>(item),
                                             explicitMark, "value");
}

// Numbers one item and moves *next on; in 64 bits, so that neither wraps.
template <typename Number>
static uint32_t AssignNumber(Number* number, bool isExplicit, int64_t* next) {
  if (!isExplicit) {
    if (*next > std::numeric_limits<Number>::max()) return QM_INVALID;
    *number = static_cast<Number>(*next);
  }
  const int64_t beyond = static_cast<int64_t>(*number) + 1;
  if (*next < beyond) *next = beyond;
  return QM_OK;
}

static uint32_t AssignPositions(QmtConsBit* body, const uint8_t* explicitMarks) {
  int64_t next = 0;
  for (uint32_t i = 0; i < body->count; ++i) {
    const uint32_t ret = AssignNumber(&body->items[i].position, explicitMarks[i] != 0, &next);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

static uint32_t AssignValues(QmtConsEnum* body, const uint8_t* explicitMarks) {
  int64_t next = 0;
  for (uint32_t i = 0; i < body->count; ++i) {
    const uint32_t ret = AssignNumber(&body->items[i].value, explicitMarks[i] != 0, &next);
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t FillBits(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                  uint32_t itemCount) {
  auto* body = static_cast<QmtConsBit*>(entry->body);
  QmHeld<uint8_t> marks(static_cast<uint8_t*>(AllocZeroed(itemCount)));
  if (!marks) return QM_NO_MEMORY;
  QmtSegFiller filler = {static_cast<uint16_t>(itemCount), sizeof(QmtBit), QMT_MARK_BIT, FillOneBit,
                         marks.Get()};
  const uint32_t ret = QMT_LOADER_FillTypeConstraintSeg(module, typeElem, &filler, body->items);
  if (ret != QM_OK) return ret;
  return AssignPositions(body, marks.Get());
}

uint32_t FillEnums(QmsModule* module, xmlNode* typeElem, QmtType* /*type*/, QmtConstraint* entry,
                   uint32_t itemCount) {
  auto* body = static_cast<QmtConsEnum*>(entry->body);
  QmHeld<uint8_t> marks(static_cast<uint8_t*>(AllocZeroed(itemCount)));
  if (!marks) return QM_NO_MEMORY;
  QmtSegFiller filler = {static_cast<uint16_t>(itemCount), sizeof(QmtEnum), QMT_MARK_ENUM,
                         FillOneEnum, marks.Get()};
  uint32_t ret = QMT_LOADER_FillTypeConstraintSeg(module, typeElem, &filler, body->items);
  if (ret == QM_OK && (module->ctx->loadFlags & QM_LOAD_DESCRIPTIONS) != 0) {
    ret = QM_LOADER_FillDescWithAllEnum(module, typeElem, body);
  }
  if (ret != QM_OK) return ret;
  return AssignValues(body, marks.Get());
}

static uint32_t InternFirstSentence(QmsModule* module, const char* text, const char** out) {
  const char* stop = RTK_StrChr(text, '.');
  if (stop == text) return QM_OK;
  return InternPart(module, text,
                    stop == nullptr ? RTK_StrLen(text) : static_cast<size_t>(stop - text), out);
}

uint32_t QM_LOADER_FillDescWithOneEnum(QmsModule* module, xmlNode* enumElem,
                                       const char** description) {
  const xmlNode* statement = FirstChildElementNamed(enumElem, "description");
  if (statement == nullptr) return QM_OK;
  const xmlNode* textElement = FirstElement(statement->children);
  if (textElement == nullptr) return QM_INVALID;
  const char* text = QM_XML_GetElemNodeContent(textElement);
  if (text == nullptr) return QM_INVALID;
  return InternFirstSentence(module, text, description);
}

static uint32_t FillDescriptions(QmsModule* module, xmlNode* typeElem, QmtConsEnum* body) {
  uint32_t index = 0;
  for (xmlNode* child = typeElem->children; child != nullptr; child = child->next) {
    if ((PrivateMark(child) & QMT_MARK_ENUM) == 0) continue;
    if (index >= body->count) return QM_INVALID;
    const uint32_t ret = QM_LOADER_FillDescWithOneEnum(module, child, &body->descriptions[index]);
    if (ret != QM_OK) return ret;
    ++index;
  }
  return QM_OK;
}

uint32_t QM_LOADER_FillDescWithAllEnum(QmsModule* module, xmlNode* typeElem, QmtConsEnum* body) {
  if (body->descriptions == nullptr) return QM_NO_MEMORY;
  if (FillDescriptions(module, typeElem, body) == QM_OK) return QM_OK;
  for (uint32_t i = 0; i < body->count; ++i) {
    ReleaseText(ModuleDict(module), &body->descriptions[i]);
  }
  return QM_NO_MEMORY;
}
