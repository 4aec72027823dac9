// SPDX-License-Identifier: BSD-3-Clause
// Integers, decimal64, ranges and lengths.
#include "values/range_check.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <clocale>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/type_builder.h"
#include "types/type.h"
#include "values/decimal64.h"
#include "values/segment.h"
#include "values/type_check.h"

using namespace type_builder;

namespace {

constexpr uint16_t kConcrete = QMT_RANGE_STATED | QMT_RANGE_CONCRETE;
constexpr uint16_t kMinMax = QMT_RANGE_STATED | QMT_RANGE_MIN_MAX;
constexpr uint32_t kFromMin = QMT_SEG_START_MIN;
constexpr uint32_t kToMax = QMT_SEG_END_MAX;

QmtGenericSeg Signed(int64_t start, int64_t end) {
  return {static_cast<uint64_t>(start), static_cast<uint64_t>(end), QMT_SEG_SIGNED};
}

QmtGenericSeg Unsigned(uint64_t start, uint64_t end) {
  return {start, end, QMT_SEG_UNSIGNED};
}

struct ValueRow {
  const char* value;
  uint32_t expected;
};

void ExpectResults(QmtType* type, std::initializer_list<ValueRow> rows) {
  for (const ValueRow& row : rows) {
    EXPECT_EQ(row.expected, CheckText(type, row.value)) << '"' << row.value << '"';
  }
}

}  // namespace

TEST(IntegerValue, LimitsOfEachType) {
  struct Row {
    uint32_t base;
    const char* min;
    const char* max;
    const char* below;
    const char* above;
  };
  const Row rows[] = {
      {QMT_BASE_INT8, "-128", "127", "-129", "128"},
      {QMT_BASE_INT16, "-32768", "32767", "-32769", "32768"},
      {QMT_BASE_INT32, "-2147483648", "2147483647", "-2147483649", "2147483648"},
      {QMT_BASE_INT64, "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
       "9223372036854775808"},
      {QMT_BASE_UINT8, "0", "255", "-1", "256"},
      {QMT_BASE_UINT16, "0", "65535", "-1", "65536"},
      {QMT_BASE_UINT32, "0", "4294967295", "-1", "4294967296"},
      {QMT_BASE_UINT64, "0", "18446744073709551615", "-1", "18446744073709551616"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.base);
    QmtType type{};
    type.baseType = row.base;
    ExpectResults(&type, {{row.min, QM_OK},
                          {row.max, QM_OK},
                          {row.below, QM_VALUE_BAD_RANGE},
                          {row.above, QM_VALUE_BAD_RANGE}});
  }
}

TEST(IntegerValue, FormsOfTheText) {
  QmtType type{};
  type.baseType = QMT_BASE_INT8;
  ExpectResults(&type, {{" 5", QM_OK},
                        {"\t\n5", QM_OK},
                        {"5 \t\n", QM_OK},
                        {"+5", QM_OK},
                        {"-0", QM_OK},
                        {"007", QM_OK},
                        {"000000000000000005", QM_OK},
                        {" -000000000000000000128 ", QM_OK},
                        {"-000000000000000000129", QM_VALUE_BAD_RANGE},
                        {"18446744073709551621", QM_VALUE_BAD_RANGE},  // 5, were it cut off
                        {"+-5", QM_VALUE_BAD_RANGE},
                        {"\r5", QM_OK},  // the C library's blanks in front
                        {"5x", QM_VALUE_BAD_RANGE},
                        {"5 x", QM_VALUE_BAD_RANGE},
                        {"5\r", QM_VALUE_BAD_RANGE},
                        {"0x10", QM_VALUE_BAD_RANGE},
                        {"5.0", QM_VALUE_BAD_RANGE},
                        {"", QM_VALUE_BAD_RANGE},
                        {" ", QM_VALUE_BAD_RANGE},
                        {"-", QM_VALUE_BAD_RANGE},
                        {"- 5", QM_VALUE_BAD_RANGE}});
  EXPECT_EQ(QM_VALUE_BAD_RANGE, CheckText(&type, nullptr)) << "no value";
  type.baseType = QMT_BASE_UINT8;
  ExpectResults(&type, {{"+5", QM_OK}, {"-0", QM_VALUE_BAD_RANGE}, {" -1", QM_VALUE_BAD_RANGE}});
}

