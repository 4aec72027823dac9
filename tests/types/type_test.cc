// SPDX-License-Identifier: BSD-3-Clause
#include "types/type.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cstring>

#include "schema/records.h"
#include "schema/typedef.h"
#include "tests/support/counting_memory.h"
#include "tests/support/type_builder.h"
#include "types/builtin.h"
#include "types/constraint.h"
#include "values/check_table.h"

using namespace type_builder;

namespace {

// A type with an entry of every kind.
void AddEveryKind(QmDict* dict, QmtType* type) {
  AddDerived(dict, type, "m", "td", type);
  AddBases(dict, type, {{"m", "base-a"}, {"n", "base-b"}});
  AddBits(dict, type, {{"up", 0}, {"down", 4294967295}});
  AddEnums(dict, type, {{"one", 1, "The first"}, {"minus", -2147483647 - 1}});
  AddFraction(type, 2);
  AddSegs<QmtSeg<uint32_t>>(type, QMT_CONS_LENGTH, {{1, 4}, {8, 8}});
  AddPath(dict, type, "/m:a/m:b")->requireInstance = 0;
  AddPatterns(dict, type, {{"[a-z]+", 0}, {"x.*", 1}});
  AddSegs<QmtGenericSeg>(type, QMT_CONS_RANGE, {{1, 10, QMT_SEG_UNSIGNED | QMT_SEG_START_MIN}});
  QmtType* members = AddUnion(type, 2);
  members[0].baseType = QMT_BASE_INT8;
  AddSegs<QmtSeg<int8_t>>(&members[0], QMT_CONS_RANGE, {{-1, 1}});
  members[1].baseType = QMT_BASE_STRING;
  type->rangeFlags = QMT_RANGE_STATED | QMT_RANGE_MIN_MAX;
}

template <typename Body>
const Body* BodyOf(const QmtType* type, uint32_t kind) {
  return static_cast<const Body*>(QMT_TYPE_GetTypeConsDataByConsType(type, kind));
}

}  // namespace

TEST(ExpandConstraintArray, MakesZeroedSlotsOnce) {
  QmtType type{};
  ASSERT_EQ(QM_OK, QMT_TYPE_ExpandConstraintArray(&type, 3));
  for (uint32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(0u, type.cons[i].kind);
    EXPECT_EQ(nullptr, type.cons[i].body);
  }
  EXPECT_EQ(0, type.consCount);
  EXPECT_EQ(QM_INVALID, QMT_TYPE_ExpandConstraintArray(&type, 1)) << "the array is set already";
  QMT_TYPE_DestroyTypeConstraintArray(nullptr, &type);
  EXPECT_EQ(QM_INVALID, QMT_TYPE_ExpandConstraintArray(nullptr, 1));
}

TEST(ExpandConstraintArray, FailedAllocationGives12) {
  QmtType type{};
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMT_TYPE_ExpandConstraintArray(&type, 3));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(nullptr, type.cons);
}

TEST(OperationTables, HoldWhatEachKindHas) {
  struct Row {
    uint32_t kind;
    bool update, scanNameValue, scanStartEnd;
  };
  const Row rows[] = {
      {QMT_CONS_DERIVED, true, false, false},   {QMT_CONS_BASE, false, false, false},
      {QMT_CONS_BIT, false, true, false},       {QMT_CONS_ENUM, false, true, false},
      {QMT_CONS_FRACTION, false, false, false}, {QMT_CONS_LENGTH, false, false, true},
      {QMT_CONS_PATH, false, false, false},     {QMT_CONS_PATTERN, false, false, false},
      {QMT_CONS_RANGE, false, false, true},     {QMT_CONS_UNION, true, false, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.kind);
    EXPECT_NE(nullptr, QMT_CONS_GetConsDataCreateBodyFunc(row.kind));
    EXPECT_NE(nullptr, QMT_CONS_GetConsDataDestroyBodyFunc(row.kind));
    EXPECT_NE(nullptr, QMT_CONS_GetConsDataCopyBodyFunc(row.kind));
    EXPECT_NE(nullptr, QMT_CONS_GetConsDataValueRestricationCheckFunc(row.kind));
    EXPECT_EQ(row.update, QMT_CONS_GetConsDataUpdateDerFromModFunc(row.kind) != nullptr);
    EXPECT_EQ(row.scanNameValue, QMT_CONS_GetConsDataScanNameValueFunc(row.kind) != nullptr);
    EXPECT_EQ(row.scanStartEnd, QMT_CONS_GetConsDataScanStartEndFunc(row.kind) != nullptr);
  }
}

