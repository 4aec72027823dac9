// SPDX-License-Identifier: BSD-3-Clause
// Values of texts, enumerations, bits, binary data and unions, and the check as a whole.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <clocale>
#include <string>

#include "tests/support/counting_memory.h"
#include "tests/support/leaf_module.h"
#include "tests/support/type_builder.h"
#include "types/type.h"
#include "values/text.h"
#include "values/type_check.h"

using namespace type_builder;

namespace {

constexpr uint16_t kConcrete = QMT_RANGE_STATED | QMT_RANGE_CONCRETE;

struct ValueRow {
  const char* value;
  uint32_t expected;
};

void ExpectResults(QmtType* type, std::initializer_list<ValueRow> rows) {
  for (const ValueRow& row : rows) {
    EXPECT_EQ(row.expected, CheckText(type, row.value))
        << (row.value == nullptr ? "NULL" : row.value);
  }
}

QmtType BuiltIn(uint32_t base) {
  QmtType type{};
  type.baseType = base;
  return type;
}

}  // namespace

TEST(ValidateValue, NullArgumentsGive22) {
  QmtType type = BuiltIn(QMT_BASE_STRING);
  QmtCheckCtx checkCtx{};
  EXPECT_EQ(QM_INVALID, QMT_TYPE_ValidateValueNodeAgainstRealType(nullptr, 1, "x", &checkCtx));
  EXPECT_EQ(QM_INVALID, QMT_TYPE_ValidateValueNodeAgainstRealType(&type, 1, "x", nullptr));
}

TEST(ValidateValue, EntryWithoutBodyGives28672) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  ASSERT_EQ(QM_OK, QMT_TYPE_ExpandConstraintArray(type.Get(), 1));
  type->cons[0].kind = QMT_CONS_PATTERN;
  type->consCount = 1;
  EXPECT_EQ(QM_VALUE_NO_BODY, CheckText(type.Get(), "x"));
}

TEST(ValidateValue, UnknownInputKindHasNoValue) {
  QmtType type = BuiltIn(QMT_BASE_BOOLEAN);
  QmtCheckCtx checkCtx{};
  EXPECT_EQ(QM_VALUE_BAD_BOOLEAN,
            QMT_TYPE_ValidateValueNodeAgainstRealType(&type, 3, "true", &checkCtx));
  EXPECT_EQ(nullptr, QMT_TYPE_GetInputValueAsSimpleStr(0, "true"));
  EXPECT_EQ(nullptr, QMT_TYPE_GetInputValueAsSimpleStr(3, "true"));
  EXPECT_EQ(nullptr, QMT_TYPE_GetInputValueAsSimpleStr(2, nullptr));
  EXPECT_STREQ("true", QMT_TYPE_GetInputValueAsSimpleStr(1, "true"));
}

TEST(ValidateValue, ElementWithoutTextHasNoValue) {
  struct Row {
    uint32_t base;
    uint32_t expected;
  };
  const Row rows[] = {
      {QMT_BASE_BINARY, QM_VALUE_BAD_BINARY},
      {QMT_BASE_BITS, QM_OK},
      {QMT_BASE_BOOLEAN, QM_VALUE_BAD_BOOLEAN},
      {QMT_BASE_EMPTY, QM_OK},
      {QMT_BASE_ENUMERATION, QM_OK},
      {QMT_BASE_INSTANCE_IDENTIFIER, QM_OK},
      {QMT_BASE_INT8, QM_VALUE_BAD_RANGE},
      {QMT_BASE_STRING, QM_OK},
      {QMT_BASE_UINT64, QM_VALUE_BAD_RANGE},
  };
  for (const Row& row : rows) {
    QmtType type = BuiltIn(row.base);
    EXPECT_EQ(row.expected, CheckElement(&type, "<a/>")) << row.base;
  }
}

TEST(ValidateValue, NothingOfTheSchemaIsWritten) {
  Dict dict;
  Type base(&dict, QMT_BASE_INT8);
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), type.Get(), "m", "td", base.Get());
  const uint32_t used = dict.Get()->usedBuckets;
  const size_t blocks = counting_memory::LiveBlocks();
  EXPECT_EQ(QM_OK, CheckText(type.Get(), "5"));
  EXPECT_EQ(used, dict.Get()->usedBuckets);
  EXPECT_EQ(blocks, counting_memory::LiveBlocks());
}