TEST(ParseInteger, SignFlagComesFromTheType) {
  QmtGenericSeg value{};
  ASSERT_EQ(QM_OK, QMT_CONS_ParseInputValStrToBasedInteger("5", QMT_BASE_INT16, &value));
  EXPECT_EQ(5u, uint64_t{value.start});
  EXPECT_EQ(QMT_SEG_SIGNED, uint32_t{value.segFlags});
  ASSERT_EQ(QM_OK, QMT_CONS_ParseInputValStrToBasedInteger("-5", QMT_BASE_INT8, &value));
  EXPECT_EQ(-5, static_cast<int64_t>(value.start)) << "limits are another matter";
  ASSERT_EQ(QM_OK, QMT_CONS_ParseInputValStrToBasedInteger("300", QMT_BASE_UINT8, &value));
  EXPECT_EQ(QMT_SEG_UNSIGNED, uint32_t{value.segFlags});
}

TEST(ParseInteger, OtherTypesGive22) {
  QmtGenericSeg value{};
  for (uint32_t base = 0; base <= 20; ++base) {
    const bool integer = (base >= QMT_BASE_INT8 && base <= QMT_BASE_INT64) ||
                         (base >= QMT_BASE_UINT8 && base <= QMT_BASE_UINT64);
    EXPECT_EQ(integer ? QM_OK : QM_INVALID,
              QMT_CONS_ParseInputValStrToBasedInteger("5", base, &value))
        << base;
  }
  EXPECT_EQ(QM_INVALID, QMT_CONS_ParseInputValStrToBasedInteger(nullptr, QMT_BASE_INT8, &value));
  EXPECT_EQ(QM_INVALID, QMT_CONS_ParseInputValStrToBasedInteger("5", QMT_BASE_INT8, nullptr));
}

TEST(Decimal64Literal, IsScaledByTheFractionDigits) {
  struct Row {
    const char* text;
    uint32_t digits;
    int64_t expected;
  };
  const Row rows[] = {
      {"1.5", 2, 150},
      {"-0.01", 2, -1},
      {"+2", 2, 200},
      {"0002.50", 2, 250},
      {" \t\n3 \t\n", 1, 30},
      {"3.", 1, 30},
      {"12345678901234567", 2, 1234567890123456700},
      {"92233720368547758.07", 2, INT64_MAX},
      {"-92233720368547758.08", 2, INT64_MIN},
      {"9.223372036854775807", 18, INT64_MAX},
      {"00000000000000000000000000000000000000000000000001", 1, 10},
      {"", 2, 0},
      {"-", 2, 0},
      {".", 2, 0},
      {".5", 2, 50},
  };
  for (const Row& row : rows) {
    int64_t out = 77;
    EXPECT_EQ(QM_OK, QMT_CONS_ConvertValStrToDecimal64PowerInteger(row.text, row.digits, &out))
        << row.text;
    EXPECT_EQ(row.expected, out) << row.text;
  }
}

TEST(Decimal64Literal, RefusedTexts) {
  struct Row {
    const char* text;
    uint32_t digits;
  };
  const Row rows[] = {
      {"1.505", 2},                  // a longer fraction is not rounded
      {"1.500", 2},                  // not even when it is zeros
      {"123456789012345678", 2},     // 18 integer digits, at most 17
      {"12", 18},                    // one integer digit with 18 fraction digits
      {"92233720368547758.08", 2},   // one above the largest
      {"-92233720368547758.09", 2},  // one below the smallest
      {"1,5", 2},                    //
      {"1.5x", 2},                   //
      {"1.5.", 2},                   //
      {"1 .5", 2},                   //
      {"--1", 2},                    //
      {"+-1", 2},                    //
      {"- 1", 2},                    //
      {"1e2", 2},                    //
      {"\r1", 2},                    // carriage return is no blank
      {"1\r", 2},                    //
      {"99999999999999999999999999999999999999", 2},
      {"0.99999999999999999999999999999999999999", 2},
      {"1", 19},  // no type has 19 fraction digits
  };
  for (const Row& row : rows) {
    int64_t out = 77;
    EXPECT_EQ(QM_INVALID, QMT_CONS_ConvertValStrToDecimal64PowerInteger(row.text, row.digits, &out))
        << row.text;
    EXPECT_EQ(77, out) << row.text;
  }
  int64_t out = 0;
  EXPECT_EQ(QM_INVALID, QMT_CONS_ConvertValStrToDecimal64PowerInteger(nullptr, 2, &out));
  EXPECT_EQ(QM_INVALID, QMT_CONS_ConvertValStrToDecimal64PowerInteger("1", 2, nullptr));
}