TEST(OperationTables, KindsAboveNineHaveNoOperations) {
  for (uint32_t kind : {10u, 11u, UINT32_MAX}) {
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataCreateBodyFunc(kind));
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataDestroyBodyFunc(kind));
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataCopyBodyFunc(kind));
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataValueRestricationCheckFunc(kind));
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataUpdateDerFromModFunc(kind));
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataScanNameValueFunc(kind));
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataScanStartEndFunc(kind));
  }
}

TEST(OperationTables, LengthSharesTheBodyFunctionsOfRange) {
  EXPECT_EQ(QMT_CONS_GetConsDataCreateBodyFunc(QMT_CONS_RANGE),
            QMT_CONS_GetConsDataCreateBodyFunc(QMT_CONS_LENGTH));
  EXPECT_EQ(QMT_CONS_GetConsDataDestroyBodyFunc(QMT_CONS_RANGE),
            QMT_CONS_GetConsDataDestroyBodyFunc(QMT_CONS_LENGTH));
  EXPECT_EQ(QMT_CONS_GetConsDataCopyBodyFunc(QMT_CONS_RANGE),
            QMT_CONS_GetConsDataCopyBodyFunc(QMT_CONS_LENGTH));
}

TEST(BuiltInTypes, NamesLimitsAndBottomChecks) {
  struct Row {
    uint32_t id;
    const char* name;
    bool check;
    int64_t min;
    uint64_t max;
    uint32_t sign;
  };
  const Row rows[] = {
      {0, nullptr, false, 0, 0, 0},
      {1, "binary", true, 0, 0, 0},
      {2, "bits", false, 0, 0, 0},
      {3, "boolean", true, 0, 0, 0},
      {4, "decimal64", true, INT64_MIN, INT64_MAX, 1},
      {5, "empty", true, 0, 0, 0},
      {6, "enumeration", false, 0, 0, 0},
      {7, "identityref", false, 0, 0, 0},
      {8, "instance-identifier", false, 0, 0, 0},
      {9, "int8", true, -128, 127, 1},
      {10, "int16", true, -32768, 32767, 1},
      {11, "int32", true, -2147483648, 2147483647, 1},
      {12, "int64", true, INT64_MIN, 9223372036854775807u, 1},
      {13, "leafref", false, 0, 0, 0},
      {14, "string", true, 0, 0, 0},
      {15, "uint8", true, 0, 255, 2},
      {16, "uint16", true, 0, 65535, 2},
      {17, "uint32", true, 0, 4294967295, 2},
      {18, "uint64", true, 0, 18446744073709551615u, 2},
      {19, "union", false, 0, 0, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.id);
    EXPECT_STREQ(row.name, BuiltInTypeName(row.id));
    EXPECT_EQ(row.check, QMT_CONS_GetBaseTypeDefRestrictCheckFunc(row.id) != nullptr);
    QmtLimits limits{1, 1, 1};
    ASSERT_EQ(QM_OK, QMT_CONS_GetBasedIntegerMinMaxVal(row.id, &limits));
    EXPECT_EQ(static_cast<uint64_t>(row.min), limits.min);
    EXPECT_EQ(row.max, limits.max);
    EXPECT_EQ(row.sign, limits.signKind);
  }
}

TEST(BuiltInTypes, IdsAbove19AreRejectedWith22) {
  QmtLimits limits{};
  EXPECT_EQ(QM_INVALID, QMT_CONS_GetBasedIntegerMinMaxVal(20, &limits));
  EXPECT_EQ(QM_INVALID, QMT_CONS_GetBasedIntegerMinMaxVal(9, nullptr));
  EXPECT_EQ(nullptr, QMT_CONS_GetBaseTypeDefRestrictCheckFunc(20));
  EXPECT_EQ(nullptr, BuiltInTypeName(20));
}

