// SPDX-License-Identifier: BSD-3-Clause
#include "yin/range_expression.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "tests/support/type_fixture.h"

using type_fixture::ParseAndDump;

namespace {

// What stands behind the keyword in the dump of a type with these children.
std::string Segments(const std::string& typeName, const char* keyword, const std::string& expr,
                     const char* otherChildren = "") {
  const std::string child = "<" + std::string(keyword) + " value='" + expr + "'/>";
  const std::string dump =
      ParseAndDump("<type name='" + typeName + "'>" + child + otherChildren + "</type>");
  const std::string start = std::string(keyword) + "{";
  const size_t at = dump.find(start);
  return at == std::string::npos ? dump : dump.substr(at + start.size() - 1);
}

std::string Range(const std::string& typeName, const std::string& expr) {
  return Segments(typeName, "range", expr);
}

struct Row {
  const char* type;
  const char* expr;
  const char* segments;
};

template <size_t N>
void ExpectRanges(const Row (&rows)[N]) {
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.type) + " " + row.expr);
    EXPECT_EQ(row.segments, Range(row.type, row.expr));
  }
}

TEST(RangeExpression, SegmentsAreSeparatedByBars) {
  constexpr Row kRows[] = {
      {"int8", "5", "{5..5} flags=3"},
      {"int8", "1..10 | 20", "{1..10|20..20} flags=3"},
      {"int8", "1 .. 10", "{1..10} flags=3"},
      {"int8", "  1..2|3..4  |  5  ", "{1..2|3..4|5..5} flags=3"},
      {"int8", "&#9;1&#10;..&#9;2", "{1..2} flags=3"},
      {"int8", "010", "{10..10} flags=3"},
      {"int8", "+5", "{5..5} flags=3"},
      {"int8", "min", "{-128..-128} flags=3"},
      {"int8", "max", "{127..127} flags=3"},
      {"int8", "min .. -5 | 5..max", "{-128..-5|5..127} flags=3"},
  };
  ExpectRanges(kRows);
}

TEST(RangeExpression, WhatIsNoExpressionIsRefused) {
  for (const char* expr : {"",
                           " ",
                           "|",
                           "1|",
                           "|1",
                           "1||2",
                           "a",
                           "m",
                           "mi",
                           "mid",
                           "Min",
                           "1.5",
                           "1.",
                           ".",
                           "..",
                           "1...5",
                           ". .",
                           "1..10x",
                           "1,2",
                           "-",
                           "--5",
                           "0x",
                           "1-2x",
                           "99999999999999999999",
                           "-9223372036854775809"}) {
    SCOPED_TRACE(expr);
    EXPECT_EQ("QM_INVALID", Range("int8", expr));
  }
}

TEST(RangeExpression, OddOrdersAreReadAsTheyStand) {
  constexpr Row kRows[] = {
      {"int8", "1 2", "{2..2} flags=3"},
      {"int8", "1..", "{1..0} flags=3"},
      {"int8", "..5", "{0..5} flags=3"},
      {"int8", "1..2..3", "{1..3} flags=3"},
      {"int8", "9..3", "{9..3} flags=3"},
      {"int8", "min..", "{-128..0} flags=3"},
      // The numbers 1 and -2: the second overwrites the first, whose sign decides.
      {"uint8", "1-2", "{254..254} flags=3"},
  };
  ExpectRanges(kRows);
}

TEST(RangeExpression, AtMost256TokensAreRead) {
  std::string expr = "1";
  for (int i = 1; i < 128; ++i) expr += "|1";  // 128 numbers, 127 bars and the end
  EXPECT_NE("QM_INVALID", Range("uint8", expr));
  EXPECT_EQ("QM_INVALID", Range("uint8", expr + "|1"));
}