TEST(Decimal64Value, NeedsFractionDigits) {
  Dict dict;
  Type bare(&dict, QMT_BASE_DECIMAL64);
  ExpectResults(bare.Get(), {{"1", QM_VALUE_BAD_RANGE}});
  Type type(&dict, QMT_BASE_DECIMAL64);
  AddFraction(type.Get(), 2);
  ExpectResults(type.Get(),
                {{"1.5", QM_OK}, {"-92233720368547758.08", QM_OK}, {"1.505", QM_VALUE_BAD_RANGE}});
  EXPECT_EQ(QM_VALUE_BAD_RANGE, CheckText(type.Get(), nullptr));
}

TEST(Decimal64Value, RangeIsScaled) {
  Dict dict;
  Type type(&dict, QMT_BASE_DECIMAL64);
  AddFraction(type.Get(), 2);
  AddSegs(type.Get(), QMT_CONS_RANGE, {Signed(-150, 150)});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"1.5", QM_OK},
                             {"-1.50", QM_OK},
                             {"1.51", QM_VALUE_BAD_RANGE},
                             {"-1.51", QM_VALUE_BAD_RANGE}});
}

TEST(Decimal64Value, DecimalPointDoesNotDependOnTheLocale) {
  Dict dict;
  Type type(&dict, QMT_BASE_DECIMAL64);
  AddFraction(type.Get(), 2);
  for (const char* locale : {"C", "de_DE.UTF-8", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_ALL, locale) == nullptr) continue;
    ExpectResults(type.Get(), {{"1.5", QM_OK}, {"1,5", QM_VALUE_BAD_RANGE}});
  }
  std::setlocale(LC_ALL, "C");
}

TEST(SegmentTables, RowsByBaseType) {
  struct Row {
    uint32_t base;
    uint32_t size;
  };
  const Row rows[] = {{0, 20}, {1, 0},  {2, 0},  {3, 0},  {4, 20},  {5, 0},   {6, 0},
                      {7, 0},  {8, 0},  {9, 2},  {10, 4}, {11, 8},  {12, 20}, {13, 0},
                      {14, 0}, {15, 2}, {16, 4}, {17, 8}, {18, 20}, {19, 0},  {20, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.base);
    EXPECT_EQ(row.size != 0, QMT_CONS_GetValueStrToRangeCheckFunc(row.base) != nullptr);
    EXPECT_EQ(row.size != 0, QMT_CONS_GetUniformRangeConvertFunc(row.base) != nullptr);
    const QmtSegLayout* layout = RangeLayout(row.base);
    EXPECT_EQ(row.size, layout == nullptr ? 0u : layout->size);
  }
  EXPECT_EQ(QMT_CONS_CheckValueAgainstRangeSegIntUnknown, QMT_CONS_GetValueStrToRangeCheckFunc(0));
  EXPECT_EQ(QMT_CONS_CheckValueAgainstRangeSegInt64Signed,
            QMT_CONS_GetValueStrToRangeCheckFunc(QMT_BASE_DECIMAL64));
  EXPECT_EQ(QMT_CONS_CheckValueAgainstRangeSegInt64Unsigned,
            QMT_CONS_GetValueStrToRangeCheckFunc(QMT_BASE_UINT64));
  EXPECT_EQ(QMT_CONS_ConvertSegInt16UnsignedToSegInt64,
            QMT_CONS_GetUniformRangeConvertFunc(QMT_BASE_UINT16));
  EXPECT_EQ(8, LengthLayout(8)->size);
  EXPECT_EQ(QMT_CONS_CheckValueAgainstRangeSegInt32Unsigned, LengthLayout(8)->check);
  EXPECT_EQ(QMT_CONS_CheckValueAgainstRangeSegIntUnknown, LengthLayout(20)->check);
  EXPECT_EQ(nullptr, LengthLayout(2));
}

