// SPDX-License-Identifier: BSD-3-Clause
#include "context/text_scan.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

TEST(TakeIdentName, MovesBehindANameThatFits) {
  char name[4] = "";
  const char* text = "abc:d";
  EXPECT_TRUE(TakeIdentName(&text, name, sizeof(name)));
  EXPECT_STREQ("abc", name);
  EXPECT_STREQ(":d", text);
  EXPECT_FALSE(TakeIdentName(&text, name, sizeof(name)));
  EXPECT_STREQ(":d", text);
  text = "abcd";
  EXPECT_FALSE(TakeIdentName(&text, name, sizeof(name)));
  EXPECT_STREQ("abcd", text);
}

TEST(ConsumeIdentNameBestEffort, CountsLeadingIdentifierCharacters) {
  const struct {
    const char* text;
    uint32_t length;
  } rows[] = {{"", 0},         {"abc", 3},       {"a-b.c_d9", 8}, {"9a", 2},  {"-x", 2},
              {"ABC:x", 3},    {"a/b", 1},       {"/a", 0},       {" a", 0},  {"a b", 1},
              {"\xC3\xA4", 0}, {"a\xC3\xA4", 1}, {"a[1]", 1},     {"a@b", 1}, {"a`{", 1}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.length, QM_UTL_ConsumeIdentNameBestEffort(row.text));
  }
}

TEST(ConsumeIdentNameFromTail, CountsTrailingIdentifierCharacters) {
  EXPECT_EQ(3u, QM_UTL_ConsumeIdentNameFromTail("a:bcd", 5));
  EXPECT_EQ(1u, QM_UTL_ConsumeIdentNameFromTail("a:bcd", 3)) << "only the first bytes count";
  EXPECT_EQ(0u, QM_UTL_ConsumeIdentNameFromTail("a:bcd", 2));
  EXPECT_EQ(3u, QM_UTL_ConsumeIdentNameFromTail("abc", 3)) << "to the start";
  EXPECT_EQ(0u, QM_UTL_ConsumeIdentNameFromTail("abc", 0));
}

TEST(ConsumeAllSpaceChar, SkipsBlanksTabsAndNewlinesOnly) {
  EXPECT_STREQ("x ", QM_UTL_ConsumeAllSpaceChar(" \t\n x "));
  EXPECT_STREQ("x", QM_UTL_ConsumeAllSpaceChar("x"));
  EXPECT_STREQ("", QM_UTL_ConsumeAllSpaceChar(" \n"));
  EXPECT_STREQ("\r x", QM_UTL_ConsumeAllSpaceChar(" \r x")) << "a carriage return stays";
}

TEST(GetXPathNextNodeName, Rows) {
  const struct {
    const char* text;
    uint32_t status;
    const char* name;
  } rows[] = {
      {"abc", QM_OK, "abc"},
      {"abc/def", QM_OK, "abc"},
      {"abcdefg", QM_OK, "abcdefg"},
      {"", QM_FAILED, ""},
      {"/abc", QM_FAILED, ""},
      {":abc", QM_FAILED, ""},
      {"abc:d", QM_INVALID, ""},
      {"abc[1]", QM_INVALID, ""},
      {"abc d", QM_INVALID, ""},
      {"abcdefgh", QM_NAME_TOO_LONG, ""},
      {"abcdefgh/x", QM_NAME_TOO_LONG, ""},
      {"abcdefgh:x", QM_INVALID, ""},  // what follows is judged before the room
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    char out[8] = "before";
    EXPECT_EQ(row.status, QM_UTL_GetXPathNextNodeName(row.text, out, sizeof out));
    EXPECT_STREQ(row.name, out);
  }
}