TEST(RangeWriter, LimitsAreThoseOfTheType) {
  constexpr Row kRows[] = {
      {"int8", "min..max", "{-128..127} flags=3"},
      {"int8", "min..min", "{-128..-128} flags=3"},
      {"int8", "max..max", "{127..127} flags=3"},
      {"int16", "min..max", "{-32768..32767} flags=3"},
      {"int32", "min..max", "{-2147483648..2147483647} flags=3"},
      {"int64", "min..max", "{-9223372036854775808..9223372036854775807s} flags=3"},
      {"uint8", "min..max", "{0..255} flags=3"},
      {"uint16", "min..max", "{0..65535} flags=3"},
      {"uint32", "min..max", "{0..4294967295} flags=3"},
      {"uint64", "min..max", "{0..18446744073709551615u} flags=3"},
  };
  ExpectRanges(kRows);
}

TEST(RangeWriter, SignedTypesStoreNumbersThatDoNotFitAsZero) {
  constexpr Row kRows[] = {
      {"int8", "127", "{127..127} flags=3"},
      {"int8", "1..128", "{0..0} flags=3"},
      {"int8", "200 | 5", "{0..0|5..5} flags=3"},
      {"int16", "32768", "{0..0} flags=3"},
      {"int32", "2147483648", "{0..0} flags=3"},
      {"int64", "9223372036854775808", "{0..0s} flags=3"},
      {"int8", "min..300", "{-128..0} flags=3"},
      {"int8", "1..-5", "{0..0} flags=3"},
  };
  ExpectRanges(kRows);
}

TEST(RangeWriter, SignedTypesTruncateWhatBeginsWithAMinus) {
  constexpr Row kRows[] = {
      {"int8", "-5..10", "{-5..10} flags=3"},
      {"int8", "-5..300", "{-5..44} flags=3"},
      {"int8", "-129", "{127..127} flags=3"},
      {"int16", "-32769", "{32767..32767} flags=3"},
      {"int32", "-2147483649", "{2147483647..2147483647} flags=3"},
      {"int64", "-1..5", "{-1..5s} flags=3"},
  };
  ExpectRanges(kRows);
}

TEST(RangeWriter, UnsignedTypesRefuseAMinusAndTruncate) {
  constexpr Row kRows[] = {
      {"uint8", "-1..5", "QM_INVALID"},
      {"uint16", "-1", "QM_INVALID"},
      {"uint32", "-1", "QM_INVALID"},
      {"uint64", "-1", "QM_INVALID"},
      {"uint8", "300", "{44..44} flags=3"},
      {"uint8", "1..-5", "{1..251} flags=3"},
      {"uint16", "65536", "{0..0} flags=3"},
      {"uint32", "4294967297", "{1..1} flags=3"},
      {"uint64", "18446744073709551615", "{18446744073709551615..18446744073709551615u} flags=3"},
      {"uint64", "18446744073709551616", "QM_INVALID"},
  };
  ExpectRanges(kRows);
}

TEST(RangeWriter, ATypedefKeepsMinAndMax) {
  constexpr Row kRows[] = {
      {"t", "1..10", "{1..10u} flags=3"},
      {"t", "-1..10", "{-1..10s} flags=3"},
      {"t", "min..10", "{min..10u} flags=5"},
      {"t", "-1..max", "{-1..maxs} flags=5"},
      {"t", "min..max", "{min..max} flags=5"},
      {"t", "min", "{min..min} flags=5"},
      {"t", "max", "{max..max} flags=5"},
      {"t", "min..min", "{min..min} flags=5"},
      {"t", "max..max", "{max..max} flags=5"},
      {"t", "1..2|5..max", "{1..2u|5..maxu} flags=5"},
      {"t", "1.5", "QM_INVALID"},
  };
  ExpectRanges(kRows);
}

