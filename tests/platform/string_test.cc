// SPDX-License-Identifier: BSD-3-Clause
#include "platform/string.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <clocale>
#include <cmath>
#include <string>

TEST(StrCmp, ComparesByteWise) {
  EXPECT_EQ(0, RTK_StrCmp("abc", "abc"));
  EXPECT_LT(RTK_StrCmp("abc", "abd"), 0);
  EXPECT_GT(RTK_StrCmp("abc", "ab"), 0);
  EXPECT_LT(RTK_StrCmp("Z", "a"), 0) << "capital letters come first, as bytes";
  EXPECT_LT(RTK_StrCmp("z", "\xC3\xA4"), 0) << "bytes from 0x80 on come last";
}

TEST(TextsEqual, IsWhatAByteWiseCompareSays) {
  const std::string texts[] = {"",         "a",         "b",         "ab",          "abcdefg",
                               "abcdefgh", "abcdefghi", "abcdefghj", "abcdefg\xC3", "Abcdefgh"};
  for (const std::string& a : texts) {
    for (const std::string& b : texts)
      EXPECT_EQ(a == b, TextsEqual(a.c_str(), b.c_str())) << a << " and " << b;
  }
}

TEST(StrNCmp, LooksAtTheFirstBytesOnly) {
  EXPECT_EQ(0, RTK_StrNCmp("abcd", "abce", 3));
  EXPECT_LT(RTK_StrNCmp("abcd", "abce", 4), 0);
  EXPECT_EQ(0, RTK_StrNCmp("a", "b", 0));
}

TEST(StrSearch, FindsFirstAndLast) {
  const char* text = "a/b/c";
  EXPECT_EQ(5u, RTK_StrLen(text));
  EXPECT_EQ(5u, RTK_StrNLen(text, 6));
  EXPECT_EQ(5u, RTK_StrNLen(text, 5));
  EXPECT_EQ(4u, RTK_StrNLen(text, 4));
  EXPECT_EQ(0u, RTK_StrNLen(text, 0));
  EXPECT_EQ(text + 1, RTK_StrChr(text, '/'));
  EXPECT_EQ(text + 3, RTK_StrRChr(text, '/'));
  EXPECT_EQ(nullptr, RTK_StrChr(text, 'x'));
  EXPECT_EQ(nullptr, RTK_StrRChr(text, 'x'));
  EXPECT_EQ(text + 2, RTK_StrStr(text, "b/"));
  EXPECT_EQ(nullptr, RTK_StrStr(text, "bb"));
}

TEST(StrToFloat, ConvertsDecimalNumbers) {
  const struct {
    const char* text;
    double value;
  } rows[] = {
      {"0", 0},      {"42", 42},    {"-42", -42},       {"+42", 42},
      {"1.5", 1.5},  {".5", 0.5},   {"5.", 5},          {"-.25", -0.25},
      {"1e3", 1000}, {"1E3", 1000}, {"1e+3", 1000},     {"25e-2", 0.25},
      {"  7", 7},    {"7  ", 7},    {"\t\r\n 7 \n", 7}, {"007", 7},
      {"-0", 0},     {"0.1", 0.1},  {"1e308", 1e308},   {"9007199254740993", 9007199254740992.0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    double value = -1;
    EXPECT_EQ(QM_OK, RTK_StrToFloat(row.text, &value));
    EXPECT_EQ(row.value, value);
  }
}

TEST(StrToFloat, MinusZeroKeepsItsSign) {
  double value = 1;
  ASSERT_EQ(QM_OK, RTK_StrToFloat("-0", &value));
  EXPECT_TRUE(std::signbit(value));
}

TEST(StrToFloat, RefusesEverythingElse) {
  const char* rows[] = {"",    " ",     "\t\n", "inf", "-inf",  "nan",  "NaN", "infinity", "0x10",
                        "1e",  "1e+",   ".",    "-",   "+",     "--1",  "+-1", "- 1",      "1 2",
                        "1,5", "1.5.2", "abc",  "1a",  "1e2.5", "+inf", "e5",  ".e5",      "1f"};
  for (const char* text : rows) {
    SCOPED_TRACE(text);
    double value = 77;
    EXPECT_NE(QM_OK, RTK_StrToFloat(text, &value));
    EXPECT_EQ(77, value);
  }
}

TEST(StrToFloat, NumberOutsideTheRangeBecomesInfinityOrZero) {
  const std::string manyDigits(400, '9');
  const std::string manyZeros = "0." + std::string(400, '0') + "1";
  const std::string huge = "0." + std::string(400, '0') + "1e900";
  const struct {
    std::string text;
    double value;
  } rows[] = {{"1e999", HUGE_VAL},
              {"-1e999", -HUGE_VAL},
              {"1e+999", HUGE_VAL},
              {"1e99999999999999999999", HUGE_VAL},
              {"1e+99999999999999999999", HUGE_VAL},
              {"1e-999", 0},
              {"1e-99999999999999999999", 0},
              {manyDigits, HUGE_VAL},
              {manyDigits + ".5", HUGE_VAL},
              {manyZeros, 0},
              {huge, HUGE_VAL}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    double value = 77;
    EXPECT_EQ(QM_OK, RTK_StrToFloat(row.text.c_str(), &value));
    EXPECT_EQ(row.value, value);
  }
}

TEST(StrToFloat, DecimalPointDoesNotDependOnTheLocale) {
  ASSERT_EQ(0, setenv("LOCPATH", QMODEL_TEST_LOCALES, 1));
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "localedef made no locale";
  ASSERT_STREQ(",", std::localeconv()->decimal_point);
  double value = 0;
  EXPECT_EQ(QM_OK, RTK_StrToFloat("1.5", &value));
  EXPECT_EQ(1.5, value);
  EXPECT_NE(QM_OK, RTK_StrToFloat("1,5", &value));
  std::setlocale(LC_ALL, "C");
}

TEST(CharacterClass, ACarriageReturnIsWhiteSpaceButNoBlank) {
  std::string digits, blanks, spaces;
  for (int c = 1; c < 256; ++c) {
    if (IsDigit(static_cast<char>(c))) digits += static_cast<char>(c);
    if (IsBlank(static_cast<char>(c))) blanks += static_cast<char>(c);
    if (IsSpace(static_cast<char>(c))) spaces += static_cast<char>(c);
  }
  EXPECT_EQ("0123456789", digits);
  EXPECT_EQ("\t\n ", blanks);
  EXPECT_EQ("\t\n\r ", spaces);
}
