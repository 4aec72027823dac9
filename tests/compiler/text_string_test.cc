// SPDX-License-Identifier: BSD-3-Clause
// The strings of YANG text: what argument a statement has after quoting, joining,
// escapes and folding.
#include <gtest/gtest.h>

#include "tests/compiler/read_helper.h"

namespace compiler {
namespace {

// The argument of the first description in `text`, or what is wrong with it.
std::string ArgumentIn(const std::string& text) {
  const ReadResult read = ReadText(text);
  if (read.module == nullptr || read.module->broken) return "error " + read.Findings();
  const char* argument = ArgumentOfChild(read.module->root, Keyword::kDescription);
  return argument == nullptr ? "no argument" : argument;
}

std::string ArgumentOfWritten(const std::string& argument, bool version11 = false) {
  return ArgumentIn(std::string("module m {") + (version11 ? "yang-version 1.1;" : "") +
                    "\ndescription " + argument + ";}");
}

struct Row {
  const char* written;
  const char* argument;
};

TEST(UnquotedString, EndsBeforeBlankMarkOrComment) {
  for (const Row& row : std::initializer_list<Row>{
           {"a", "a"},
           {"a/b", "a/b"},
           {"/a:b/c:d", "/a:b/c:d"},
           {"http:// this is a comment\n", "http:"},
           {"a/* comment */", "a"},
           {"a*b", "a*b"},
           {"a/", "a/"},
           {"*", "*"},
           {"a+b", "a+b"},
           {"+", "+"},
           {"\\n", "\\n"},
           {"1..4|8", "1..4|8"},
           {"\xc3\xa4", "\xc3\xa4"},
           {"\n\t a \t\r\n", "a"},
       }) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(ArgumentOfWritten(row.written), row.argument);
  }
}

TEST(UnquotedString, HoldsQuotesInVersion1) {
  EXPECT_EQ(ArgumentOfWritten("a\"b"), "a\"b");
  EXPECT_EQ(ArgumentOfWritten("it's"), "it's");
}

TEST(UnquotedString, HoldsNoQuoteInVersion11) {
  EXPECT_NE(ArgumentOfWritten("a\"b\"", true).find("2:14: a quote stands in an unquoted string"),
            std::string::npos);
  EXPECT_NE(ArgumentOfWritten("it's'", true).find("2:15: a quote stands in an unquoted string"),
            std::string::npos);
}

TEST(SingleQuotedString, IsTakenAsItStands) {
  for (const Row& row : std::initializer_list<Row>{
           {"''", ""},
           {"'a \"b\" ; { } // no /* comment'", "a \"b\" ; { } // no /* comment"},
           {"'\\n\\d\\'", "\\n\\d\\"},
           {"'one  \n    two'", "one  \n    two"},
           {"'one\r\ntwo\r\n'", "one\ntwo\n"},
           {"'one\rtwo'", "one\rtwo"},
       }) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(ArgumentOfWritten(row.written), row.argument);
    EXPECT_EQ(ArgumentOfWritten(row.written, true), row.argument);
  }
}

TEST(DoubleQuotedString, KnowsFourEscapes) {
  for (const Row& row : std::initializer_list<Row>{
           {"\"\"", ""},
           {"\"it's ; { } // no /* comment\"", "it's ; { } // no /* comment"},
           {"\"a\\nb\\tc\\\"d\\\\e\"", "a\nb\tc\"d\\e"},
           {"\"\\\\n\"", "\\n"},
           {"\"\\\\\\\"\"", "\\\""},
       }) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(ArgumentOfWritten(row.written), row.argument);
    EXPECT_EQ(ArgumentOfWritten(row.written, true), row.argument);
  }
}

TEST(DoubleQuotedString, KeepsOtherPairsInVersion1) {
  EXPECT_EQ(ArgumentOfWritten("\"\\d\\.\\'\""), "\\d\\.\\'");
  EXPECT_EQ(ArgumentOfWritten("\"a\\\n             b\""), "a\\\nb");
  EXPECT_EQ(ArgumentOfWritten("\"\\\xc3\xa4\""), "\\\xc3\xa4");
}

TEST(DoubleQuotedString, HasNoOtherPairsInVersion11) {
  EXPECT_EQ(ArgumentOfWritten("\"\\d+\\w\"", true),
            "error 2:14: '\\d' is no escape of YANG 1.1; write '\\\\' for a backslash, or use "
            "single quotes\n"
            "2:17: '\\w' is no escape of YANG 1.1; write '\\\\' for a backslash, or use "
            "single quotes\n");
}

