// SPDX-License-Identifier: BSD-3-Clause
// Types whose records are half filled, as a failed load or copy leaves them: a
// zero-filled record is valid everywhere, so each operation passes over what is
// not there.
#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <string>

#include <qmodel/qmodel.h>

#include "context/dict.h"
#include "schema/records.h"
#include "schema/typedef.h"
#include "tests/support/leaf_module.h"
#include "tests/support/null_arguments.h"
#include "tests/support/type_builder.h"
#include "tests/support/yin_text.h"
#include "types/constraint.h"
#include "types/type.h"
#include "values/indirect.h"
#include "values/range_check.h"
#include "values/segment.h"
#include "values/type_check.h"
#include "yin/load_number.h"

using null_arguments::ExpectEachGives;

namespace {

uint32_t NoName(const char*, int64_t, const char*, void*) {
  return 99;
}
uint32_t NoSegment(uint64_t, uint64_t, uint32_t, void*) {
  return 99;
}
uint32_t NoType(const char*, const char*, QmtType*, void*) {
  return 99;
}
uint32_t NoBase(const char*, const char*, void*) {
  return 99;
}
uint32_t NoPattern(const char*, uint32_t, void*) {
  return 99;
}

void ExpectNothingToScan(QmtType* type) {
  EXPECT_EQ(QM_OK, QM_TYPE_ScanNameValuePair(type, NoName, nullptr));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanStartEndPair(type, NoSegment, nullptr));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanUnionSubType(type, NoType, nullptr));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanIdentRefBase(type, NoBase, nullptr));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanPatternInvertMatch(type, NoPattern, nullptr));
}

uint32_t Check(QmtType* type, const char* text) {
  QmtCheckCtx checkCtx = {};
  return QMT_TYPE_ValidateValueNodeAgainstRealType(type, QMT_INPUT_STRING, text, &checkCtx);
}

// A type with one entry that is not owned.
struct OneEntry {
  QmtConstraint entry = {};
  QmtType type = {};
  OneEntry(uint32_t kind, void* body, uint32_t baseType) {
    entry.kind = kind;
    entry.body = body;
    type.baseType = baseType;
    type.cons = &entry;
    type.consCount = 1;
  }
};

}  // namespace

TEST(EmptyRecords, AnEntryWithoutBodyIsPassedOverByScansAndFailsAValue) {
  QmDict dict = {};
  for (uint32_t kind = 0; kind < QMT_CONS_COUNT; ++kind) {
    SCOPED_TRACE(kind);
    OneEntry one(kind, nullptr, QMT_BASE_STRING);
    ExpectNothingToScan(&one.type);
    EXPECT_EQ(uint32_t{QM_VALUE_NO_BODY}, Check(&one.type, "x"));
    QmsModule module = {};
    EXPECT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(&one.type, &module));
    ClearResolvedInType(&one.type, "m");
    EXPECT_EQ(nullptr, QMT_TYPE_CopyQmtRealType(&dict, &one.type));
  }
}

// The kinds with arrays: a count stands beside an array that was not made.
TEST(EmptyRecords, ACountBesideNoArrayCountsNothing) {
  QmtConsBase base = {3, nullptr};
  QmtConsBit bits = {3, nullptr};
  QmtConsEnum enums = {3, nullptr, nullptr};
  QmtConsPattern patterns = {3, nullptr};
  QmtConsUnion members = {3, nullptr};
  struct {
    uint32_t kind;
    void* body;
    uint32_t baseType;
    uint32_t status;
  } const rows[] = {
      {QMT_CONS_BASE, &base, QMT_BASE_IDENTITYREF, QM_VALUE_BAD_IDENTITY},
      {QMT_CONS_BIT, &bits, QMT_BASE_BITS, QM_VALUE_BAD_BITS},
      {QMT_CONS_ENUM, &enums, QMT_BASE_ENUMERATION, QM_VALUE_BAD_ENUM},
      {QMT_CONS_PATTERN, &patterns, QMT_BASE_STRING, QM_OK},
      {QMT_CONS_UNION, &members, QMT_BASE_UNION, QM_VALUE_BAD_UNION},
  };
  type_builder::Dict dict;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    OneEntry one(row.kind, row.body, row.baseType);
    ExpectNothingToScan(&one.type);
    EXPECT_EQ(row.status, Check(&one.type, "x"));
    ClearResolvedInType(&one.type, "m");
    QmsModule module = {};
    EXPECT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(&one.type, &module));
    QmtType* copy = QMT_TYPE_CopyQmtRealType(dict.Get(), &one.type);
    ASSERT_NE(nullptr, copy);
    EXPECT_EQ(1, copy->consCount);
    QMT_TYPE_DestroyQmtRealType(dict.Get(), copy);
  }
}