TEST(CreateBody, ItemsAreZeroedAndCounted) {
  const auto create = QMT_CONS_GetConsDataCreateBodyFunc(QMT_CONS_ENUM);
  auto* body = static_cast<QmtConsEnum*>(create(2, 0));
  ASSERT_NE(nullptr, body);
  EXPECT_EQ(2, body->count);
  EXPECT_EQ(nullptr, body->items[1].name);
  EXPECT_EQ(nullptr, body->descriptions) << "descriptions only with their load flag";
  QMT_CONS_GetConsDataDestroyBodyFunc(QMT_CONS_ENUM)(nullptr, body);

  body = static_cast<QmtConsEnum*>(create(2, 0x2));
  ASSERT_NE(nullptr, body);
  ASSERT_NE(nullptr, body->descriptions);
  EXPECT_EQ(nullptr, body->descriptions[1]);
  QMT_CONS_GetConsDataDestroyBodyFunc(QMT_CONS_ENUM)(nullptr, body);
}

TEST(CreateBody, RequireInstanceIsTrueUnlessSaid) {
  auto* body = static_cast<QmtConsPath*>(QMT_CONS_GetConsDataCreateBodyFunc(QMT_CONS_PATH)(1, 0));
  ASSERT_NE(nullptr, body);
  EXPECT_EQ(1u, body->requireInstance);
  QMT_CONS_GetConsDataDestroyBodyFunc(QMT_CONS_PATH)(nullptr, body);
}

TEST(CreateBody, MoreItemsThanTheCounterHoldsAreRefused) {
  for (uint32_t kind :
       {QMT_CONS_BASE, QMT_CONS_BIT, QMT_CONS_ENUM, QMT_CONS_PATTERN, QMT_CONS_UNION}) {
    EXPECT_EQ(nullptr, QMT_CONS_GetConsDataCreateBodyFunc(kind)(65536, 0)) << kind;
  }
}

TEST(CreateBody, EveryFailedAllocationLeavesNothingBehind) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    for (uint32_t kind = 0; kind < QMT_CONS_COUNT; ++kind) {
      void* body = QMT_CONS_GetConsDataCreateBodyFunc(kind)(3, 0x2);
      if (!refusing) {
        EXPECT_NE(nullptr, body) << kind;
      }
      QMT_CONS_GetConsDataDestroyBodyFunc(kind)(nullptr, body);
    }
  });
  EXPECT_LT(10u, injected);
}