TEST(DoubleQuotedString, IsJudgedWhenTheVersionIsKnown) {
  EXPECT_EQ(ArgumentIn("module m {\n description \"\\d\";\n yang-version 1.1;}"),
            "error 2:15: '\\d' is no escape of YANG 1.1; write '\\\\' for a backslash, or use "
            "single quotes\n");
  EXPECT_EQ(ArgumentIn("module m {\n description \"\\d\";\n yang-version 1;}"), "\\d");
  EXPECT_EQ(ArgumentIn("module m {\n description \"\\d\";\n c:x { yang-version 1.1; }}"), "\\d");
}

// The quote stands in column 13, so 13 columns of each line go.
TEST(DoubleQuotedString, LosesTheIndentationOfItsLines) {
  for (const Row& row : std::initializer_list<Row>{
           {"\"one\n             two\"", "one\ntwo"},
           {"\"one\n               two\"", "one\n  two"},
           {"\"one\n   two\"", "one\ntwo"},
           {"\"one\ntwo\"", "one\ntwo"},
           {"\"one\n\n             two\n             \"", "one\n\ntwo\n"},
           {"\"one\r\n             two\r\n\"", "one\ntwo\n"},
           {"\"one\n\t     two\"", "one\ntwo"},
           {"\"one\n\t\ttwo\"", "one\n   two"},
           {"\"one\n          \ttwo\"", "one\n     two"},
           {"\"one\n\t\t\ttwo\"", "one\n   \ttwo"},
           {"\"one\n\\ttwo\"", "one\n\ttwo"},
           {"\"one\n             \\ttwo\"", "one\n\ttwo"},
           {"\"one\n\t\t\\ttwo\"", "one\n   \ttwo"},
       }) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(ArgumentOfWritten(row.written), row.argument);
  }
}

TEST(DoubleQuotedString, LosesBlanksBeforeTheEndOfALine) {
  for (const Row& row : std::initializer_list<Row>{
           {"\"one \t \n             two \"", "one\ntwo "},
           {"\"one \t \r\n             two\"", "one\ntwo"},
           {"\"  \n             \"", "\n"},
           {"\"one\n\t\t\n             two\"", "one\n\ntwo"},
           {"\"one\\t\n             two\"", "one\t\ntwo"},
           {"\"one\\n\n             two\"", "one\n\ntwo"},
           {"\"one \\n two\"", "one \n two"},
       }) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(ArgumentOfWritten(row.written), row.argument);
  }
}

TEST(DoubleQuotedString, IsIndentedByTheColumnOfItsOwnQuote) {
  EXPECT_EQ(ArgumentIn("module m {\n\tdescription \"one\n                    \t  two\";}"),
            "one\n         two");
  EXPECT_EQ(ArgumentIn("module m {\ndescription\n  \"one\n    two\n   three\";}"),
            "one\n two\nthree");
  EXPECT_EQ(ArgumentIn("module m { /* \xc3\xa4 */ description \"one\n"
                       "                               two\";}"),
            "one\ntwo");
  EXPECT_EQ(ArgumentIn("module m {\ndescription \"a\"\n  + \"one\n     two\n      three\";}"),
            "aone\ntwo\n three");
}

TEST(JoinedStrings, AreOne) {
  for (const Row& row : std::initializer_list<Row>{
           {"\"a\" + 'b' + \"c\"", "abc"},
           {"\"a\"+'b'", "ab"},
           {"\"a\" // comment\n + /* comment */ 'b'", "ab"},
           {"'' + ''", ""},
           {"\"\" + 'b'", "b"},
           {"'a\\n' + \"\\n\" + '\\n'", "a\\n\n\\n"},
           {"'a' + \"b\n             c\" + 'd'", "ab\ncd"},
       }) {
    SCOPED_TRACE(row.written);
    EXPECT_EQ(ArgumentOfWritten(row.written), row.argument);
  }
}

TEST(JoinedStrings, NeedQuotesOnBothSides) {
  EXPECT_EQ(ArgumentOfWritten("\"a\" + b"),
            "error 2:19: '+' is followed by no quoted string; quote what follows it\n"
            "2:19: ';' or '{' is missing after 'description'\n");
  EXPECT_NE(ArgumentOfWritten("a + \"b\"").find("';' or '{' is missing"), std::string::npos);
}

TEST(JoinedStrings, MayBeVeryMany) {
  std::string text = "module m { description \"x\"";
  for (int i = 0; i < 100000; ++i) text += " + 'y'";
  text += ";}";
  EXPECT_EQ(ArgumentIn(text), "x" + std::string(100000, 'y'));
}

}  // namespace
}  // namespace compiler