TEST(GetXPathNextPrefixAndNode, Rows) {
  const struct {
    const char* text;
    uint32_t status;
    const char* prefix;
    const char* name;
  } rows[] = {
      {"abc", QM_OK, "", "abc"},
      {"abc/d:e", QM_OK, "", "abc"},
      {"p:abc", QM_OK, "p", "abc"},
      {"p:abc/d", QM_OK, "p", "abc"},
      {"", QM_FAILED, "", ""},
      {"/a", QM_FAILED, "", ""},
      {":a", QM_FAILED, "", ""},
      {"a b", QM_INVALID, "", ""},
      {"a[1]", QM_INVALID, "", ""},
      {"p:", QM_FAILED, "", ""},
      {"p:/a", QM_FAILED, "", ""},
      {"p:a:b", QM_INVALID, "", ""},
      {"p:a[1]", QM_INVALID, "", ""},
      {"p:abcdefgh", QM_NAME_TOO_LONG, "", ""},
      {"abcdefgh", QM_NAME_TOO_LONG, "", ""},
      {"abcdefgh:a", QM_NAME_TOO_LONG, "", ""},
      {"abcdefgh]a", QM_INVALID, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    char prefix[8] = "before";
    char name[8] = "before";
    EXPECT_EQ(row.status,
              QM_UTL_GetXPathNextPrefixAndNode(row.text, prefix, sizeof prefix, name, sizeof name));
    EXPECT_STREQ(row.prefix, prefix);
    EXPECT_STREQ(row.name, name);
  }
}

TEST(GetXPathNextPredicatedPrefixNode, Rows) {
  const struct {
    const char* text;
    const char* rest;
    const char* prefix;
    const char* name;
  } rows[] = {
      {"p:n[a=1][b=2]/rest", "/rest", "p", "n"},
      {"n", "", "", "n"},
      {"p:n", "", "p", "n"},
      {"n/x", "/x", "", "n"},
      {"n[a]", "", "", "n"},
      {"n[a[b]/x", "/x", "", "n"},  // the first "]" ends a predicate
      {"n['/']", "", "", "n"},
      {"n[x]y", nullptr, "", ""},
      {"n[a[b]]/x", nullptr, "", ""},
      {"n[']']", nullptr, "", ""},
      {"n[x", nullptr, "", ""},
      {"p:n[x][y", nullptr, "", ""},
      {"n x", nullptr, "", ""},
      {"", nullptr, "", ""},
      {"/n", nullptr, "", ""},
      {"p:", nullptr, "", ""},
      {"p:q:n", nullptr, "", ""},
      {"abcdefgh", nullptr, "", ""},
      {"p:abcdefgh[1]", nullptr, "", ""},
      {"abcdefgh:n", nullptr, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    char prefix[8] = "before";
    char name[8] = "before";
    const char* rest =
        QM_UTL_GetXPathNextPredicatedPrefixNode(row.text, prefix, sizeof prefix, name, sizeof name);
    EXPECT_STREQ(row.rest, rest);
    EXPECT_STREQ(row.prefix, prefix);
    EXPECT_STREQ(row.name, name);
    if (row.rest != nullptr) {
      EXPECT_EQ(row.text + std::strlen(row.text) - std::strlen(row.rest), rest);
    }
  }
}

TEST(SkipPredicateParis, SkipsConsecutivePredicates) {
  EXPECT_STREQ("/x", QM_UTL_SkipPredicateParis("[a][b]/x"));
  EXPECT_STREQ("x[a]", QM_UTL_SkipPredicateParis("x[a]"));
  EXPECT_STREQ("", QM_UTL_SkipPredicateParis(""));
  EXPECT_EQ(nullptr, QM_UTL_SkipPredicateParis("[a][b"));
}

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

// Short numbers are read without the C library.
TEST(ReadInteger, AgreesWithTheCLibraryOnAnyNumberOfDigits) {
  for (const char* sign : {"", "-", "+", "--", "+-", "\r", "\r-", "\v+"}) {
    for (const char digit : {'0', '1', '7', '9'}) {
      for (size_t digits = 0; digits < 24; ++digits) {
        const std::string text = sign + std::string(digits, digit) + "x1";
        char* end = nullptr;
        char* expectedEnd = nullptr;
        int64_t number = 0;
        errno = 0;
        const int64_t expected = std::strtoll(text.c_str(), &expectedEnd, 10);
        if (errno != 0 || expectedEnd == text.c_str()) {
          EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsSignedInteger(text.c_str(), &end, 0, &number));
          continue;
        }
        EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsSignedInteger(text.c_str(), &end, 0, &number));
        EXPECT_EQ(expected, number) << text;
        EXPECT_EQ(expectedEnd, end) << text;
      }
    }
  }
  uint64_t count = 0;
  EXPECT_EQ(QM_OK,
            QM_UTL_ReadInputStrAsUnsignedInteger("+18446744073709551615", nullptr, 0, &count));
  EXPECT_EQ(UINT64_MAX, count);
  EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsUnsignedInteger("999999999999999999", nullptr, 0, &count));
  EXPECT_EQ(999999999999999999u, count);
}

TEST(ReadInteger, ThirdArgumentIsNotUsedAndTheEndIsOptional) {
  int64_t number = 0;
  EXPECT_EQ(QM_OK, QM_UTL_ReadInputStrAsSignedInteger("12", nullptr, 16, &number));
  EXPECT_EQ(12, number);
  EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsSignedInteger(nullptr, nullptr, 0, &number));
  EXPECT_EQ(QM_INVALID, QM_UTL_ReadInputStrAsUnsignedInteger("1", nullptr, 0, nullptr));
}
