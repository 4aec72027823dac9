// SPDX-License-Identifier: BSD-3-Clause
//
// The type statement: name, counting pass, filling pass (RFC 7950 sections 7.4 and 9).
// Whether a restriction suits the type is not checked here; each kind found becomes a
// constraint, and the value check applies all of them. Behind it the typedef statement,
// which has a type inside.
#include "yin/load_type.h"

#include <iterator>

#include <qmodel/error.h>

#include "context/array.h"
#include "context/dict.h"
#include "context/load_error.h"
#include "context/table.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module.h"
#include "types/constraint.h"
#include "types/type.h"
#include "yin/argument.h"
#include "yin/dispatch.h"
#include "yin/load_number.h"
#include "yin/load_restriction.h"
#include "yin/prefix_rewrite.h"

namespace {

struct BuiltInNameRow {
  const char* name;
  uint32_t baseType;
};

// Looked up by first letter, then by the rest of the name.
constexpr BuiltInNameRow kBuiltInNames[] = {
    {"binary", QMT_BASE_BINARY},
    {"bits", QMT_BASE_BITS},
    {"boolean", QMT_BASE_BOOLEAN},
    {"decimal64", QMT_BASE_DECIMAL64},
    {"empty", QMT_BASE_EMPTY},
    {"enumeration", QMT_BASE_ENUMERATION},
    {"identityref", QMT_BASE_IDENTITYREF},
    {"instance-identifier", QMT_BASE_INSTANCE_IDENTIFIER},
    {"int8", QMT_BASE_INT8},
    {"int16", QMT_BASE_INT16},
    {"int32", QMT_BASE_INT32},
    {"int64", QMT_BASE_INT64},
    {"leafref", QMT_BASE_LEAFREF},
    {"string", QMT_BASE_STRING},
    {"uint8", QMT_BASE_UINT8},
    {"uint16", QMT_BASE_UINT16},
    {"uint32", QMT_BASE_UINT32},
    {"uint64", QMT_BASE_UINT64},
    {"union", QMT_BASE_UNION},
};
static_assert(std::size(kBuiltInNames) == QMT_BASE_UNION);

static_assert(RowsStandAtTheir<&BuiltInNameRow::baseType>(kBuiltInNames, QMT_BASE_TYPEDEF + 1));

struct ConsKindRow {
  const char* tag;  // NULL: no element of its own
  uint32_t kind;
  uint32_t markBit;
  QmtConsFillFunc fill;
};

constexpr ConsKindRow kConsKinds[] = {
    {nullptr, QMT_CONS_DERIVED, 0, FillDerived},
    {"base", QMT_CONS_BASE, QMT_MARK_BASE, FillBases},
    {"bit", QMT_CONS_BIT, QMT_MARK_BIT, FillBits},
    {"enum", QMT_CONS_ENUM, QMT_MARK_ENUM, FillEnums},
    {"fraction-digits", QMT_CONS_FRACTION, QMT_MARK_FRACTION, FillFraction},
    {"length", QMT_CONS_LENGTH, QMT_MARK_LENGTH, FillLength},
    {"path", QMT_CONS_PATH, QMT_MARK_PATH, FillPath},
    {"pattern", QMT_CONS_PATTERN, QMT_MARK_PATTERN, FillPatterns},
    {"range", QMT_CONS_RANGE, QMT_MARK_RANGE, FillRange},
    {"type", QMT_CONS_UNION, QMT_MARK_UNION, FillUnion},
};
static_assert(std::size(kConsKinds) == QMT_CONS_COUNT);

static_assert(RowsStandAtTheir<&ConsKindRow::kind>(kConsKinds));

}  // namespace

namespace {
// Where the names of each letter begin; those of the letter after it begin where they end.
struct LetterStarts {
  uint8_t at[27];
};
}  // namespace

static consteval LetterStarts StartsOfBuiltInNames() {
  LetterStarts starts{};
  for (int letter = 0; letter <= 26; ++letter) {
    for (const BuiltInNameRow& row : kBuiltInNames) {
      if (row.name[0] < 'a' + letter) ++starts.at[letter];
    }
  }
  return starts;
}