TEST(CopyType, CopiesEveryKindDeeply) {
  Dict dict;
  Type src(&dict, QMT_BASE_TYPEDEF);
  AddEveryKind(dict.Get(), src.Get());
  QmtType* copy = QMT_TYPE_CopyQmtRealType(dict.Get(), src.Get());
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(0u, copy->baseType);
  EXPECT_EQ(src->rangeFlags, copy->rangeFlags);
  ASSERT_EQ(10, copy->consCount);
  for (uint32_t i = 0; i < 10; ++i) {
    EXPECT_EQ(i, copy->cons[i].kind);
    EXPECT_NE(src->cons[i].body, copy->cons[i].body);
  }

  const auto* bases = BodyOf<QmtConsBase>(copy, QMT_CONS_BASE);
  EXPECT_STREQ("base-b", bases->items[1].identityName);
  EXPECT_STREQ("n", bases->items[1].moduleName);
  const auto* bits = BodyOf<QmtConsBit>(copy, QMT_CONS_BIT);
  EXPECT_STREQ("down", bits->items[1].name);
  EXPECT_EQ(4294967295u, bits->items[1].position);
  const auto* enums = BodyOf<QmtConsEnum>(copy, QMT_CONS_ENUM);
  EXPECT_STREQ("minus", enums->items[1].name);
  EXPECT_EQ(INT32_MIN, enums->items[1].value);
  EXPECT_STREQ("The first", enums->descriptions[0]);
  EXPECT_EQ(nullptr, enums->descriptions[1]);
  EXPECT_EQ(2u, QM_TYPE_GetDecimal64Fraction(copy));
  EXPECT_STREQ("/m:a/m:b", QM_TYPE_GetTypeConsDataLeafrefPath(copy));
  EXPECT_EQ(0u, BodyOf<QmtConsPath>(copy, QMT_CONS_PATH)->requireInstance);
  const auto* patterns = BodyOf<QmtConsPattern>(copy, QMT_CONS_PATTERN);
  EXPECT_STREQ("x.*", patterns->items[1].pattern);
  EXPECT_EQ(1u, patterns->items[1].invertMatch);
  for (uint32_t kind : {QMT_CONS_LENGTH, QMT_CONS_RANGE}) {
    const auto* from = BodyOf<QmtSegList>(src.Get(), kind);
    const auto* to = BodyOf<QmtSegList>(copy, kind);
    EXPECT_EQ(from->count, to->count);
    EXPECT_EQ(from->segSize, to->segSize);
    EXPECT_EQ(from->capacity, to->capacity);
    EXPECT_EQ(0, std::memcmp(from->segs, to->segs, size_t{from->count} * from->segSize));
  }
  const auto* members = BodyOf<QmtConsUnion>(copy, QMT_CONS_UNION);
  ASSERT_EQ(2, members->count);
  EXPECT_EQ(QMT_BASE_STRING, members->members[1].baseType);
  EXPECT_EQ(QM_OK, CheckText(&members->members[0], "1"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, CheckText(&members->members[0], "2"));
  QMT_TYPE_DestroyQmtRealType(dict.Get(), copy);
}

TEST(CopyType, DerivedEntryOfTheCopyIsNotResolved) {
  Dict dict;
  QmtType target{};
  Type src(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), src.Get(), "m", "td", &target);
  QmtType* copy = QMT_TYPE_CopyQmtRealType(dict.Get(), src.Get());
  ASSERT_NE(nullptr, copy);
  const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(copy);
  EXPECT_EQ(nullptr, derived->resolved);
  EXPECT_STREQ("m", derived->moduleName);
  EXPECT_STREQ("td", derived->typedefName);
  QMT_TYPE_DestroyQmtRealType(dict.Get(), copy);
}

TEST(CopyType, WithoutEntriesOnlyTheBaseTypeIsCopied) {
  Dict dict;
  QmtType src{};
  src.baseType = QMT_BASE_INT8;
  src.rangeFlags = QMT_RANGE_STATED;
  QmtType dst{};
  EXPECT_EQ(QM_OK, QMT_TYPE_CopyQmtRealTypeInner(dict.Get(), &dst, &src));
  EXPECT_EQ(QMT_BASE_INT8, dst.baseType);
  EXPECT_EQ(0, dst.rangeFlags);
  EXPECT_EQ(nullptr, dst.cons);
  EXPECT_EQ(0, dst.consCount);
}

static void ExpectEmpty(const QmtType& type) {
  EXPECT_EQ(0u, type.baseType);
  EXPECT_EQ(0, type.rangeFlags);
  EXPECT_EQ(0, type.consCount);
  EXPECT_EQ(nullptr, type.cons);
}

TEST(CopyType, EntryWithoutBodyFailsWith12AndLeavesTheDestinationEmpty) {
  Dict dict;
  Type src(&dict, QMT_BASE_STRING);
  src->rangeFlags = QMT_RANGE_STATED;
  AddPatterns(dict.Get(), src.Get(), {{"a", 0}});
  src->cons[1].kind = QMT_CONS_RANGE;
  src->consCount = 2;
  QmtType dst{};
  EXPECT_EQ(QM_NO_MEMORY, QMT_TYPE_CopyQmtRealTypeInner(dict.Get(), &dst, src.Get()));
  ExpectEmpty(dst);
}

TEST(CopyType, EntryOfUnknownKindFailsWith12) {
  Dict dict;
  Type src(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), src.Get(), {{"a", 0}});
  src->cons[0].kind = 10;
  QmtType dst{};
  EXPECT_EQ(QM_NO_MEMORY, QMT_TYPE_CopyQmtRealTypeInner(dict.Get(), &dst, src.Get()));
  EXPECT_EQ(nullptr, QMT_TYPE_CopyQmtRealType(dict.Get(), src.Get()));
  src->cons[0].kind = QMT_CONS_PATTERN;
}

