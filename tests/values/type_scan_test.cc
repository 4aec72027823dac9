// SPDX-License-Identifier: BSD-3-Clause
// The scans that tell clients about a type.
#include <gtest/gtest.h>
#include <qmodel/qmodel.h>

#include <string>

#include "tests/support/leaf_module.h"
#include "tests/support/type_builder.h"
#include "types/type.h"

using namespace type_builder;

namespace {

// What the callbacks saw, one line for each call; the call whose number is `stopAt`
// returns 99.
struct Seen {
  std::string text;
  uint32_t calls = 0;
  uint32_t stopAt = 0;
  uint32_t Next() {
    ++calls;
    return calls == stopAt ? 99 : 0;
  }
};

std::string Quote(const char* text) {
  return text == nullptr ? "NULL" : text;
}

uint32_t NameValueCb(const char* name, int64_t value, const char* description, void* arg) {
  auto* seen = static_cast<Seen*>(arg);
  seen->text += Quote(name) + " " + std::to_string(value) + " " + Quote(description) + "\n";
  return seen->Next();
}

uint32_t StartEndCb(uint64_t start, uint64_t end, uint32_t flags, void* arg) {
  auto* seen = static_cast<Seen*>(arg);
  seen->text += std::to_string(static_cast<int64_t>(start)) + ".." +
                std::to_string(static_cast<int64_t>(end)) + " " + std::to_string(flags) + "\n";
  return seen->Next();
}

uint32_t TypeCb(const char* module, const char* name, QmtType* type, void* arg) {
  auto* seen = static_cast<Seen*>(arg);
  seen->text += Quote(module) + ":" + Quote(name) + " " +
                std::to_string(QM_TYPE_GetBuiltInBaseType(type)) + "\n";
  return seen->Next();
}

uint32_t BaseCb(const char* module, const char* name, void* arg) {
  auto* seen = static_cast<Seen*>(arg);
  seen->text += Quote(module) + ":" + Quote(name) + "\n";
  return seen->Next();
}

uint32_t PatternCb(const char* pattern, uint32_t invert, void* arg) {
  auto* seen = static_cast<Seen*>(arg);
  seen->text += Quote(pattern) + " " + std::to_string(invert) + "\n";
  return seen->Next();
}

}  // namespace

TEST(ScanNameValuePair, BitsAreZeroExtendedAndEnumsSignExtended) {
  Dict dict;
  Type type(&dict, QMT_BASE_ENUMERATION);
  AddBits(dict.Get(), type.Get(), {{"up", 0}, {"top", 4294967295}});
  AddEnums(dict.Get(), type.Get(), {{"low", -5, "Low value"}, {"high", 2147483647}});
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_ScanNameValuePair(type.Get(), NameValueCb, &seen));
  EXPECT_EQ("up 0 NULL\ntop 4294967295 NULL\nlow -5 Low value\nhigh 2147483647 NULL\n", seen.text);
}

TEST(ScanNameValuePair, FirstResultThatIsNotZeroEndsTheScan) {
  Dict dict;
  Type type(&dict, QMT_BASE_ENUMERATION);
  AddBits(dict.Get(), type.Get(), {{"up", 0}, {"top", 1}});
  AddEnums(dict.Get(), type.Get(), {{"low", 0}, {"high", 1}});
  for (uint32_t stop : {1u, 2u, 3u, 4u}) {
    Seen seen;
    seen.stopAt = stop;
    EXPECT_EQ(99u, QM_TYPE_ScanNameValuePair(type.Get(), NameValueCb, &seen));
    EXPECT_EQ(stop, seen.calls);
  }
}