TEST(BooleanValue, IsTrueOrFalseExactly) {
  QmtType type = BuiltIn(QMT_BASE_BOOLEAN);
  ExpectResults(&type, {{"true", QM_OK},
                        {"false", QM_OK},
                        {"True", QM_VALUE_BAD_BOOLEAN},
                        {"FALSE", QM_VALUE_BAD_BOOLEAN},
                        {"1", QM_VALUE_BAD_BOOLEAN},
                        {" true", QM_VALUE_BAD_BOOLEAN},
                        {"true ", QM_VALUE_BAD_BOOLEAN},
                        {"", QM_VALUE_BAD_BOOLEAN},
                        {nullptr, QM_VALUE_BAD_BOOLEAN}});
}

TEST(EmptyValue, HasNoText) {
  QmtType type = BuiltIn(QMT_BASE_EMPTY);
  ExpectResults(
      &type, {{nullptr, QM_OK}, {"", QM_OK}, {" ", QM_VALUE_BAD_EMPTY}, {"x", QM_VALUE_BAD_EMPTY}});
}

TEST(BinaryValue, Base64Texts) {
  QmtType type = BuiltIn(QMT_BASE_BINARY);
  ExpectResults(&type, {{"QUJD", QM_OK},
                        {"QUI=", QM_OK},
                        {"QQ==", QM_OK},
                        {"", QM_OK},
                        {" \t\n", QM_OK},
                        {" \nQUJD\t ", QM_OK},
                        {"QUJD\n", QM_OK},
                        {"a+/9", QM_OK},
                        {"QUJDR", QM_VALUE_BAD_BINARY},   // five characters
                        {"QUJ", QM_VALUE_BAD_BINARY},     //
                        {"Q===", QM_VALUE_BAD_BINARY},    // three padding characters
                        {"====", QM_VALUE_BAD_BINARY},    //
                        {"QQ=A", QM_VALUE_BAD_BINARY},    // data after padding
                        {"Q=Q=", QM_VALUE_BAD_BINARY},    //
                        {"QUJD\r", QM_VALUE_BAD_BINARY},  // carriage return is not trimmed
                        {"QU!D", QM_OK},                  // other characters are passed over
                        {"Q\nU\nJDRA", QM_OK},            // but count: eight of them
                        {"Q\nUJD", QM_VALUE_BAD_BINARY},  // and here five
                        {nullptr, QM_VALUE_BAD_BINARY}});
}

TEST(BinaryValue, DecodedLength) {
  struct Row {
    const char* text;
    uint32_t length;
  };
  const Row rows[] = {{"QUJD", 3}, {"QUI=", 2}, {"QQ==", 1},
                      {" ", 0},    {"", 0},     {" QUJDQUJDQQ==  ", 7},
                      {"!!==", 1}, {"!!!!", 3}};
  for (const Row& row : rows) {
    QmtCheckCtx checkCtx{};
    checkCtx.binaryLength = 77;
    EXPECT_EQ(QM_OK,
              QMT_CONS_CheckValStrAgainstDefRestrictBinary(QMT_BASE_BINARY, row.text, &checkCtx));
    EXPECT_EQ(row.length, checkCtx.binaryLength) << row.text;
    const bool empty = row.length == 0;
    EXPECT_EQ(empty ? 0u : 4294967295u, uint64_t{checkCtx.parentLimits.end})
        << "limits are recorded for " << row.text;
  }
}

TEST(BinaryValue, LengthRestrictionAppliesToTheDecodedBytes) {
  Dict dict;
  Type type(&dict, QMT_BASE_BINARY);
  AddSegs<QmtSeg<uint32_t>>(type.Get(), QMT_CONS_LENGTH, {{2, 3}});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"QUJD", QM_OK},
                             {"QUI=", QM_OK},
                             {"QQ==", QM_VALUE_BAD_LENGTH},
                             {" ", QM_VALUE_BAD_LENGTH}});
}