TEST(CopyType, NullArgumentsAreRefused) {
  Dict dict;
  QmtType type{};
  EXPECT_EQ(QM_INVALID, QMT_TYPE_CopyQmtRealTypeInner(nullptr, &type, &type));
  EXPECT_EQ(QM_INVALID, QMT_TYPE_CopyQmtRealTypeInner(dict.Get(), nullptr, &type));
  EXPECT_EQ(QM_INVALID, QMT_TYPE_CopyQmtRealTypeInner(dict.Get(), &type, nullptr));
  EXPECT_EQ(nullptr, QMT_TYPE_CopyQmtRealType(dict.Get(), nullptr));
}

namespace {
QmtType* g_source;
}  // namespace

TEST(CopyType, EveryFailedAllocationGives12AndAnEmptyDestination) {
  Dict sourceDict;
  Type src(&sourceDict, QMT_BASE_TYPEDEF);
  AddEveryKind(sourceDict.Get(), src.Get());
  g_source = src.Get();
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    QmDict dict{};
    if (QM_DICT_Init(&dict) != 0) return;
    QmtType copy{};
    const uint32_t ret = QMT_TYPE_CopyQmtRealTypeInner(&dict, &copy, g_source);
    if (!refusing) {
      EXPECT_EQ(QM_OK, ret);
    }
    if (ret != QM_OK) {
      EXPECT_EQ(QM_NO_MEMORY, ret);
      ExpectEmpty(copy);
      for (uint32_t i = 0; i < dict.bucketCount; ++i) {
        EXPECT_EQ(nullptr, dict.buckets[i].first) << "a text was not released";
      }
    }
    QMT_TYPE_DestroyQmtRealTypeInner(&dict, &copy);
    QM_DICT_Destroy(&dict);
  });
  EXPECT_LT(60u, injected) << "10 bodies, 4 arrays, 2 segment lists, 14 texts, in two modes";
}

TEST(DestroyType, EmptiesTheRecordButKeepsTheRangeFlags) {
  Dict dict;
  QmtType type{};
  type.baseType = QMT_BASE_STRING;
  type.rangeFlags = QMT_RANGE_STATED;
  AddPatterns(dict.Get(), &type, {{"a", 0}});
  QMT_TYPE_DestroyQmtRealTypeInner(dict.Get(), &type);
  EXPECT_EQ(0u, type.baseType);
  EXPECT_EQ(0, type.consCount);
  EXPECT_EQ(nullptr, type.cons);
  EXPECT_EQ(QMT_RANGE_STATED, type.rangeFlags);
  QMT_TYPE_DestroyQmtRealTypeInner(dict.Get(), &type);
}

TEST(DestroyType, ConstraintArrayAloneKeepsTheBaseType) {
  Dict dict;
  QmtType type{};
  type.baseType = QMT_BASE_STRING;
  AddPatterns(dict.Get(), &type, {{"a", 0}});
  QMT_TYPE_DestroyTypeConstraintArray(dict.Get(), &type);
  EXPECT_EQ(QMT_BASE_STRING, type.baseType);
  EXPECT_EQ(0, type.consCount);
  EXPECT_EQ(nullptr, type.cons);
}

TEST(DestroyType, ReleasesEachTextOnce) {
  Dict dict;
  const char* kept = dict.Intern("kept");
  {
    Type type(&dict, QMT_BASE_ENUMERATION);
    AddEnums(dict.Get(), type.Get(), {{"kept", 0}, {"gone", 1}});
  }
  // The reference of this test is left: the text is still the same one.
  EXPECT_EQ(kept, dict.Intern("kept"));
  EXPECT_EQ(1u, dict.Get()->usedBuckets) << "the other text is gone";
}