namespace {

template <typename Int>
void ExpectSegmentCheck(QmtSegCheckFunc check, Int start, Int end) {
  const QmtSeg<Int> seg = {start, end};
  const auto at = [&](Int value) {
    const QmtGenericSeg wide = {static_cast<uint64_t>(int64_t{value}), 0, 0};
    return check(&wide, &seg, nullptr);
  };
  EXPECT_EQ(QM_OK, at(start));
  EXPECT_EQ(QM_OK, at(end));
  EXPECT_EQ(QM_BELOW_SEGMENT, at(static_cast<Int>(start - 1)));
  EXPECT_EQ(QM_INVALID, at(static_cast<Int>(end + 1)));
}

}  // namespace

TEST(SegmentCheck, BelowInsideAndAboveForEachWidth) {
  ExpectSegmentCheck<int8_t>(QMT_CONS_CheckValueAgainstRangeSegInt8Signed, -100, 100);
  ExpectSegmentCheck<int16_t>(QMT_CONS_CheckValueAgainstRangeSegInt16Signed, -30000, 30000);
  ExpectSegmentCheck<int32_t>(QMT_CONS_CheckValueAgainstRangeSegInt32Signed, -2000000000,
                              2000000000);
  ExpectSegmentCheck<uint8_t>(QMT_CONS_CheckValueAgainstRangeSegInt8Unsigned, 3, 200);
  ExpectSegmentCheck<uint16_t>(QMT_CONS_CheckValueAgainstRangeSegInt16Unsigned, 3, 60000);
  ExpectSegmentCheck<uint32_t>(QMT_CONS_CheckValueAgainstRangeSegInt32Unsigned, 3, 4000000000);
}

TEST(SegmentCheck, SixtyFourBitsAreReadByTheSignOfTheType) {
  const QmtGenericSeg minusOne = Signed(-1, 0);
  const QmtGenericSeg seg = {0, UINT64_MAX, 0};
  EXPECT_EQ(QM_OK, QMT_CONS_CheckValueAgainstRangeSegInt64Unsigned(&minusOne, &seg, nullptr));
  const QmtGenericSeg negative = Signed(-5, 5);
  EXPECT_EQ(QM_OK, QMT_CONS_CheckValueAgainstRangeSegInt64Signed(&minusOne, &negative, nullptr));
  const QmtGenericSeg low = Signed(-6, 0);
  EXPECT_EQ(QM_BELOW_SEGMENT,
            QMT_CONS_CheckValueAgainstRangeSegInt64Signed(&low, &negative, nullptr));
  const QmtGenericSeg high = Signed(6, 0);
  EXPECT_EQ(QM_INVALID, QMT_CONS_CheckValueAgainstRangeSegInt64Signed(&high, &negative, nullptr));
}

TEST(SegmentCheck, AValueWiderThanTheSegmentLiesOutsideIt) {
  const QmtSeg<uint8_t> seg = {0, 255};
  const QmtGenericSeg value = Unsigned(256, 0);
  EXPECT_EQ(QM_INVALID, QMT_CONS_CheckValueAgainstRangeSegInt8Unsigned(&value, &seg, nullptr));
}