TEST(BinaryValue, EmptyValueHasNoLimitsForMinAndMax) {
  Dict dict;
  Type base(&dict, QMT_BASE_BINARY);
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), type.Get(), "m", "td", base.Get());
  AddSegs<QmtGenericSeg>(type.Get(), QMT_CONS_LENGTH,
                         {{0, 0, QMT_SEG_START_MIN | QMT_SEG_END_MAX}});
  type->rangeFlags = QMT_RANGE_STATED | QMT_RANGE_MIN_MAX;
  ExpectResults(type.Get(), {{"QUJD", QM_OK}, {"", QM_VALUE_BAD_LENGTH}});
}

TEST(EnumValue, IsOneOfTheNamesByteForByte) {
  Dict dict;
  Type type(&dict, QMT_BASE_ENUMERATION);
  AddEnums(dict.Get(), type.Get(), {{"one", 0}, {"two words", 1}});
  ExpectResults(type.Get(), {{"one", QM_OK},
                             {"two words", QM_OK},
                             {"One", QM_VALUE_BAD_ENUM},
                             {" one", QM_VALUE_BAD_ENUM},
                             {"one ", QM_VALUE_BAD_ENUM},
                             {"on", QM_VALUE_BAD_ENUM},
                             {"", QM_VALUE_BAD_ENUM},
                             {nullptr, QM_VALUE_BAD_ENUM}});
}

TEST(EnumValue, EmptyListAcceptsNothing) {
  Dict dict;
  Type type(&dict, QMT_BASE_ENUMERATION);
  AddEnums(dict.Get(), type.Get(), {});
  ExpectResults(type.Get(), {{"one", QM_VALUE_BAD_ENUM}, {"", QM_VALUE_BAD_ENUM}});
}

TEST(BitsValue, ListsOfNames) {
  Dict dict;
  Type type(&dict, QMT_BASE_BITS);
  AddBits(dict.Get(), type.Get(), {{"up", 0}, {"down", 1}, {"a.b-c_1", 2}});
  ExpectResults(type.Get(), {{"", QM_OK},
                             {"up", QM_OK},
                             {"down up", QM_OK},
                             {"up \t\n down", QM_OK},
                             {"up ", QM_OK},
                             {"a.b-c_1 up down", QM_OK},
                             {"up up", QM_VALUE_BAD_BITS},               // twice
                             {"up down a.b-c_1 up", QM_VALUE_BAD_BITS},  // more than there are
                             {"sideways", QM_VALUE_BAD_BITS},            //
                             {"Up", QM_VALUE_BAD_BITS},                  //
                             {" up", QM_VALUE_BAD_BITS},                 // no name at the start
                             {" ", QM_VALUE_BAD_BITS},                   //
                             {"up,down", QM_VALUE_BAD_BITS},             //
                             {"up\rdown", QM_VALUE_BAD_BITS},            //
                             {nullptr, QM_VALUE_BAD_BITS}});
}

TEST(BitsValue, NamesHaveAtMost64Characters) {
  Dict dict;
  const std::string longest(64, 'a');
  const std::string tooLong(65, 'a');
  Type type(&dict, QMT_BASE_BITS);
  AddBits(dict.Get(), type.Get(), {{longest.c_str(), 0}, {tooLong.c_str(), 1}});
  ExpectResults(type.Get(), {{longest.c_str(), QM_OK}, {tooLong.c_str(), QM_VALUE_BAD_BITS}});
}

TEST(BitsValue, AtMost129Names) {
  Dict dict;
  Type type(&dict, QMT_BASE_BITS);
  auto* body = static_cast<QmtConsBit*>(AddBody(type.Get(), QMT_CONS_BIT, 140));
  std::string value;
  for (uint32_t i = 0; i < 140; ++i) {
    const std::string name = "b" + std::to_string(i);
    InternText(dict.Get(), &body->items[i].name, name.c_str());
    if (i < 129) value += (i == 0 ? "" : " ") + name;
  }
  EXPECT_EQ(QM_OK, CheckText(type.Get(), value.c_str()));
  EXPECT_EQ(QM_VALUE_BAD_BITS, CheckText(type.Get(), (value + " b129").c_str()));
}

TEST(BitsValue, TypeWithoutBitsAcceptsOnlyTheEmptyList) {
  Dict dict;
  Type type(&dict, QMT_BASE_BITS);
  AddBits(dict.Get(), type.Get(), {});
  ExpectResults(type.Get(), {{"", QM_OK}, {"up", QM_VALUE_BAD_BITS}});
}