TEST(DestroyType, NullIsIgnored) {
  QMT_TYPE_DestroyQmtRealType(nullptr, nullptr);
  QMT_TYPE_DestroyQmtRealTypeInner(nullptr, nullptr);
  QMT_TYPE_DestroyTypeConstraintArray(nullptr, nullptr);
}

TEST(LookUp, BodyByKind) {
  Dict dict;
  Type type(&dict, QMT_BASE_TYPEDEF);
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataByConsType(type.Get(), QMT_CONS_DERIVED));
  AddEveryKind(dict.Get(), type.Get());
  for (uint32_t kind = 0; kind < QMT_CONS_COUNT; ++kind) {
    EXPECT_EQ(type->cons[kind].body, QMT_TYPE_GetTypeConsDataByConsType(type.Get(), kind));
  }
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataByConsType(type.Get(), 10));
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataByConsType(nullptr, 0));
}

TEST(LookUp, DerivedEntryIsOnlyLookedForInFirstPlace) {
  Dict dict;
  Type type(&dict, QMT_BASE_TYPEDEF);
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(type.Get()));
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(nullptr));
  AddPatterns(dict.Get(), type.Get(), {{"a", 0}});
  AddDerived(dict.Get(), type.Get(), "m", "td", nullptr);
  EXPECT_EQ(nullptr, QMT_TYPE_GetTypeConsDataDerived(type.Get()));
  EXPECT_NE(nullptr, QMT_TYPE_GetTypeConsDataByConsType(type.Get(), QMT_CONS_DERIVED));
}

TEST(LookUp, InheritedTypedefName) {
  Dict dict;
  Type type(&dict, QMT_BASE_TYPEDEF);
  const char* module = "untouched";
  EXPECT_EQ(nullptr, QMT_TYPE_GetInheritedTypDefName(type.Get(), &module));
  EXPECT_EQ(nullptr, module);
  AddDerived(dict.Get(), type.Get(), "m", "td", nullptr);
  EXPECT_STREQ("td", QMT_TYPE_GetInheritedTypDefName(type.Get(), &module));
  EXPECT_STREQ("m", module);
  EXPECT_STREQ("td", QMT_TYPE_GetInheritedTypDefName(type.Get(), nullptr));
}

TEST(LookUp, FractionAndPathOfTypesWithoutThem) {
  QmtType type{};
  EXPECT_EQ(0u, QMT_TYPE_GetTypeConsDataFractionVal(&type));
  EXPECT_EQ(0u, QM_TYPE_GetDecimal64Fraction(&type));
  EXPECT_EQ(0u, QM_TYPE_GetDecimal64Fraction(nullptr));
  EXPECT_EQ(nullptr, QM_TYPE_GetTypeConsDataLeafrefPath(&type));
  EXPECT_EQ(nullptr, QM_TYPE_GetTypeConsDataLeafrefPath(nullptr));
}

TEST(LookUp, BuiltInBaseTypeOfNothingIs20) {
  QmtType type{};
  type.baseType = QMT_BASE_UNION;
  EXPECT_EQ(19u, QM_TYPE_GetBuiltInBaseType(&type));
  EXPECT_EQ(20u, QM_TYPE_GetBuiltInBaseType(nullptr));
}

TEST(LookUp, OnlyTheRecordItselfIsAskedForIdentityref) {
  Dict dict;
  QmtType target{};
  target.baseType = QMT_BASE_IDENTITYREF;
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), type.Get(), "m", "td", &target);
  EXPECT_EQ(1u, QMT_TYPE_IsTypeWithIdentref(&target));
  EXPECT_EQ(0u, QMT_TYPE_IsTypeWithIdentref(type.Get()));
  EXPECT_EQ(0u, QMT_TYPE_IsTypeWithIdentref(nullptr));
}

TEST(IsInvalidType, TypedefWithoutEntriesIsInvalid) {
  Dict dict;
  QmtType type{};
  EXPECT_EQ(1u, QMT_TYPE_IsInvalidType(nullptr));
  EXPECT_EQ(1u, QMT_TYPE_IsInvalidType(&type));
  type.baseType = QMT_BASE_NONE;
  EXPECT_EQ(1u, QMT_TYPE_IsInvalidType(&type));
  type.baseType = QMT_BASE_STRING;
  EXPECT_EQ(0u, QMT_TYPE_IsInvalidType(&type)) << "a built-in type needs no restrictions";
  Type derived(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), derived.Get(), "m", "td", nullptr);
  EXPECT_EQ(0u, QMT_TYPE_IsInvalidType(derived.Get()));
}