TEST(SegmentCheck, UnknownComparesByTheFlagsOfTheSegment) {
  const QmtCheckCtx checkCtx{};
  const QmtGenericSeg minusOne = Signed(-1, 0);
  const QmtGenericSeg byUnsigned = Unsigned(0, 10);
  EXPECT_EQ(QM_INVALID,
            QMT_CONS_CheckValueAgainstRangeSegIntUnknown(&minusOne, &byUnsigned, &checkCtx))
      << "read without a sign it is very large";
  const QmtGenericSeg bySigned = Signed(0, 10);
  EXPECT_EQ(QM_BELOW_SEGMENT,
            QMT_CONS_CheckValueAgainstRangeSegIntUnknown(&minusOne, &bySigned, &checkCtx));
  const QmtGenericSeg unusable = {0, 10, 0};
  EXPECT_EQ(QM_INVALID,
            QMT_CONS_CheckValueAgainstRangeSegIntUnknown(&minusOne, &unusable, &checkCtx));
}

TEST(SegmentCheck, UnknownTakesMinAndMaxFromTheLimits) {
  QmtCheckCtx checkCtx{};
  checkCtx.parentLimits = Signed(-20, 20);
  struct Row {
    uint64_t start, end;
    uint32_t flags;
    int64_t value;
    uint32_t expected;
  };
  const Row rows[] = {
      {0, 10, QMT_SEG_UNSIGNED | QMT_SEG_START_MIN, -20, QM_OK},
      {0, 10, QMT_SEG_UNSIGNED | QMT_SEG_START_MIN, -21, QM_BELOW_SEGMENT},
      {0, 10, QMT_SEG_UNSIGNED | QMT_SEG_START_MIN, 11, QM_INVALID},
      {5, 0, QMT_SEG_UNSIGNED | QMT_SEG_END_MAX, 20, QM_OK},
      {5, 0, QMT_SEG_UNSIGNED | QMT_SEG_END_MAX, 21, QM_INVALID},
      {0, 0, QMT_SEG_START_MIN | QMT_SEG_END_MAX, -20, QM_OK},
      {0, 0, QMT_SEG_START_MIN | QMT_SEG_END_MIN, -20, QM_OK},
      {0, 0, QMT_SEG_START_MIN | QMT_SEG_END_MIN, -19, QM_INVALID},
      {0, 0, QMT_SEG_START_MAX | QMT_SEG_END_MAX, 20, QM_OK},
      {0, 0, QMT_SEG_START_MAX | QMT_SEG_END_MAX, 19, QM_BELOW_SEGMENT},
  };
  for (const Row& row : rows) {
    const QmtGenericSeg seg = {row.start, row.end, row.flags};
    const QmtGenericSeg value = Signed(row.value, 0);
    EXPECT_EQ(row.expected, QMT_CONS_CheckValueAgainstRangeSegIntUnknown(&value, &seg, &checkCtx))
        << row.flags << " at " << row.value;
  }
}

TEST(SegmentCheck, MinToMaxWithoutAnyLimitsIsUnusable) {
  const QmtCheckCtx checkCtx{};
  const QmtGenericSeg seg = {0, 0, kFromMin | kToMax};
  const QmtGenericSeg value = Signed(0, 0);
  EXPECT_EQ(QM_INVALID, QMT_CONS_CheckValueAgainstRangeSegIntUnknown(&value, &seg, &checkCtx));
}

TEST(RangeValue, GapBetweenSegmentsIsRefused) {
  Dict dict;
  Type type(&dict, QMT_BASE_INT8);
  AddSegs<QmtSeg<int8_t>>(type.Get(), QMT_CONS_RANGE, {{1, 3}, {7, 9}});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"0", QM_VALUE_BAD_RANGE},
                             {"1", QM_OK},
                             {"3", QM_OK},
                             {"5", QM_VALUE_BAD_RANGE},
                             {"8", QM_OK},
                             {"10", QM_VALUE_BAD_RANGE},
                             {"x", QM_VALUE_BAD_RANGE}});
}

TEST(RangeValue, ValueBelowASegmentEndsTheSearch) {
  // Segments out of order are the model's fault; the search relies on their order.
  Dict dict;
  Type type(&dict, QMT_BASE_UINT16);
  AddSegs<QmtSeg<uint16_t>>(type.Get(), QMT_CONS_RANGE, {{700, 900}, {1, 3}});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"2", QM_VALUE_BAD_RANGE}, {"800", QM_OK}});
}