TEST(BitsValue, FailedAllocationGives28675) {
  Dict dict;
  Type type(&dict, QMT_BASE_BITS);
  AddBits(dict.Get(), type.Get(), {{"up", 0}});
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_VALUE_BAD_BITS, CheckText(type.Get(), "up"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(QM_OK, CheckText(type.Get(), "up"));
}

TEST(PatternValue, AllPatternsMustAgree) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), type.Get(), {{"[a-z]+", 0}, {".*x.*", 1}});
  ExpectResults(type.Get(), {{"abc", QM_OK},
                             {"abx", QM_VALUE_BAD_PATTERN},      // matches the one it must not
                             {"ab1", QM_VALUE_BAD_PATTERN},      //
                             {"abc1abc", QM_VALUE_BAD_PATTERN},  // the whole value must match
                             {"", QM_VALUE_BAD_PATTERN},
                             {nullptr, QM_VALUE_BAD_PATTERN}});
}

TEST(PatternValue, NoValueFailsWhateverThePattern) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), type.Get(), {{".*", 0}});
  ExpectResults(type.Get(), {{"", QM_OK}, {nullptr, QM_VALUE_BAD_PATTERN}});
  EXPECT_EQ(QM_VALUE_BAD_PATTERN, CheckElement(type.Get(), "<a/>"));
}

TEST(PatternValue, PatternThatDoesNotCompileMatchesNothing) {
  Dict dict;
  Type normal(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), normal.Get(), {{"[a", 0}});
  ExpectResults(
      normal.Get(),
      {{"a", QM_VALUE_BAD_PATTERN}, {"[a", QM_VALUE_BAD_PATTERN}, {"", QM_VALUE_BAD_PATTERN}});
  Type inverted(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), inverted.Get(), {{"[a", 1}});
  ExpectResults(inverted.Get(), {{"a", QM_OK}, {"[a", QM_OK}, {"", QM_OK}});
}

TEST(PatternValue, MultibyteCharactersAreCharacters) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), type.Get(), {{".{2}", 0}});
  for (const char* locale : {"C", "C.UTF-8", "de_DE.ISO-8859-1"}) {
    if (std::setlocale(LC_ALL, locale) == nullptr) continue;
    ExpectResults(
        type.Get(),
        {{"\xE2\x82\xAC\xE2\x82\xAC", QM_OK}, {"ab", QM_OK}, {"abc", QM_VALUE_BAD_PATTERN}});
  }
  std::setlocale(LC_ALL, "C");
}

TEST(UnionValue, FirstMemberThatAcceptsWins) {
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 2);
  members[0].baseType = QMT_BASE_INT8;
  members[1].baseType = QMT_BASE_STRING;
  QmtType* matched = nullptr;
  EXPECT_EQ(QM_OK, CheckText(type.Get(), "5", &matched));
  EXPECT_EQ(&members[0], matched);
  EXPECT_EQ(QM_OK, CheckText(type.Get(), "300", &matched));
  EXPECT_EQ(&members[1], matched) << "300 is no int8";
}

TEST(UnionValue, NoMemberGives28681WhateverTheMembersSay) {
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 2);
  members[0].baseType = QMT_BASE_INT8;
  members[1].baseType = QMT_BASE_BOOLEAN;
  QmtType* matched = nullptr;
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckText(type.Get(), "300", &matched));
  EXPECT_EQ(nullptr, matched);
  Type empty(&dict, QMT_BASE_UNION);
  AddUnion(empty.Get(), 0);
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckText(empty.Get(), "300"));
}

TEST(UnionValue, MatchedTypeIsTheInnermostTypedef) {
  Dict dict;
  Type base(&dict, QMT_BASE_INT8);
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 1);
  AddDerived(dict.Get(), &members[0], "m", "td", base.Get());
  QmtType* matched = nullptr;
  EXPECT_EQ(QM_OK, CheckText(type.Get(), "5", &matched));
  EXPECT_EQ(base.Get(), matched);
}

TEST(UnionValue, TypedefOfAUnionRecordsTheMember) {
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 2);
  members[0].baseType = QMT_BASE_INT8;
  members[1].baseType = QMT_BASE_STRING;
  Type leaf(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), leaf.Get(), "m", "td", type.Get());
  QmtType* matched = nullptr;
  EXPECT_EQ(QM_OK, CheckText(leaf.Get(), "300", &matched));
  EXPECT_EQ(&members[1], matched);
}