// As the create functions make them, before the loader fills in what the statement says.
TEST(EmptyRecords, ABodyThatWasNotFilledAcceptsNoValue) {
  const struct {
    uint32_t kind;
    uint32_t baseType;
    uint32_t status;
  } rows[] = {
      {QMT_CONS_DERIVED, QMT_BASE_TYPEDEF, QM_VALUE_BAD_DERIVED},
      {QMT_CONS_BASE, QMT_BASE_IDENTITYREF, QM_VALUE_BAD_IDENTITY},
      {QMT_CONS_BIT, QMT_BASE_BITS, QM_VALUE_BAD_BITS},
      {QMT_CONS_ENUM, QMT_BASE_ENUMERATION, QM_VALUE_BAD_ENUM},
      {QMT_CONS_FRACTION, QMT_BASE_DECIMAL64, QM_VALUE_BAD_RANGE},
      {QMT_CONS_LENGTH, QMT_BASE_STRING, QM_VALUE_BAD_LENGTH},
      {QMT_CONS_PATH, QMT_BASE_LEAFREF, QM_VALUE_BAD_LEAFREF},
      {QMT_CONS_PATTERN, QMT_BASE_STRING, QM_VALUE_BAD_PATTERN},
      {QMT_CONS_RANGE, QMT_BASE_INT8, QM_VALUE_BAD_RANGE},
  };
  static_assert(std::size(rows) == QMT_CONS_UNION, "a row for each kind but unions");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.kind);
    type_builder::Dict dict;
    type_builder::Type type(&dict, row.baseType);
    type_builder::AddBody(type.Get(), row.kind, 2);
    EXPECT_EQ(row.status, Check(type.Get(), "1"));
    QmtType* copy = QMT_TYPE_CopyQmtRealType(dict.Get(), type.Get());
    ASSERT_NE(nullptr, copy);
    EXPECT_EQ(row.status, Check(copy, "1"));
    QMT_TYPE_DestroyQmtRealType(dict.Get(), copy);
  }
}

// A member without a type would accept anything, so none may come out of a load.
TEST(EmptyRecords, AUnionIsNotLoadedWithAMemberThatWasNotFilled) {
  for (const char* member :
       {"<type/>", "<type name=''/>", "<type name='int8'><range value='x'/></type>"}) {
    SCOPED_TRACE(member);
    LeafModule module("");
    const std::string text =
        yin_text::Module("k", "<leaf name='l'><type name='union'><type name='boolean'/>" +
                                  std::string(member) + "</type></leaf>");
    EXPECT_NE(QM_OK, QM_CTX_LoadMemory(module.ctx(), text.c_str()));
    EXPECT_EQ(nullptr, QM_CTX_GetModuleByModName(module.ctx(), "k"));
  }
}

TEST(EmptyRecords, ItemsWithoutNamesMatchNoValue) {
  type_builder::Dict dict;
  type_builder::Type bits(&dict, QMT_BASE_BITS);
  type_builder::AddBody(bits.Get(), QMT_CONS_BIT, 2);
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_BITS}, Check(bits.Get(), "x"));
  type_builder::Type enums(&dict, QMT_BASE_ENUMERATION);
  type_builder::AddBody(enums.Get(), QMT_CONS_ENUM, 2);
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_ENUM}, Check(enums.Get(), "x"));
}

TEST(EmptyRecords, BasesWithoutNamesAreNotMet) {
  LeafModule module(
      "<identity name='a'/><identity name='b'><base name='a'/></identity>"
      "<leaf name='l'><type name='identityref'><base name='a'/></type></leaf>");
  EXPECT_EQ(QM_OK, module.CheckText("l", "m:b"));
  auto* bases = static_cast<QmtConsBase*>(
      QMT_TYPE_GetTypeConsDataByConsType(module.TypeOf("l"), QMT_CONS_BASE));
  ASSERT_NE(nullptr, bases);
  ReleaseText(&module.ctx()->dict, &bases->items[0].moduleName);
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_IDENTITY}, module.CheckText("l", "m:b"));
  ReleaseText(&module.ctx()->dict, &bases->items[0].identityName);
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_IDENTITY}, module.CheckText("l", "m:b"));
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_IDENTITY}, Check(module.TypeOf("l"), "m:b")) << "no context";
}