TEST(RangeValue, LargestUnsignedNumbers) {
  Dict dict;
  Type type(&dict, QMT_BASE_UINT64);
  AddSegs(type.Get(), QMT_CONS_RANGE, {Unsigned(10, UINT64_MAX - 1)});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"9", QM_VALUE_BAD_RANGE},
                             {"10", QM_OK},
                             {"9223372036854775808", QM_OK},
                             {"18446744073709551614", QM_OK},
                             {"18446744073709551615", QM_VALUE_BAD_RANGE}});
}

TEST(RangeValue, SegmentsOfAnotherSizeAreRefused) {
  Dict dict;
  Type type(&dict, QMT_BASE_INT32);
  AddSegs<QmtSeg<int8_t>>(type.Get(), QMT_CONS_RANGE, {{1, 3}});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"2", QM_VALUE_BAD_RANGE}});
}

TEST(RangeValue, RangeOnATextTypeRefusesEveryValue) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddSegs(type.Get(), QMT_CONS_RANGE, {Unsigned(1, 3)});
  ExpectResults(type.Get(), {{"2", QM_VALUE_BAD_RANGE}});
}

TEST(RangeValue, OutsideAnyTypeTheValueCannotBeRead) {
  // A context without the bottom of a chain: its base type is still 0.
  Dict dict;
  Type type(&dict, QMT_BASE_TYPEDEF);
  AddSegs(type.Get(), QMT_CONS_RANGE, {Unsigned(1, 3)});
  ExpectResults(type.Get(), {{"2", QM_VALUE_BAD_RANGE}});
  EXPECT_EQ(QM_VALUE_BAD_RANGE, CheckText(type.Get(), nullptr));
}

namespace {

// leaf type -> typedef q -> typedef p, which is a built-in type with a range.
struct Chain {
  Chain(Dict* dict, uint32_t bottom)
      : p(dict, bottom), q(dict, QMT_BASE_TYPEDEF), leaf(dict, QMT_BASE_TYPEDEF) {
    AddDerived(dict->Get(), q.Get(), "m", "p", p.Get());
    AddDerived(dict->Get(), leaf.Get(), "m", "q", q.Get());
  }
  Type p;
  Type q;
  Type leaf;
};

}  // namespace

