// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/type_builder.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include <cstring>

#include "context/array.h"
#include "types/constraint.h"
#include "types/type.h"
#include "values/type_check.h"

namespace type_builder {

Dict::Dict() {
  EXPECT_EQ(QM_OK, QM_DICT_Init(&dict_));
}

Dict::~Dict() {
  QM_DICT_Destroy(&dict_);
}

const char* Dict::Intern(const char* text) {
  return QM_DICT_Insert(&dict_, text);
}

Type::~Type() {
  QMT_TYPE_DestroyQmtRealTypeInner(dict_, &type_);
}

void* AddBody(QmtType* type, uint32_t kind, uint32_t itemCount, uint32_t loadFlags) {
  if (type->cons == nullptr) {
    EXPECT_EQ(QM_OK, QMT_TYPE_ExpandConstraintArray(type, QMT_CONS_COUNT));
  }
  QmtConstraint* entry = &type->cons[type->consCount];
  entry->kind = kind;
  entry->body = QMT_CONS_GetConsDataCreateBodyFunc(kind)(itemCount, loadFlags);
  EXPECT_NE(nullptr, entry->body);
  ++type->consCount;
  return entry->body;
}

QmtConsDerived* AddDerived(QmDict* dict, QmtType* type, const char* moduleName,
                           const char* typedefName, QmtType* resolved) {
  auto* body = static_cast<QmtConsDerived*>(AddBody(type, QMT_CONS_DERIVED, 0));
  InternText(dict, &body->moduleName, moduleName);
  InternText(dict, &body->typedefName, typedefName);
  body->resolved = resolved;
  return body;
}

QmtConsBase* AddBases(QmDict* dict, QmtType* type,
                      std::initializer_list<std::pair<const char*, const char*>> bases) {
  auto* body =
      static_cast<QmtConsBase*>(AddBody(type, QMT_CONS_BASE, static_cast<uint32_t>(bases.size())));
  QmtIdentRef* item = body->items;
  for (const auto& [module, name] : bases) {
    InternText(dict, &item->moduleName, module);
    InternText(dict, &item->identityName, name);
    ++item;
  }
  return body;
}

QmtConsBit* AddBits(QmDict* dict, QmtType* type,
                    std::initializer_list<std::pair<const char*, uint32_t>> bits) {
  auto* body =
      static_cast<QmtConsBit*>(AddBody(type, QMT_CONS_BIT, static_cast<uint32_t>(bits.size())));
  QmtBit* item = body->items;
  for (const auto& [name, position] : bits) {
    InternText(dict, &item->name, name);
    item->position = position;
    ++item;
  }
  return body;
}

QmtConsEnum* AddEnums(QmDict* dict, QmtType* type, std::initializer_list<EnumItem> enums) {
  bool described = false;
  for (const EnumItem& item : enums) described = described || item.description != nullptr;
  auto* body = static_cast<QmtConsEnum*>(
      AddBody(type, QMT_CONS_ENUM, static_cast<uint32_t>(enums.size()),
              described ? static_cast<uint32_t>(QM_LOAD_DESCRIPTIONS) : 0));
  uint32_t i = 0;
  for (const EnumItem& item : enums) {
    InternText(dict, &body->items[i].name, item.name);
    body->items[i].value = item.value;
    if (item.description != nullptr) InternText(dict, &body->descriptions[i], item.description);
    ++i;
  }
  return body;
}

void AddFraction(QmtType* type, uint8_t digits) {
  static_cast<QmtConsFraction*>(AddBody(type, QMT_CONS_FRACTION, 0))->digits = digits;
}

QmtConsPath* AddPath(QmDict* dict, QmtType* type, const char* path) {
  auto* body = static_cast<QmtConsPath*>(AddBody(type, QMT_CONS_PATH, 0));
  InternText(dict, &body->path, path);
  return body;
}

QmtConsPattern* AddPatterns(QmDict* dict, QmtType* type,
                            std::initializer_list<std::pair<const char*, uint32_t>> patterns) {
  auto* body = static_cast<QmtConsPattern*>(
      AddBody(type, QMT_CONS_PATTERN, static_cast<uint32_t>(patterns.size())));
  QmtPattern* item = body->items;
  for (const auto& [pattern, invert] : patterns) {
    InternText(dict, &item->pattern, pattern);
    item->invertMatch = invert;
    ++item;
  }
  return body;
}

QmtType* AddUnion(QmtType* type, uint32_t count) {
  return static_cast<QmtConsUnion*>(AddBody(type, QMT_CONS_UNION, count))->members;
}

QmtSegList* AddSegs(QmtType* type, uint32_t kind, const void* segs, uint32_t count,
                    uint32_t segSize) {
  auto* list = static_cast<QmtSegList*>(AddBody(type, kind, 0));
  EXPECT_EQ(QM_OK, QM_UTL_NewArray(&list->segs, count, segSize));
  std::memcpy(list->segs, segs, size_t{count} * segSize);
  list->segSize = static_cast<uint16_t>(segSize);
  list->capacity = count;
  list->count = static_cast<uint16_t>(count);
  return list;
}

static uint32_t Check(QmtType* type, uint32_t inputKind, const void* input, QmtType** matched) {
  QmtCheckCtx checkCtx{};
  const uint32_t ret = QMT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, input, &checkCtx);
  if (matched != nullptr) *matched = checkCtx.matchedType;
  return ret;
}

uint32_t CheckText(QmtType* type, const char* text, QmtType** matched) {
  return Check(type, QMT_INPUT_STRING, text, matched);
}

uint32_t CheckElement(QmtType* type, const char* xml, QmtType** matched) {
  xmlDoc* doc = xmlParseMemory(xml, static_cast<int>(std::strlen(xml)));
  EXPECT_NE(nullptr, doc) << xml;
  if (doc == nullptr) return UINT32_MAX;
  const uint32_t ret = Check(type, QMT_INPUT_ELEMENT, xmlDocGetRootElement(doc), matched);
  xmlFreeDoc(doc);
  return ret;
}

}  // namespace type_builder