TEST(EmptyRecords, ATypedefWithoutNameOrContextIsNotFound) {
  LeafModule module("<typedef name='t'><type name='int8'/></typedef>");
  QmtConsDerived derived = {};
  OneEntry one(QMT_CONS_DERIVED, &derived, QMT_BASE_TYPEDEF);
  QmtCheckCtx checkCtx = {};
  checkCtx.ctx = module.ctx();
  const char* const names[][2] = {{nullptr, "t"}, {"m", nullptr}, {"m", "u"}, {"n", "t"}};
  for (const auto& name : names) {
    derived.moduleName = name[0];
    derived.typedefName = name[1];
    EXPECT_EQ(uint32_t{QM_VALUE_BAD_DERIVED}, QMT_CONS_ValidateValueNodeAgainstDataDerived(
                                                  &derived, QMT_INPUT_STRING, "1", &checkCtx));
    QmtType* seen = &one.type;
    const auto note = [](const char*, const char*, QmtType* type, void* arg) -> uint32_t {
      *static_cast<QmtType**>(arg) = type;
      return 0;
    };
    EXPECT_EQ(QM_OK, QM_TYPE_IterRealTypeDerivedName(&one.type, module.ctx(), note, &seen));
    EXPECT_EQ(nullptr, seen) << "told with no type";
  }
  derived.moduleName = "m";
  derived.typedefName = "t";
  EXPECT_EQ(uint32_t{QM_VALUE_BAD_DERIVED}, Check(&one.type, "1")) << "no context";
  EXPECT_EQ(QM_OK, QMT_CONS_ValidateValueNodeAgainstDataDerived(&derived, QMT_INPUT_STRING, "1",
                                                                &checkCtx));
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(nullptr, module.ctx(), NoType, nullptr));
}

TEST(EmptyRecords, ATypeWithoutEntriesNamesNoTypedef) {
  QmtConstraint entry = {};
  QmtType type = {};
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(nullptr));
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(&type));
  type.cons = &entry;
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(&type)) << "room for entries, but none yet";
  QmDict dict = {};
  QMS_TYPE_DestroyTypDefInner(&dict, nullptr);
  QMT_TYPE_DestroyQmtRealType(&dict, nullptr);
}

TEST(EmptyRecords, SegmentsNeedAListOfTheirLayout) {
  QmtSeg<int8_t> segment = {1, 2};
  QmtSegList list = {1, sizeof segment, 1, &segment};
  const QmtSegLayout* layout = RangeLayout(QMT_BASE_INT8);
  ASSERT_NE(nullptr, layout);
  EXPECT_EQ(99u, ScanSegments(&list, layout, NoSegment, nullptr));
  EXPECT_EQ(QM_INVALID, ScanSegments(nullptr, layout, NoSegment, nullptr));
  EXPECT_EQ(QM_INVALID, ScanSegments(&list, layout, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, ScanSegments(&list, nullptr, NoSegment, nullptr));
  EXPECT_EQ(QM_INVALID, ScanSegments(&list, RangeLayout(QMT_BASE_INT16), NoSegment, nullptr));
  EXPECT_EQ(QM_INVALID, QMT_CONS_ScanStartEndPairsWithLength(nullptr, 0, NoSegment, nullptr));
  list.segs = nullptr;
  EXPECT_EQ(QM_INVALID, ScanSegments(&list, layout, NoSegment, nullptr));
  list.count = 0;
  EXPECT_EQ(QM_OK, ScanSegments(&list, layout, NoSegment, nullptr));

  type_builder::Dict dict;
  OneEntry one(QMT_CONS_RANGE, &list, QMT_BASE_INT8);
  QmtType* copy = QMT_TYPE_CopyQmtRealType(dict.Get(), &one.type);
  ASSERT_NE(nullptr, copy) << "a list without segments is copied as one";
  QMT_TYPE_DestroyQmtRealType(dict.Get(), copy);
}

TEST(EmptyRecords, ASegmentOfUnknownLimitsIsComparedAsItStands) {
  const QmtGenericSeg segment = {2, 4, QMT_SEG_UNSIGNED};
  for (uint64_t v : {1u, 2u, 4u, 5u}) {
    const QmtGenericSeg value = {v, 0, QMT_SEG_UNSIGNED};
    const uint32_t ret = QMT_CONS_CheckValueAgainstRangeSegIntUnknown(&value, &segment, nullptr);
    EXPECT_EQ(v < 2 ? QM_BELOW_SEGMENT : v > 4 ? uint32_t{QM_INVALID} : uint32_t{QM_OK}, ret) << v;
  }
}

TEST(EmptyRecords, DescriptionsWithoutTheirArrayAreLostMemory) {
  LeafModule module("");
  QmtConsEnum body = {};
  xmlNode element = {};
  EXPECT_EQ(QM_NO_MEMORY, QM_LOADER_FillDescWithAllEnum(
                              QM_CTX_GetModuleByModName(module.ctx(), "m"), &element, &body));
}