TEST(UnionValue, WhatOneMemberLeavesDoesNotReachTheNext) {
  // The first member notes fraction digits, a range level and a link before it fails.
  Dict dict;
  Type decimal(&dict, QMT_BASE_DECIMAL64);
  AddFraction(decimal.Get(), 2);
  AddSegs<QmtGenericSeg>(decimal.Get(), QMT_CONS_RANGE, {{0, 100, QMT_SEG_SIGNED}});
  decimal->rangeFlags = kConcrete;
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 2);
  AddDerived(dict.Get(), &members[0], "m", "td", decimal.Get());
  members[1].baseType = QMT_BASE_INT8;
  AddSegs<QmtSeg<int8_t>>(&members[1], QMT_CONS_RANGE, {{5, 6}});
  members[1].rangeFlags = kConcrete;
  QmtType* matched = nullptr;
  EXPECT_EQ(QM_OK, CheckText(type.Get(), "5", &matched));
  EXPECT_EQ(&members[1], matched);
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckText(type.Get(), "7"));
}

TEST(UnionValue, UnionMayAlsoRestrict) {
  // Members and own restrictions are separate entries; all must accept the value.
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  AddPatterns(dict.Get(), type.Get(), {{"[0-9]", 0}});
  QmtType* members = AddUnion(type.Get(), 1);
  members[0].baseType = QMT_BASE_STRING;
  ExpectResults(type.Get(), {{"5", QM_OK}, {"55", QM_VALUE_BAD_PATTERN}});
}

namespace {

// `depth` unions of one member inside each other; the innermost member is an int8.
void NestUnions(QmtType* type, uint32_t depth) {
  for (uint32_t i = 0; i < depth; ++i) {
    type->baseType = QMT_BASE_UNION;
    type = AddUnion(type, 1);
  }
  type->baseType = QMT_BASE_INT8;
}

}  // namespace

TEST(UnionValue, MayBeNested128DeepAndNoDeeper) {
  Dict dict;
  Type atLimit(&dict, QMT_BASE_UNION);
  NestUnions(atLimit.Get(), 128);
  ExpectResults(atLimit.Get(), {{"5", QM_OK}, {"x", QM_VALUE_BAD_UNION}});
  Type beyond(&dict, QMT_BASE_UNION);
  NestUnions(beyond.Get(), 129);
  ExpectResults(beyond.Get(), {{"5", QM_VALUE_BAD_UNION}});
}

TEST(UnionValue, UnionThatContainsItselfEnds) {
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 2);
  AddDerived(dict.Get(), &members[0], "m", "self", type.Get());
  members[1].baseType = QMT_BASE_INT8;
  // The innermost union that is still looked at refuses its own first member and takes
  // the second.
  ExpectResults(type.Get(), {{"5", QM_OK}, {"x", QM_VALUE_BAD_UNION}});
}

TEST(UnionValue, LongChainsThroughAUnionThatContainsItselfEnd) {
  // Each round trip follows more than a hundred links before it meets the union again,
  // in contexts whose own count of links starts anew.
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  QmtType links[120]{};
  for (uint32_t i = 0; i < 120; ++i) {
    AddDerived(dict.Get(), &links[i], "m", "td", i == 0 ? type.Get() : &links[i - 1]);
  }
  QmtType* members = AddUnion(type.Get(), 1);
  AddDerived(dict.Get(), &members[0], "m", "td", &links[119]);
  ExpectResults(type.Get(), {{"5", QM_VALUE_BAD_UNION}});
  for (QmtType& link : links) QMT_TYPE_DestroyQmtRealTypeInner(dict.Get(), &link);
}

TEST(UnionValue, MembersThatMultiplyRunIntoTheBudget) {
  // Each union offers the next one twice: 2^64 ways, were they all tried.
  Dict dict;
  QmtType unions[64]{};
  for (uint32_t i = 0; i < 64; ++i) {
    unions[i].baseType = QMT_BASE_UNION;
    QmtType* members = AddUnion(&unions[i], 2);
    for (uint32_t k = 0; k < 2; ++k) {
      if (i == 0) {
        members[k].baseType = QMT_BASE_INT8;
      } else {
        AddDerived(dict.Get(), &members[k], "m", "td", &unions[i - 1]);
      }
    }
  }
  ExpectResults(&unions[63], {{"5", QM_OK}, {"x", QM_VALUE_BAD_UNION}});
  for (QmtType& type : unions) QMT_TYPE_DestroyQmtRealTypeInner(dict.Get(), &type);
}