TEST(ScanStartEndPair, SegmentsAreWidenedWithTheirSign) {
  struct Row {
    uint32_t base;
    void (*add)(QmtType* type);
    const char* expected;
  };
  const Row rows[] = {
      {QMT_BASE_INT8,
       [](QmtType* t) {
         AddSegs<QmtSeg<int8_t>>(t, QMT_CONS_RANGE, {{-128, -1}, {1, 127}});
       },
       "-128..-1 1\n1..127 1\n"},
      {QMT_BASE_INT16,
       [](QmtType* t) {
         AddSegs<QmtSeg<int16_t>>(t, QMT_CONS_RANGE, {{-300, 300}});
       },
       "-300..300 1\n"},
      {QMT_BASE_INT32,
       [](QmtType* t) {
         AddSegs<QmtSeg<int32_t>>(t, QMT_CONS_RANGE, {{-70000, 70000}});
       },
       "-70000..70000 1\n"},
      {QMT_BASE_UINT8,
       [](QmtType* t) {
         AddSegs<QmtSeg<uint8_t>>(t, QMT_CONS_RANGE, {{1, 255}});
       },
       "1..255 2\n"},
      {QMT_BASE_UINT16,
       [](QmtType* t) {
         AddSegs<QmtSeg<uint16_t>>(t, QMT_CONS_RANGE, {{1, 65535}});
       },
       "1..65535 2\n"},
      {QMT_BASE_UINT32,
       [](QmtType* t) {
         AddSegs<QmtSeg<uint32_t>>(t, QMT_CONS_RANGE, {{1, 4294967295}});
       },
       "1..4294967295 2\n"},
      {QMT_BASE_UINT64,
       [](QmtType* t) {
         AddSegs<QmtGenericSeg>(t, QMT_CONS_RANGE, {{1, 9, 2}});
       },
       "1..9 2\n"},
      {QMT_BASE_TYPEDEF,
       [](QmtType* t) {
         AddSegs<QmtGenericSeg>(t, QMT_CONS_RANGE, {{0, 9, 0x2 | 0x4}});
       },
       "0..9 6\n"},
      {QMT_BASE_STRING,
       [](QmtType* t) {
         AddSegs<QmtSeg<uint32_t>>(t, QMT_CONS_LENGTH, {{1, 4294967295}});
       },
       "1..4294967295 2\n"},
      {QMT_BASE_TYPEDEF,
       [](QmtType* t) {
         AddSegs<QmtGenericSeg>(t, QMT_CONS_LENGTH, {{1, 0, 0x2 | 0x20}});
       },
       "1..0 34\n"},
  };
  for (const Row& row : rows) {
    Dict dict;
    Type type(&dict, row.base);
    row.add(type.Get());
    Seen seen;
    EXPECT_EQ(QM_OK, QM_TYPE_ScanStartEndPair(type.Get(), StartEndCb, &seen));
    EXPECT_EQ(row.expected, seen.text);
  }
}

TEST(ScanStartEndPair, LengthComesBeforeRangeAndTheScanCanBeEnded) {
  Dict dict;
  Type type(&dict, QMT_BASE_UINT8);
  AddSegs<QmtSeg<uint32_t>>(type.Get(), QMT_CONS_LENGTH, {{1, 2}});
  AddSegs<QmtSeg<uint8_t>>(type.Get(), QMT_CONS_RANGE, {{3, 4}});
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_ScanStartEndPair(type.Get(), StartEndCb, &seen));
  EXPECT_EQ("1..2 2\n3..4 2\n", seen.text);
  Seen ended;
  ended.stopAt = 1;
  EXPECT_EQ(99u, QM_TYPE_ScanStartEndPair(type.Get(), StartEndCb, &ended));
  EXPECT_EQ(1u, ended.calls);
}

TEST(ScanStartEndPair, SegmentsThatDoNotSuitTheTypeGive22) {
  Dict dict;
  Type type(&dict, QMT_BASE_UINT8);
  AddSegs<QmtSeg<uint32_t>>(type.Get(), QMT_CONS_RANGE, {{1, 2}});
  Seen seen;
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanStartEndPair(type.Get(), StartEndCb, &seen));
  EXPECT_EQ(0u, seen.calls);
}

TEST(ScanUnionSubType, MembersComeInOrderWithoutNames) {
  Dict dict;
  Type type(&dict, QMT_BASE_UNION);
  QmtType* members = AddUnion(type.Get(), 2);
  members[0].baseType = QMT_BASE_INT8;
  members[1].baseType = QMT_BASE_STRING;
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_ScanUnionSubType(type.Get(), TypeCb, &seen));
  EXPECT_EQ("NULL:NULL 9\nNULL:NULL 14\n", seen.text);
  Seen ended;
  ended.stopAt = 1;
  EXPECT_EQ(99u, QM_TYPE_ScanUnionSubType(type.Get(), TypeCb, &ended));
  EXPECT_EQ(1u, ended.calls);
}

TEST(ScanIdentRefBase, BasesComeInOrder) {
  Dict dict;
  Type type(&dict, QMT_BASE_IDENTITYREF);
  AddBases(dict.Get(), type.Get(), {{"m", "a"}, {"n", "b"}});
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_ScanIdentRefBase(type.Get(), BaseCb, &seen));
  EXPECT_EQ("m:a\nn:b\n", seen.text);
  Seen ended;
  ended.stopAt = 2;
  EXPECT_EQ(99u, QM_TYPE_ScanIdentRefBase(type.Get(), BaseCb, &ended));
}

TEST(ScanPatternInvertMatch, InvertMatchIsOneOrZero) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddPatterns(dict.Get(), type.Get(), {{"a+", 0}, {"b+", 7}});
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_ScanPatternInvertMatch(type.Get(), PatternCb, &seen));
  EXPECT_EQ("a+ 0\nb+ 1\n", seen.text);
  Seen ended;
  ended.stopAt = 1;
  EXPECT_EQ(99u, QM_TYPE_ScanPatternInvertMatch(type.Get(), PatternCb, &ended));
  EXPECT_EQ(1u, ended.calls);
}

