// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/argument.h"

#include <gtest/gtest.h>

namespace compiler {
namespace {

TEST(IsIdentifier, FollowsTheGrammarAndTheVersion) {
  for (const char* name : {"a", "_", "A-1.b_", "xm", "x"}) EXPECT_TRUE(IsIdentifier(name, false));
  for (const char* name : {"", "1a", "-a", ".a", "a b", "a:b", "\xc3\xa4"})
    EXPECT_FALSE(IsIdentifier(name, true)) << name;
  EXPECT_TRUE(IsIdentifier("xMl-x", true));
  EXPECT_FALSE(IsIdentifier("xMl-x", false));
}

TEST(IsDate, IsADayOfTheCalendar) {
  for (const char* date : {"2024-02-29", "2000-02-29", "1999-12-31"}) EXPECT_TRUE(IsDate(date));
  for (const char* date : {"2023-02-29", "1900-02-29", "2024-13-01", "2024-00-10", "2024-01-00",
                           "2024-1-1", "24-01-01", "2024/01/01", "", "2024-01-01Z"})
    EXPECT_FALSE(IsDate(date)) << date;
}

TEST(IsUri, NeedsASchemeAndAllowedCharacters) {
  for (const char* uri : {"urn:a:b", "http://example.com/a?b#c", "a+b.c-1:x", "urn:%41"})
    EXPECT_TRUE(IsUri(uri)) << uri;
  for (const char* uri : {"", "abc", ":a", "urn:", "1a:b", "urn:a b", "urn:%4", "urn:\xc3\xa4"})
    EXPECT_FALSE(IsUri(uri)) << uri;
}

TEST(NodeIds, AreAbsoluteOrDescendant) {
  EXPECT_TRUE(IsAbsoluteNodeId("/a:b/c"));
  EXPECT_TRUE(IsDescendantNodeId("a:b/c"));
  for (const char* path : {"", "/", "a", "/a/", "//a", "/a b", "/a/../b"})
    EXPECT_FALSE(IsAbsoluteNodeId(path)) << path;
  for (const char* path : {"", "/a", "a/", "a//b", "../a"})
    EXPECT_FALSE(IsDescendantNodeId(path)) << path;
}

TEST(ParseUnsigned, TakesNoLeadingZerosAndNothingAboveItsBound) {
  uint64_t value = 0;
  EXPECT_TRUE(ParseUnsigned("18446744073709551615", UINT64_MAX, &value));
  EXPECT_EQ(UINT64_MAX, value);
  for (const char* text : {"", "01", "-1", "+1", "1 ", "1.0", "18446744073709551616"})
    EXPECT_FALSE(ParseUnsigned(text, UINT64_MAX, &value)) << text;
  EXPECT_FALSE(ParseUnsigned("5", 4, &value));
}

TEST(ParseInteger, TakesASignAndKeepsItsBounds) {
  int64_t value = 0;
  EXPECT_TRUE(ParseInteger("-2147483648", INT32_MIN, INT32_MAX, &value));
  EXPECT_EQ(INT32_MIN, value);
  for (const char* text : {"", "-", "--1", "+1", "-01", "2147483648", "1e3"})
    EXPECT_FALSE(ParseInteger(text, INT32_MIN, INT32_MAX, &value)) << text;
}

TEST(WordsOf, PartsAtBlanksTabsAndLineFeeds) {
  EXPECT_EQ((std::vector<std::string_view>{"a", "b:c", "d"}), WordsOf(" a\tb:c\n\r d "));
  EXPECT_TRUE(WordsOf(" \n").empty());
}

TEST(ParseRange, TakesPartsAndBounds) {
  std::vector<RangePart> parts;
  ASSERT_TRUE(ParseRange("min..-1.5 | 0 |\n 4 .. max", false, &parts));
  ASSERT_EQ(3u, parts.size());
  EXPECT_EQ("min", parts[0].low);
  EXPECT_EQ("-1.5", parts[0].high);
  EXPECT_EQ("0", parts[1].high);
  EXPECT_EQ("max", parts[2].high);
}

TEST(ParseRange, RefusesWhatIsNoRange) {
  std::vector<RangePart> parts;
  for (const char* text :
       {"", "|", "1|", "1..", "..1", "1...2", "a", "1 2", "01", "1.", ".5", "--1"})
    EXPECT_FALSE(ParseRange(text, false, &parts)) << text;
  for (const char* text : {"-1", "1.5", "-1..4"}) EXPECT_FALSE(ParseRange(text, true, &parts));
}

TEST(JudgeArgument, DependsOnTheStatementAroundIt) {
  EXPECT_NE("", JudgeArgument(Keyword::kAugment, Keyword::kModule, "a/b", true));
  EXPECT_EQ("", JudgeArgument(Keyword::kAugment, Keyword::kUses, "a/b", true));
  EXPECT_NE("", JudgeArgument(Keyword::kAugment, Keyword::kUses, "/a/b", true));
  EXPECT_EQ("", JudgeArgument(Keyword::kDefault, Keyword::kLeaf, "any thing", true));
  EXPECT_NE("", JudgeArgument(Keyword::kDefault, Keyword::kChoice, "any thing", true));
}

TEST(JudgeArgument, SaysWhatIsWrong) {
  EXPECT_EQ("\"yes\" is not a truth value",
            JudgeArgument(Keyword::kConfig, Keyword::kLeaf, "yes", true));
  EXPECT_EQ("write \"true\" or \"false\"", AdviseArgument(Keyword::kConfig, Keyword::kLeaf));
}

}  // namespace
}  // namespace compiler