TEST(UnionValue, BudgetIs65536MembersForTheWholeCheck) {
  // Two unions in one chain: 40000 members that refuse, then others. The budget is that
  // of the check, not of each union.
  Dict dict;
  const auto fill = [&](QmtType* type, uint32_t count) {
    type->baseType = QMT_BASE_UNION;
    QmtType* members = AddUnion(type, count);
    for (uint32_t i = 0; i + 1 < count; ++i) members[i].baseType = QMT_BASE_BOOLEAN;
    members[count - 1].baseType = QMT_BASE_STRING;
  };
  Type inner(&dict, QMT_BASE_UNION);
  fill(inner.Get(), 40000);
  struct Row {
    uint32_t count;
    uint32_t expected;
  };
  for (const Row& row : {Row{25536, QM_OK}, Row{25537, QM_VALUE_BAD_UNION}}) {
    Type outer(&dict, QMT_BASE_TYPEDEF);
    AddDerived(dict.Get(), outer.Get(), "m", "td", inner.Get());
    QmtType* members = AddUnion(outer.Get(), row.count);
    for (uint32_t i = 0; i + 1 < row.count; ++i) members[i].baseType = QMT_BASE_BOOLEAN;
    members[row.count - 1].baseType = QMT_BASE_STRING;
    EXPECT_EQ(row.expected, CheckText(outer.Get(), "x")) << row.count;
    EXPECT_EQ(row.expected, CheckText(outer.Get(), "x")) << "each check has its own";
  }
}

TEST(DerivedValue, At129LinksItStillWorksAt130ItFailsWith28673) {
  // The check refuses a link once more than 128 have been followed.
  LeafModule module(TypedefChain(130, "int8") +
                    "<leaf name='links-129'><type name='t128'/></leaf>"
                    "<leaf name='links-130'><type name='t129'/></leaf>");
  EXPECT_EQ(QM_OK, module.CheckText("links-129", "5"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, module.CheckText("links-129", "500"));
  EXPECT_EQ(QM_VALUE_BAD_DERIVED, module.CheckText("links-130", "5"));
}

TEST(DerivedValue, TypedefThatIsNotFoundGives28673) {
  Dict dict;
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), type.Get(), "m", "absent", nullptr);
  EXPECT_EQ(QM_VALUE_BAD_DERIVED, CheckText(type.Get(), "5")) << "no context to look in";
  LeafModule module("<leaf name='x'><type name='absent'/></leaf>");
  EXPECT_EQ(QM_VALUE_BAD_DERIVED, module.CheckText("x", "5"));
}

TEST(DerivedValue, TypedefThatIsItselfGives28673) {
  LeafModule module(
      "<typedef name='a'><type name='b'/></typedef><typedef name='b'><type name='a'/></typedef>"
      "<leaf name='x'><type name='a'/></leaf>");
  EXPECT_EQ(QM_VALUE_BAD_DERIVED, module.CheckText("x", "5"));
}

TEST(DerivedValue, TypedefOfAnotherModuleIsLookedUpAndNotKept) {
  LeafModule module("");
  module.Add("types", "", "<typedef name='small'><type name='int8'/></typedef>");
  module.Add("user", "<import module='types'><prefix value='t'/></import>",
             "<leaf name='x'><type name='t:small'/></leaf>");
  QmsNode* augment = nullptr;
  QmsNode* leaf = QM_CTX_GetTargetNode(module.ctx(), "/user:x", &augment);
  ASSERT_NE(nullptr, leaf);
  EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(leaf, 1, "5"));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, QM_NODE_ValidateValue(leaf, 1, "500"));
  const QmtConsDerived* derived = QMT_TYPE_GetTypeConsDataDerived(QM_NODE_GetRealType(leaf));
  ASSERT_NE(nullptr, derived);
  EXPECT_EQ(nullptr, derived->resolved);
}