TEST(DerivedRange, MinIsTheLimitOfTheBaseType) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_INT32);
  AddSegs<QmtSeg<int32_t>>(chain.p.Get(), QMT_CONS_RANGE, {{0, 100}});
  chain.p->rangeFlags = kConcrete;
  AddSegs<QmtGenericSeg>(chain.leaf.Get(), QMT_CONS_RANGE, {{0, 10, QMT_SEG_UNSIGNED | kFromMin}});
  chain.leaf->rangeFlags = kMinMax;
  ExpectResults(
      chain.leaf.Get(),
      {{"-1", QM_VALUE_BAD_RANGE}, {"0", QM_OK}, {"10", QM_OK}, {"11", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, MaxWithoutARangeBelowIsTheLimitOfTheBuiltInType) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_INT8);
  AddSegs<QmtGenericSeg>(chain.leaf.Get(), QMT_CONS_RANGE, {{100, 0, QMT_SEG_UNSIGNED | kToMax}});
  chain.leaf->rangeFlags = kMinMax;
  ExpectResults(
      chain.leaf.Get(),
      {{"99", QM_VALUE_BAD_RANGE}, {"100", QM_OK}, {"127", QM_OK}, {"128", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, LimitsNarrowStepByStep) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_INT32);
  AddSegs<QmtSeg<int32_t>>(chain.p.Get(), QMT_CONS_RANGE, {{-50, -10}, {10, 100}});
  chain.p->rangeFlags = kConcrete;
  AddSegs<QmtGenericSeg>(chain.q.Get(), QMT_CONS_RANGE, {{0, 40, QMT_SEG_UNSIGNED | kFromMin}});
  chain.q->rangeFlags = kMinMax;
  AddSegs<QmtGenericSeg>(chain.leaf.Get(), QMT_CONS_RANGE, {{0, 0, kFromMin | kToMax}});
  chain.leaf->rangeFlags = kMinMax;
  ExpectResults(chain.leaf.Get(), {{"-51", QM_VALUE_BAD_RANGE},
                                   {"-50", QM_OK},
                                   {"-10", QM_OK},
                                   {"0", QM_VALUE_BAD_RANGE},
                                   {"40", QM_OK},
                                   {"41", QM_VALUE_BAD_RANGE},
                                   {"100", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, OutermostConcreteRangeAloneDecides) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_INT32);
  AddSegs<QmtSeg<int32_t>>(chain.p.Get(), QMT_CONS_RANGE, {{0, 5}});
  chain.p->rangeFlags = kConcrete;
  AddSegs(chain.q.Get(), QMT_CONS_RANGE, {Unsigned(2, 3)});
  chain.q->rangeFlags = kConcrete;
  AddSegs(chain.leaf.Get(), QMT_CONS_RANGE, {Unsigned(1, 10)});
  chain.leaf->rangeFlags = kConcrete;
  ExpectResults(
      chain.leaf.Get(),
      {{"0", QM_VALUE_BAD_RANGE}, {"1", QM_OK}, {"10", QM_OK}, {"11", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, ConcreteRangeOverATypedefComparesByItsOwnSign) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_INT32);
  AddSegs(chain.leaf.Get(), QMT_CONS_RANGE, {Signed(-5, 5)});
  chain.leaf->rangeFlags = kConcrete;
  ExpectResults(
      chain.leaf.Get(),
      {{"-5", QM_OK}, {"-6", QM_VALUE_BAD_RANGE}, {"5", QM_OK}, {"6", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, NumbersOverADecimal64TypedefMeanTheScaledValue) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_DECIMAL64);
  AddFraction(chain.p.Get(), 2);
  AddSegs(chain.leaf.Get(), QMT_CONS_RANGE, {Unsigned(1, 150)});
  chain.leaf->rangeFlags = kConcrete;
  ExpectResults(
      chain.leaf.Get(),
      {{"1.5", QM_OK}, {"1.51", QM_VALUE_BAD_RANGE}, {"0.01", QM_OK}, {"0", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, Decimal64WithoutARangeRecordsNoLimits) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_DECIMAL64);
  AddFraction(chain.p.Get(), 2);
  AddSegs<QmtGenericSeg>(chain.leaf.Get(), QMT_CONS_RANGE, {{0, 0, kFromMin | kToMax}});
  chain.leaf->rangeFlags = kMinMax;
  ExpectResults(chain.leaf.Get(), {{"1", QM_VALUE_BAD_RANGE}});
}

TEST(DerivedRange, ContextIsBackAtTheOutsideAfterASuccess) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_INT32);
  AddSegs(chain.leaf.Get(), QMT_CONS_RANGE, {Unsigned(1, 10)});
  chain.leaf->rangeFlags = kConcrete;
  QmtCheckCtx checkCtx{};
  ASSERT_EQ(QM_OK, QMT_TYPE_ValidateValueNodeAgainstRealType(chain.leaf.Get(), 1, "3", &checkCtx));
  EXPECT_EQ(0u, checkCtx.explicitRangeLevel);
  EXPECT_EQ(nullptr, checkCtx.currentType);
  EXPECT_EQ(2, checkCtx.derivedDepth);
  EXPECT_EQ(QMT_BASE_INT32, checkCtx.baseType);
  EXPECT_EQ(chain.p.Get(), checkCtx.matchedType) << "the innermost typedef";
}

TEST(LengthValue, CountsBytes) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddSegs<QmtSeg<uint32_t>>(type.Get(), QMT_CONS_LENGTH, {{1, 2}, {6, 6}});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(), {{"", QM_VALUE_BAD_LENGTH},
                             {"a", QM_OK},
                             {"ab", QM_OK},
                             {"abc", QM_VALUE_BAD_LENGTH},
                             {"\xE2\x82\xAC\xE2\x82\xAC", QM_OK},
                             {"1234567", QM_VALUE_BAD_LENGTH}});
  EXPECT_EQ(QM_VALUE_BAD_LENGTH, CheckText(type.Get(), nullptr)) << "no value";
}

TEST(LengthValue, ElementWithoutTextHasNoValue) {
  Dict dict;
  Type free(&dict, QMT_BASE_STRING);
  EXPECT_EQ(QM_OK, CheckElement(free.Get(), "<a/>"));
  Type limited(&dict, QMT_BASE_STRING);
  AddSegs<QmtSeg<uint32_t>>(limited.Get(), QMT_CONS_LENGTH, {{0, 5}});
  limited->rangeFlags = kConcrete;
  EXPECT_EQ(QM_VALUE_BAD_LENGTH, CheckElement(limited.Get(), "<a/>"));
  EXPECT_EQ(QM_OK, CheckElement(limited.Get(), "<a>12345</a>"));
  EXPECT_EQ(QM_OK, CheckElement(limited.Get(), "<a>12345<!-- the first text only -->67</a>"));
}

TEST(LengthValue, MinAndMaxOverATypedef) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_STRING);
  AddSegs<QmtSeg<uint32_t>>(chain.p.Get(), QMT_CONS_LENGTH, {{2, 4}});
  chain.p->rangeFlags = kConcrete;
  AddSegs<QmtGenericSeg>(chain.leaf.Get(), QMT_CONS_LENGTH, {{3, 0, QMT_SEG_UNSIGNED | kToMax}});
  chain.leaf->rangeFlags = kMinMax;
  ExpectResults(chain.leaf.Get(), {{"1", QM_VALUE_BAD_LENGTH},
                                   {"12", QM_VALUE_BAD_LENGTH},
                                   {"123", QM_OK},
                                   {"1234", QM_OK},
                                   {"12345", QM_VALUE_BAD_LENGTH}});
}