TEST(RangeWriter, Decimal64NumbersAreScaled) {
  constexpr Row kRows[] = {
      {"", "1.5..2", "{150..200s} flags=3"},
      {"", "1..5", "{100..500s} flags=3"},
      {"", "-0.01", "{-1..-1s} flags=3"},
      {"", "+1.5", "{150..150s} flags=3"},
      {"", "-.5", "{-50..-50s} flags=3"},
      {"", "0.1|0.25..max", "{10..10s|25..9223372036854775807s} flags=3"},
      {"", "min..max", "{-9223372036854775808..9223372036854775807s} flags=3"},
      {"", "0000000000000000000000000000001", "{100..100s} flags=3"},  // 31 characters
      {"", "00000000000000000000000000000001", "QM_INVALID"},
      {"", "1.505", "QM_INVALID"},
      {"", "5.", "QM_INVALID"},
      {"", ".5", "QM_INVALID"},
      {"", "1.2.3", "QM_INVALID"},
      {"", "-", "QM_INVALID"},
      {"", "x", "QM_INVALID"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.expr);
    EXPECT_EQ(row.segments,
              Segments("decimal64", "range", row.expr, "<fraction-digits value='2'/>"));
  }
}

TEST(LengthExpression, IsStoredAsPairsUnlessItWaitsForItsBase) {
  constexpr Row kRows[] = {
      {"string", "1..5|7", "{1..5|7..7} flags=3"},
      {"string", "min..max", "{0..4294967295} flags=3"},
      {"binary", "4", "{4..4} flags=3"},
      {"string", "4294967297", "{1..1} flags=3"},
      {"string", "-1", "QM_INVALID"},
      {"string", "", "QM_INVALID"},
      {"t", "1..5", "{1..5} flags=3"},
      {"t", "min..5", "{min..5u} flags=5"},
      {"t", "5..max", "{5..maxu} flags=5"},
      {"decimal64", "1", "QM_INVALID"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::string(row.type) + " " + row.expr);
    EXPECT_EQ(row.segments, Segments(row.type, "length", row.expr));
  }
}

TEST(RangeWriter, AFullOrForeignListIsRefused) {
  QmtSeg<int8_t> segs[1] = {};
  QmtSegList list = {0, 2, 1, segs};
  const QmtGenericSeg seg = {3, 4, QMT_SEG_UNSIGNED};
  EXPECT_EQ(QM_INVALID, QMT_LOADER_PushRangeValueIntoSegInt16Signed(&list, &seg));
  EXPECT_EQ(QM_INVALID, QMT_LOADER_PushRangeValueIntoSegIntUnknown(&list, &seg));
  EXPECT_EQ(QM_OK, QMT_LOADER_PushRangeValueIntoSegInt8Signed(&list, &seg));
  EXPECT_EQ(3, segs[0].start);
  EXPECT_EQ(4, segs[0].end);
  EXPECT_EQ(1u, list.count);
  EXPECT_EQ(QM_INVALID, QMT_LOADER_PushRangeValueIntoSegInt8Signed(&list, &seg));
  EXPECT_EQ(1u, list.count);
}

TEST(PushOneSegment, ASegmentWithoutFlagsIsRefused) {
  QmtRangeParseState state = {};
  QmtGenericSeg seg = {};
  const char* pos = "";
  EXPECT_EQ(QM_INVALID, QMT_LOADER_PushOneSegIntPairIntoCb(&state, &seg, &pos));
}

TEST(ScanRange, NullIsRefused) {
  QmtRangeParseState state = {};
  EXPECT_EQ(QM_INVALID, QMT_LOADER_ScanParseRangeExprWithCb(
                            nullptr, QMT_LOADER_PushRangeValueIntoSegIntUnknown, &state));
  EXPECT_EQ(QM_INVALID, QMT_LOADER_ScanParseRangeExprWithCb("1", nullptr, &state));
  EXPECT_EQ(QM_INVALID, QMT_LOADER_ScanParseRangeExprWithCb(
                            "1", QMT_LOADER_PushRangeValueIntoSegIntUnknown, nullptr));
}

}  // namespace