TEST(DerivedValue, ChainIsCheckedBeforeTheOwnRestrictions) {
  // Both refuse the value; the code tells who was asked first.
  Dict dict;
  Type base(&dict, QMT_BASE_INT8);
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddDerived(dict.Get(), type.Get(), "m", "td", base.Get());
  AddPatterns(dict.Get(), type.Get(), {{"[0-9]", 0}});
  ExpectResults(type.Get(),
                {{"x", QM_VALUE_BAD_RANGE}, {"55", QM_VALUE_BAD_PATTERN}, {"5", QM_OK}});
}

// A pattern may take its time with a long value; this is what bounds it.
TEST(LoadedTypes, ALengthOfTheSameTypeOrOfOneBelowIsAskedBeforeThePattern) {
  LeafModule module(
      "<typedef name='short'><type name='string'><length value='1..3'/></type></typedef>"
      "<typedef name='xs'><type name='string'><pattern value='x*'/></type></typedef>"
      "<leaf name='same'><type name='string'><pattern value='x*'/><length value='1..3'/></type>"
      "</leaf>"
      "<leaf name='below'><type name='short'><pattern value='x*'/></type></leaf>"
      "<leaf name='above'><type name='xs'><length value='1..3'/></type></leaf>");
  EXPECT_EQ(QM_VALUE_BAD_LENGTH, module.CheckText("same", "yyyy"));
  EXPECT_EQ(QM_VALUE_BAD_LENGTH, module.CheckText("below", "yyyy"));
  EXPECT_EQ(QM_VALUE_BAD_PATTERN, module.CheckText("above", "yyyy"))
      << "the typedef is asked first";
  EXPECT_EQ(QM_VALUE_BAD_LENGTH, module.CheckText("above", "xxxx"));
}

TEST(LoadedTypes, RangesAndLengthsAsModelsWriteThem) {
  LeafModule module(
      "<typedef name='percent'><type name='int32'><range value='0..100'/></type></typedef>"
      "<typedef name='small'><type name='percent'><range value='min..10'/></type></typedef>"
      "<typedef name='word'><type name='string'><length value='2..6'/></type></typedef>"
      "<typedef name='price'><type name='decimal64'><fraction-digits value='2'/>"
      "<range value='1.5 .. 20'/></type></typedef>"
      "<leaf name='small'><type name='small'/></leaf>"
      "<leaf name='gap'><type name='uint8'><range value='1..3 | 7..max'/></type></leaf>"
      "<leaf name='top'><type name='percent'><range value='90..max'/></type></leaf>"
      "<leaf name='wide'><type name='small'><range value='-5..500'/></type></leaf>"
      "<leaf name='word'><type name='word'><length value='min..4'/></type></leaf>"
      "<leaf name='exact'><type name='word'><length value='3'/></type></leaf>"
      "<leaf name='price'><type name='price'/></leaf>");
  struct Row {
    const char* leaf;
    const char* value;
    uint32_t expected;
  };
  const Row rows[] = {
      {"small", "-1", QM_VALUE_BAD_RANGE},
      {"small", "0", QM_OK},
      {"small", "10", QM_OK},
      {"small", "11", QM_VALUE_BAD_RANGE},
      {"gap", "0", QM_VALUE_BAD_RANGE},
      {"gap", "3", QM_OK},
      {"gap", "5", QM_VALUE_BAD_RANGE},
      {"gap", "255", QM_OK},
      {"top", "89", QM_VALUE_BAD_RANGE},
      {"top", "100", QM_OK},
      {"top", "101", QM_VALUE_BAD_RANGE},
      {"wide", "-5", QM_OK},
      {"wide", "500", QM_OK},
      {"wide", "501", QM_VALUE_BAD_RANGE},
      {"word", "a", QM_VALUE_BAD_LENGTH},
      {"word", "ab", QM_OK},
      {"word", "abcd", QM_OK},
      {"word", "abcde", QM_VALUE_BAD_LENGTH},
      {"exact", "abc", QM_OK},
      {"exact", "ab", QM_VALUE_BAD_LENGTH},
      {"price", "1.49", QM_VALUE_BAD_RANGE},
      {"price", "1.5", QM_OK},
      {"price", "20", QM_OK},
      {"price", "20.01", QM_VALUE_BAD_RANGE},
      {"price", "2.505", QM_VALUE_BAD_RANGE},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.expected, module.CheckText(row.leaf, row.value)) << row.leaf << " " << row.value;
  }
}