TEST(LengthValue, MaxOfAnUnrestrictedStringIsTheLargest32BitNumber) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_STRING);
  AddSegs<QmtGenericSeg>(chain.leaf.Get(), QMT_CONS_LENGTH, {{3, 0, QMT_SEG_UNSIGNED | kToMax}});
  chain.leaf->rangeFlags = kMinMax;
  ExpectResults(chain.leaf.Get(), {{"12", QM_VALUE_BAD_LENGTH}, {"123", QM_OK}});
  QmtCheckCtx checkCtx{};
  EXPECT_EQ(QM_OK, QMT_CONS_CheckValStrAgainstDefRestrictLength(QMT_BASE_STRING, "x", &checkCtx));
  EXPECT_EQ(0u, uint64_t{checkCtx.parentLimits.start});
  EXPECT_EQ(4294967295u, uint64_t{checkCtx.parentLimits.end});
}

TEST(LengthValue, OutermostConcreteLengthAloneDecides) {
  Dict dict;
  Chain chain(&dict, QMT_BASE_STRING);
  AddSegs<QmtSeg<uint32_t>>(chain.p.Get(), QMT_CONS_LENGTH, {{2, 2}});
  chain.p->rangeFlags = kConcrete;
  AddSegs<QmtSeg<uint32_t>>(chain.leaf.Get(), QMT_CONS_LENGTH, {{1, 5}});
  chain.leaf->rangeFlags = kConcrete;
  ExpectResults(chain.leaf.Get(), {{"12345", QM_OK}, {"1", QM_OK}, {"", QM_VALUE_BAD_LENGTH}});
}

TEST(LengthValue, SegmentsOfAnotherSizeAreRefused) {
  Dict dict;
  Type type(&dict, QMT_BASE_STRING);
  AddSegs<QmtSeg<uint8_t>>(type.Get(), QMT_CONS_LENGTH, {{0, 9}});
  ExpectResults(type.Get(), {{"a", QM_VALUE_BAD_LENGTH}});
}

TEST(LengthValue, AppliesToIntegersToo) {
  Dict dict;
  Type type(&dict, QMT_BASE_INT32);
  AddSegs<QmtSeg<uint32_t>>(type.Get(), QMT_CONS_LENGTH, {{2, 3}});
  type->rangeFlags = kConcrete;
  ExpectResults(type.Get(),
                {{"1", QM_VALUE_BAD_LENGTH}, {"12", QM_OK}, {"1234", QM_VALUE_BAD_LENGTH}});
}
