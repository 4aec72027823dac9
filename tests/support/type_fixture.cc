// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/type_fixture.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include <cstring>
#include <iterator>

#include "tests/support/status_name.h"
#include "types/type.h"
#include "yin/load_type.h"

namespace type_fixture {
namespace {

constexpr const char* kBaseNames[] = {"typedef",     "binary",      "bits",
                                      "boolean",     "decimal64",   "empty",
                                      "enumeration", "identityref", "instance-identifier",
                                      "int8",        "int16",       "int32",
                                      "int64",       "leafref",     "string",
                                      "uint8",       "uint16",      "uint32",
                                      "uint64",      "union",       "none"};

std::string Text(const char* text) {
  return text == nullptr ? "NULL" : text;
}

template <typename Int>
std::string DumpPair(const void* seg) {
  QmtSeg<Int> pair;
  std::memcpy(&pair, seg, sizeof(pair));
  return std::to_string(pair.start) + ".." + std::to_string(pair.end);
}

std::string DumpBound(uint64_t value, uint32_t flags, uint32_t min, uint32_t max) {
  if ((flags & min) != 0) return "min";
  if ((flags & max) != 0) return "max";
  return (flags & QMT_SEG_SIGNED) != 0 ? std::to_string(static_cast<int64_t>(value))
                                       : std::to_string(value);
}

std::string DumpGeneric(const void* seg) {
  QmtGenericSeg copy;
  std::memcpy(&copy, seg, sizeof(copy));
  std::string out = DumpBound(copy.start, copy.segFlags, QMT_SEG_START_MIN, QMT_SEG_START_MAX);
  out += ".." + DumpBound(copy.end, copy.segFlags, QMT_SEG_END_MIN, QMT_SEG_END_MAX);
  if ((copy.segFlags & QMT_SEG_SIGNED) != 0) out += "s";
  if ((copy.segFlags & QMT_SEG_UNSIGNED) != 0) out += "u";
  return out;
}

std::string DumpSegment(uint32_t baseType, const QmtSegList* list, uint32_t index) {
  const void* seg = static_cast<const char*>(list->segs) + index * list->segSize;
  if (list->segSize == 20) return DumpGeneric(seg);
  switch (baseType) {
    case QMT_BASE_INT8:
      return DumpPair<int8_t>(seg);
    case QMT_BASE_INT16:
      return DumpPair<int16_t>(seg);
    case QMT_BASE_INT32:
      return DumpPair<int32_t>(seg);
    case QMT_BASE_UINT8:
      return DumpPair<uint8_t>(seg);
    case QMT_BASE_UINT16:
      return DumpPair<uint16_t>(seg);
    default:
      return DumpPair<uint32_t>(seg);
  }
}

std::string DumpSegments(uint32_t baseType, const QmtSegList* list) {
  std::string out;
  for (uint32_t i = 0; i < list->count; ++i) {
    out += (i > 0 ? "|" : "") + DumpSegment(baseType, list, i);
  }
  return out;
}

std::string DumpEnums(const QmtConsEnum* body) {
  std::string out;
  for (uint32_t i = 0; i < body->count; ++i) {
    out +=
        (i > 0 ? "," : "") + Text(body->items[i].name) + "=" + std::to_string(body->items[i].value);
    if (body->descriptions != nullptr) out += "(" + Text(body->descriptions[i]) + ")";
  }
  return out;
}

std::string DumpBits(const QmtConsBit* body) {
  std::string out;
  for (uint32_t i = 0; i < body->count; ++i) {
    out += (i > 0 ? "," : "") + Text(body->items[i].name) + "=" +
           std::to_string(body->items[i].position);
  }
  return out;
}

std::string DumpBases(const QmtConsBase* body) {
  std::string out;
  for (uint32_t i = 0; i < body->count; ++i) {
    out += (i > 0 ? "," : "") + Text(body->items[i].moduleName) + ":" +
           Text(body->items[i].identityName);
  }
  return out;
}

std::string DumpPatterns(const QmtConsPattern* body) {
  std::string out;
  for (uint32_t i = 0; i < body->count; ++i) {
    out += (i > 0 ? "," : "");
    out += (body->items[i].invertMatch != 0 ? "!" : "") + Text(body->items[i].pattern);
  }
  return out;
}

std::string DumpMembers(const QmtConsUnion* body) {
  std::string out;
  for (uint32_t i = 0; i < body->count; ++i) {
    out += (i > 0 ? ", " : "") + DumpType(&body->members[i]);
  }
  return out;
}

std::string DumpEntry(const QmtType* type, const QmtConstraint* entry) {
  const void* body = entry->body;
  switch (entry->kind) {
    case QMT_CONS_DERIVED: {
      const auto* derived = static_cast<const QmtConsDerived*>(body);
      return "derived{" + Text(derived->moduleName) + ":" + Text(derived->typedefName) +
             (derived->resolved != nullptr ? " resolved}" : "}");
    }
    case QMT_CONS_BASE:
      return "base{" + DumpBases(static_cast<const QmtConsBase*>(body)) + "}";
    case QMT_CONS_BIT:
      return "bit{" + DumpBits(static_cast<const QmtConsBit*>(body)) + "}";
    case QMT_CONS_ENUM:
      return "enum{" + DumpEnums(static_cast<const QmtConsEnum*>(body)) + "}";
    case QMT_CONS_FRACTION:
      return "fraction{" + std::to_string(static_cast<const QmtConsFraction*>(body)->digits) + "}";
    case QMT_CONS_LENGTH:
      return "length{" + DumpSegments(QMT_BASE_STRING, static_cast<const QmtSegList*>(body)) + "}";
    case QMT_CONS_PATH: {
      const auto* path = static_cast<const QmtConsPath*>(body);
      return "path{" + Text(path->path) + " " + std::to_string(path->requireInstance) + "}";
    }
    case QMT_CONS_PATTERN:
      return "pattern{" + DumpPatterns(static_cast<const QmtConsPattern*>(body)) + "}";
    case QMT_CONS_RANGE:
      return "range{" + DumpSegments(type->baseType, static_cast<const QmtSegList*>(body)) + "}";
    default:
      return "union{" + DumpMembers(static_cast<const QmtConsUnion*>(body)) + "}";
  }
}

uint32_t KeepMessage(const char*, const char*, const char* message, void* arg) {
  static_cast<std::vector<std::string>*>(arg)->push_back(message);
  return 0;
}

}  // namespace

Module::Module(uint32_t loadFlags) : ctx_(QM_CTX_Create(loadFlags)), imports_{{"other", "o"}} {
  module_.ctx = ctx_;
  module_.name = "m";
  module_.prefix = "p";
  module_.imports = imports_;
  module_.importCount = 1;
}

Module::~Module() {
  QM_CTX_Delete(ctx_);
}

std::vector<std::string> Module::Messages() {
  std::vector<std::string> messages;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, KeepMessage, &messages));
  return messages;
}

Type::~Type() {
  QMT_TYPE_DestroyQmtRealTypeInner(module_->Dict(), &type_);
}

uint32_t Type::Parse(const std::string& xml) {
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  EXPECT_NE(nullptr, doc) << xml;
  const uint32_t ret =
      QMT_LOADER_ParseTypeStmt(module_->Get(), xmlDocGetRootElement(doc), QMS_STMT_LEAF, &type_);
  xmlFreeDoc(doc);
  return ret;
}

std::string Type::Dump() const {
  return DumpType(&type_);
}

std::string DumpType(const QmtType* type) {
  std::string out = type->baseType < std::size(kBaseNames) ? kBaseNames[type->baseType] : "?";
  for (uint32_t i = 0; i < type->consCount; ++i) out += " " + DumpEntry(type, &type->cons[i]);
  if (type->rangeFlags != 0) out += " flags=" + std::to_string(type->rangeFlags);
  return out;
}

std::string ParseAndDump(const std::string& xml, uint32_t loadFlags) {
  Module module(loadFlags);
  Type type(&module);
  const uint32_t ret = type.Parse(xml);
  return ret == QM_OK ? type.Dump() : StatusName(ret);
}

}  // namespace type_fixture
