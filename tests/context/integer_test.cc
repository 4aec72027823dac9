// SPDX-License-Identifier: BSD-3-Clause
#include "context/integer.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cerrno>

TEST(ReadSignedInteger, ReadsTheLeadingNumber) {
  const struct {
    const char* text;
    int64_t value;
    const char* rest;
  } rows[] = {{" \t42abc", 42, "abc"},
              {"-7", -7, ""},
              {"+7", 7, ""},
              {"\n-0", 0, ""},
              {"007", 7, ""},
              {"1 2", 1, " 2"},
              {"0x10", 0, "x10"},
              {"9223372036854775807", INT64_MAX, ""},
              {"-9223372036854775808", INT64_MIN, ""}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    int64_t value = 99;
    char* end = nullptr;
    EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsSignedInteger(row.text, &end, 0, &value));
    EXPECT_EQ(row.value, value);
    EXPECT_STREQ(row.rest, end);
  }
}

TEST(ReadSignedInteger, RefusesOverflowAndTextsWithoutDigit) {
  for (const char* text :
       {"", " ", "abc", "-", "+-1", "- 1", "9223372036854775808", "-9223372036854775809"}) {
    SCOPED_TRACE(text);
    int64_t value = 99;
    char* end = nullptr;
    EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsSignedInteger(text, &end, 0, &value));
    EXPECT_EQ(99, value);
    EXPECT_EQ(nullptr, end);
  }
}

TEST(ReadUnsignedInteger, ReadsTheLeadingNumber) {
  const struct {
    const char* text;
    uint64_t value;
    const char* rest;
  } rows[] = {{" \t42abc", 42, "abc"},
              {"+7", 7, ""},
              {"\n0", 0, ""},
              {"18446744073709551615", UINT64_MAX, ""},
              // White space that only the C library skips: its conversion stands.
              {"\r5", 5, ""},
              {"\r-1", UINT64_MAX, ""}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    uint64_t value = 99;
    char* end = nullptr;
    EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsUnsignedInteger(row.text, &end, 0, &value));
    EXPECT_EQ(row.value, value);
    EXPECT_STREQ(row.rest, end);
  }
}

TEST(ReadUnsignedInteger, RefusesAMinusSignOverflowAndTextsWithoutDigit) {
  for (const char* text : {"-1", "-0", " \t\n-0", "", " ", "abc", "18446744073709551616"}) {
    SCOPED_TRACE(text);
    uint64_t value = 99;
    char* end = nullptr;
    EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsUnsignedInteger(text, &end, 0, &value));
    EXPECT_EQ(99u, value);
    EXPECT_EQ(nullptr, end);
  }
}

TEST(ReadInteger, AnErrorNumberFromBeforeDoesNotCount) {
  int64_t number = 0;
  uint64_t count = 0;
  errno = ERANGE;
  EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsSignedInteger("1", nullptr, 0, &number));
  errno = ERANGE;
  EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsUnsignedInteger("1", nullptr, 0, &count));
}

TEST(ReadInteger, ThirdArgumentIsNotUsedAndTheEndIsOptional) {
  int64_t number = 0;
  EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsSignedInteger("12", nullptr, 16, &number));
  EXPECT_EQ(12, number);
  EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsSignedInteger(nullptr, nullptr, 0, &number));
  EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsUnsignedInteger("1", nullptr, 0, nullptr));
}