static constexpr LetterStarts kBuiltInStarts = StartsOfBuiltInNames();

uint32_t QMT_LOADER_GetBaseTypeFromTypeName(const char* name) {
  if (name == nullptr || name[0] < 'a' || name[0] > 'z') return QMT_BASE_TYPEDEF;
  const int letter = name[0] - 'a';
  for (uint32_t i = kBuiltInStarts.at[letter]; i < kBuiltInStarts.at[letter + 1]; ++i) {
    if (RTK_StrCmp(kBuiltInNames[i].name + 1, name + 1) == 0) return kBuiltInNames[i].baseType;
  }
  return QMT_BASE_TYPEDEF;
}

static const ConsKindRow* FindKindOfElement(const xmlNode* element) {
  const char* name = XmlText(element->name);
  if (name[0] < 'b' || name[0] > 't') return nullptr;
  for (const ConsKindRow& row : kConsKinds) {
    if (row.tag == nullptr || row.tag[0] != name[0]) continue;
    if (RTK_StrCmp(row.tag, name) == 0) return &row;
  }
  return nullptr;
}

static uint32_t CountKind(QmtTypeCounters* counters, uint32_t kind) {
  uint16_t* counter = &counters->perKind[kind];
  if (*counter >= kMaxArrayCount) return QM_INVALID;
  ++*counter;
  if (*counter == 1) ++counters->distinct;
  return QM_OK;
}

uint32_t QMT_LOADER_CountAndMarkTypeSubElem(xmlNode* typeElem, QmtTypeCounters* counters) {
  for (xmlNode* child = typeElem->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    const ConsKindRow* row = FindKindOfElement(child);
    if (row == nullptr) continue;
    if (CountKind(counters, row->kind) != QM_OK) return QM_INVALID;
    AddPrivateMark(child, row->markBit);
  }
  return QM_OK;
}

QmtConsFillFunc QMT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind) {
  return kind < QMT_CONS_COUNT ? kConsKinds[kind].fill : nullptr;
}

uint32_t QMT_LOADER_CreateConsDataInLastConstraint(QmsModule* module, QmtType* type, uint32_t kind,
                                                   uint32_t itemCount) {
  const QmtConsCreateFunc create = QMT_CONS_GetConsDataCreateBodyFunc(kind);
  QmtConstraint* entry = &type->cons[type->consCount];
  if (create == nullptr || entry->body != nullptr) return QM_INVALID;
  entry->body = create(itemCount, module->ctx->loadFlags);
  if (entry->body == nullptr) return QM_NO_MEMORY;
  entry->kind = kind;
  ++type->consCount;
  return QM_OK;
}

// The segments of a range or length are allocated once its expression is known.
static uint32_t ItemsToCreate(uint32_t kind, uint32_t counted) {
  return kind == QMT_CONS_RANGE || kind == QMT_CONS_LENGTH ? 0 : counted;
}

static uint32_t FillOneKind(QmsModule* module, xmlNode* typeElem, QmtType* type, uint32_t kind,
                            const QmtTypeCounters* counters) {
  const uint32_t counted = counters->perKind[kind];
  if (counted == 0) return QM_OK;
  const QmtConsFillFunc fill = QMT_LOADER_GetConsDataFillAllSegFunc(kind);
  if (fill == nullptr) return QM_OK;
  if (type->consCount >= counters->distinct) return QM_INVALID;
  const uint32_t ret =
      QMT_LOADER_CreateConsDataInLastConstraint(module, type, kind, ItemsToCreate(kind, counted));
  if (ret != QM_OK) return ret;
  return fill(module, typeElem, type, &type->cons[type->consCount - 1], counted);
}

// The members of a union come last and may be unions again: nothing is left to do here
// then, so that this level is gone from the stack.
static_assert(QMT_CONS_UNION == QMT_CONS_COUNT - 1);

uint32_t QMT_LOADER_FillAllTypeConstraint(QmsModule* module, xmlNode* typeElem, QmtType* type,
                                          const QmtTypeCounters* counters) {
  for (uint32_t kind = 0; kind < QMT_CONS_UNION; ++kind) {
    if (counters->perKind[kind] == 0) continue;
    const uint32_t ret = FillOneKind(module, typeElem, type, kind, counters);
    if (ret != QM_OK) return ret;
  }
  return FillOneKind(module, typeElem, type, QMT_CONS_UNION, counters);
}