namespace {

// A module record with typedefs td0 and td1.
struct TestModule {
  explicit TestModule(Dict* dict) {
    module.name = dict->Intern("m");
    typedefs[0].name = dict->Intern("td0");
    typedefs[1].name = dict->Intern("td1");
    module.typedefs = typedefs;
    module.typedefCount = 2;
  }
  QmsTypedef typedefs[2]{};
  QmsModule module{};
};

}  // namespace

TEST(UpdateDerivedFrom, ResolvesOwnTypedefsAlsoInUnions) {
  Dict dict;
  TestModule own(&dict);
  Type type(&dict, QMT_BASE_TYPEDEF);
  QmtConsDerived* outer = AddDerived(dict.Get(), type.Get(), "m", "td1", nullptr);
  QmtType* members = AddUnion(type.Get(), 2);
  QmtConsDerived* inner = AddDerived(dict.Get(), &members[0], "m", "td0", nullptr);
  QmtConsDerived* foreign = AddDerived(dict.Get(), &members[1], "other", "td0", nullptr);
  EXPECT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(type.Get(), &own.module));
  EXPECT_EQ(&own.typedefs[1].type, outer->resolved);
  EXPECT_EQ(&own.typedefs[0].type, inner->resolved);
  EXPECT_EQ(nullptr, foreign->resolved) << "typedefs of other modules are found in each check";
}

TEST(UpdateDerivedFrom, NamesAreComparedAsInternedTexts) {
  Dict dict;
  Dict otherDict;
  TestModule own(&dict);
  Type type(&otherDict, QMT_BASE_TYPEDEF);
  QmtConsDerived* derived = AddDerived(otherDict.Get(), type.Get(), "m", "td1", nullptr);
  EXPECT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(type.Get(), &own.module));
  EXPECT_EQ(nullptr, derived->resolved);
}

TEST(UpdateDerivedFrom, MissingTypedefGives22) {
  Dict dict;
  TestModule own(&dict);
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), type.Get(), "m", "absent", nullptr);
  EXPECT_EQ(QM_INVALID, QMT_TYPE_UpdateRealTypeDerivedFrom(type.Get(), &own.module));
  EXPECT_EQ(QM_INVALID, QMT_TYPE_UpdateRealTypeDerivedFrom(nullptr, &own.module));
  EXPECT_EQ(QM_INVALID, QMT_TYPE_UpdateRealTypeDerivedFrom(type.Get(), nullptr));
}

TEST(UpdateDerivedFrom, ResolvedEntriesStayAsTheyAre) {
  Dict dict;
  TestModule own(&dict);
  QmtType elsewhere{};
  Type type(&dict, QMT_BASE_TYPEDEF);
  QmtConsDerived* derived = AddDerived(dict.Get(), type.Get(), "m", "absent", &elsewhere);
  EXPECT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(type.Get(), &own.module));
  EXPECT_EQ(&elsewhere, derived->resolved);
}

TEST(ClearResolved, ForgetsOnlyThePointersIntoTheNamedModule) {
  Dict dict;
  QmtType target{};
  Type type(&dict, QMT_BASE_TYPEDEF);
  QmtConsDerived* outer = AddDerived(dict.Get(), type.Get(), "m", "td", &target);
  QmtType* members = AddUnion(type.Get(), 2);
  QmtConsDerived* inner = AddDerived(dict.Get(), &members[0], "m", "td", &target);
  QmtConsDerived* foreign = AddDerived(dict.Get(), &members[1], "n", "td", &target);
  ClearResolvedInType(type.Get(), outer->moduleName);
  EXPECT_EQ(nullptr, outer->resolved);
  EXPECT_EQ(nullptr, inner->resolved);
  EXPECT_EQ(&target, foreign->resolved);
  ClearResolvedInType(nullptr, "m");
}