TEST(Scans, RefuseNullAndAcceptTypesWithoutItems) {
  QmtType type{};
  type.baseType = QMT_BASE_STRING;
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanNameValuePair(nullptr, NameValueCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanNameValuePair(&type, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanStartEndPair(nullptr, StartEndCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanStartEndPair(&type, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanUnionSubType(nullptr, TypeCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanUnionSubType(&type, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanIdentRefBase(nullptr, BaseCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanIdentRefBase(&type, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanPatternInvertMatch(nullptr, PatternCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_ScanPatternInvertMatch(&type, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(nullptr, nullptr, TypeCb, nullptr));
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(&type, nullptr, nullptr, nullptr));
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_ScanNameValuePair(&type, NameValueCb, &seen));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanStartEndPair(&type, StartEndCb, &seen));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanUnionSubType(&type, TypeCb, &seen));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanIdentRefBase(&type, BaseCb, &seen));
  EXPECT_EQ(QM_OK, QM_TYPE_ScanPatternInvertMatch(&type, PatternCb, &seen));
  EXPECT_EQ(0u, seen.calls);
}

TEST(IterDerivedName, BuiltInTypeIsGivenOnceWithoutNames) {
  QmtType type{};
  type.baseType = QMT_BASE_INT8;
  Seen seen;
  EXPECT_EQ(QM_OK, QM_TYPE_IterRealTypeDerivedName(&type, nullptr, TypeCb, &seen));
  EXPECT_EQ("NULL:NULL 9\n", seen.text);
  Seen ended;
  ended.stopAt = 1;
  EXPECT_EQ(99u, QM_TYPE_IterRealTypeDerivedName(&type, nullptr, TypeCb, &ended));
}

TEST(IterDerivedName, ChainIsWalkedToTheBuiltInType) {
  LeafModule module(
      "<typedef name='p'><type name='int8'/></typedef>"
      "<typedef name='q'><type name='p'/></typedef>"
      "<leaf name='x'><type name='q'/></leaf>");
  Seen seen;
  QmtType* type = module.TypeOf("x");
  ASSERT_NE(nullptr, type);
  EXPECT_EQ(QM_OK, QM_TYPE_IterRealTypeDerivedName(type, module.ctx(), TypeCb, &seen));
  EXPECT_EQ("m:q 0\nm:p 9\n", seen.text);
  Seen ended;
  ended.stopAt = 1;
  EXPECT_EQ(99u, QM_TYPE_IterRealTypeDerivedName(type, module.ctx(), TypeCb, &ended));
  EXPECT_EQ(1u, ended.calls);
}

TEST(IterDerivedName, TypedefThatIsNotLoadedEndsTheWalkWithSuccess) {
  LeafModule module("<leaf name='x'><type name='absent'/></leaf>");
  Seen seen;
  QmtType* type = module.TypeOf("x");
  ASSERT_NE(nullptr, type);
  EXPECT_EQ(QM_OK, QM_TYPE_IterRealTypeDerivedName(type, module.ctx(), TypeCb, &seen));
  EXPECT_EQ("m:absent 20\n", seen.text) << "the names, with no type";
  Seen noCtx;
  EXPECT_EQ(QM_OK, QM_TYPE_IterRealTypeDerivedName(type, nullptr, TypeCb, &noCtx));
  EXPECT_EQ("m:absent 20\n", noCtx.text);
}

TEST(IterDerivedName, TypedefWithoutADerivedEntryGives22) {
  QmtType type{};
  Seen seen;
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(&type, nullptr, TypeCb, &seen));
  EXPECT_EQ(0u, seen.calls);
}

TEST(IterDerivedName, ChainMayHave128LinksButNot129) {
  LeafModule module(TypedefChain(129, "int8") +
                    "<leaf name='at-limit'><type name='t127'/></leaf>"
                    "<leaf name='beyond'><type name='t128'/></leaf>");
  Seen atLimit;
  EXPECT_EQ(QM_OK, QM_TYPE_IterRealTypeDerivedName(module.TypeOf("at-limit"), module.ctx(), TypeCb,
                                                   &atLimit));
  EXPECT_EQ(128u, atLimit.calls);
  Seen beyond;
  EXPECT_EQ(QM_INVALID, QM_TYPE_IterRealTypeDerivedName(module.TypeOf("beyond"), module.ctx(),
                                                        TypeCb, &beyond));
  EXPECT_EQ(128u, beyond.calls);
}