// A second type statement of one leaf may replace a first one without
// restrictions; with restrictions of its own it then finds the slots taken.
static uint32_t PrepareRecord(QmsModule* module, QmtType* type, uint32_t baseType,
                              const QmtTypeCounters* counters) {
  type->baseType = baseType;
  if (counters->distinct != 0) return QMT_TYPE_ExpandConstraintArray(type, counters->distinct);
  QMT_TYPE_DestroyTypeConstraintArray(ModuleDict(module), type);
  type->rangeFlags = 0;
  return QM_OK;
}

static uint32_t CountAllKinds(xmlNode* element, uint32_t baseType, QmtTypeCounters* counters) {
  if (baseType == QMT_BASE_TYPEDEF) {
    const uint32_t ret = CountKind(counters, QMT_CONS_DERIVED);
    if (ret != QM_OK) return ret;
  }
  return QMT_LOADER_CountAndMarkTypeSubElem(element, counters);
}

// A record that cannot take the type is refused without a message; the message of
// the statement above it tells.
static uint32_t LoadType(QmsModule* module, xmlNode* element, const char* name, QmtType* type) {
  QmtTypeCounters counters = {};
  const uint32_t baseType = QMT_LOADER_GetBaseTypeFromTypeName(name);
  uint32_t ret = CountAllKinds(element, baseType, &counters);
  if (ret == QM_OK) ret = PrepareRecord(module, type, baseType, &counters);
  if (ret != QM_OK || counters.distinct == 0) return ret;
  ret = QMT_LOADER_FillAllTypeConstraint(module, element, type, &counters);
  if (ret != QM_OK) {
    RecordBadValue(module, name, QMS_STMT_TYPE);
  }
  return ret;
}

uint32_t QMT_LOADER_ParseTypeStmt(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                  void* dest) {
  if (dest == nullptr) return QM_INVALID;
  const char* name = QM_XML_GetFirstPropertyValue(element);
  if (name != nullptr) return LoadType(module, element, name, static_cast<QmtType*>(dest));
  QM_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                     "typeName");
  return QM_INVALID;
}

// The typedef statement (RFC 7950 section 7.3): its name, then type, default and units.
// Its base need not exist yet; nothing is resolved while parsing.
static uint32_t ParseTypedefBody(QmsModule* module, xmlNode* element, QmsTypedef* td,
                                 const char* name) {
  QmsSubStmtDesc table[] = {SingleSubStmt(QMS_STMT_TYPE, &td->type),
                            SingleSubStmt(QMS_STMT_DEFAULT, &td->defaultValue),
                            SingleSubStmt(QMS_STMT_UNITS, &td->units)};
  const uint32_t ret =
      QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_TYPEDEF, table, std::size(table));
  if (ret != QM_OK) {
    RecordBadValue(module, name, QMS_STMT_TYPEDEF);
    return ret;
  }
  if (QMT_TYPE_IsInvalidType(&td->type) != 0) {
    QM_CTX_AddModError(module->ctx, module->name, "typedef \"%s\" must define with type statement.",
                       name);
    return QM_INVALID;
  }
  return QMS_LOADER_RefreshTypeDefDefaultValue(module, td);
}

uint32_t QMT_LOADER_ParseTypeDefStmt(QmsModule* module, xmlNode* element, uint32_t /*parentStmt*/,
                                     void* dest) {
  auto* td = static_cast<QmsTypedef*>(dest);
  if (td == nullptr) return QM_INVALID;
  const char* name = ReadArgument(module, element, QMS_STMT_TYPEDEF);
  if (name == nullptr) return QM_INVALID;
  if (!InternText(ModuleDict(module), &td->name, name)) return QM_NO_MEMORY;
  const uint32_t ret = ParseTypedefBody(module, element, td, name);
  if (ret != QM_OK) QMS_TYPE_DestroyTypDefInner(ModuleDict(module), td);
  return ret;
}
