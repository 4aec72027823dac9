// SPDX-License-Identifier: BSD-3-Clause
// How findings are settled and printed.
#include <gtest/gtest.h>

#include "compiler/lint/lint.h"
#include "compiler/reading/session.h"

namespace compiler {
namespace {

struct Printed : testing::Test {
  Printed() : session(OpenSession()) {
    session->files.push_back({"one.yang", true});
    session->files.push_back({"two.yang", true});
  }
  void Add(size_t file, uint32_t line, uint32_t column, const char* message,
           Severity severity = Severity::kError, const char* group = "type") {
    AddFindingAt(&report, severity, group, {&session->files[file], line, column}, message, "do it");
  }
  std::string Settled(const LintOptions& options = LintOptions()) {
    SettleFindings(*session, options, &report);
    return FindingsAsLines(report);
  }
  std::unique_ptr<Session> session;
  Report report;
};

TEST_F(Printed, StandInTheOrderOfFilesLinesAndColumns) {
  Add(1, 1, 1, "d");
  Add(0, 10, 1, "c");
  Add(0, 2, 9, "b");
  Add(0, 2, 3, "a");
  EXPECT_EQ(
      "one.yang:2:3: error: a; do it [type]\n"
      "one.yang:2:9: error: b; do it [type]\n"
      "one.yang:10:1: error: c; do it [type]\n"
      "two.yang:1:1: error: d; do it [type]\n",
      Settled());
}

TEST_F(Printed, AreSaidOnceOfAPlaceHoweverOftenItIsUsed) {
  Add(0, 2, 3, "a");
  Add(0, 2, 3, "b");
  Add(0, 2, 3, "a");
  const Place use = {&session->files[1], 7, 1};
  report.findings.back().usedAt = &use;
  EXPECT_EQ("one.yang:2:3: error: a; do it [type]\none.yang:2:3: error: b; do it [type]\n",
            Settled());
}

TEST_F(Printed, NameThePlaceOfUse) {
  Add(0, 2, 3, "a", Severity::kFatal);
  const Place use = {&session->files[1], 7, 1};
  report.findings.back().usedAt = &use;
  EXPECT_EQ("one.yang:2:3: error: a, used at two.yang:7; do it [type]\n", Settled());
}

TEST_F(Printed, KeepControlCharactersOffTheLine) {
  Add(0, 1, 1, "a\nb\x1b");
  EXPECT_EQ("one.yang:1:1: error: a\\x0ab\\x1b; do it [type]\n", Settled());
}

TEST_F(Printed, LeaveOutWarningsThatAreNotWantedAndNoErrors) {
  LintOptions options;
  ASSERT_TRUE(SetLintClass(&options, "no-unused"));
  ASSERT_TRUE(SetLintClass(&options, "no-type"));
  Add(0, 1, 1, "a", Severity::kWarning, "unused");
  Add(0, 2, 1, "b", Severity::kWarning, "style");
  Add(0, 3, 1, "c", Severity::kError, "type");
  EXPECT_EQ("one.yang:3:1: error: c; do it [type]\n", Settled(options));
  EXPECT_EQ(1u, CountErrors(report));
}

TEST_F(Printed, AreAnArrayOfObjectsInJson) {
  EXPECT_EQ("[]\n", FindingsAsJson(report));
  Add(0, 1, 2, "a \"b\" \\ \n");
  Add(1, 3, 4, "c", Severity::kWarning, "unused");
  EXPECT_EQ(
      "[\n"
      "  {\"file\": \"one.yang\", \"line\": 1, \"column\": 2, \"severity\": \"error\","
      " \"class\": \"type\", \"message\": \"a \\\"b\\\" \\\\ \\u000a\", \"advice\": \"do it\"},\n"
      "  {\"file\": \"two.yang\", \"line\": 3, \"column\": 4, \"severity\": \"warning\","
      " \"class\": \"unused\", \"message\": \"c\", \"advice\": \"do it\"}\n"
      "]\n",
      FindingsAsJson(report));
}

TEST_F(Printed, AreJsonWhateverTheNameOfTheFile) {
  session->files.push_back({"a\xff\xe2\x82\"\x1f\xc3\xbc\xed\xa0\x80.yang", true});
  Add(2, 1, 1, "m\xe2");
  EXPECT_EQ(
      "[\n  {\"file\": \"a\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\\\"\\u001f\xc3\xbc"
      "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd.yang\", \"line\": 1, \"column\": 1,"
      " \"severity\": \"error\", \"class\": \"type\", \"message\": \"m\xef\xbf\xbd\","
      " \"advice\": \"do it\"}\n]\n",
      FindingsAsJson(report));
}

TEST(SetLintClass, TakesClassesOnly) {
  LintOptions options;
  EXPECT_TRUE(SetLintClass(&options, "style"));
  EXPECT_TRUE(SetLintClass(&options, "no-style"));
  for (const char* text : {"", "no-", "styles", "no-no-style", "Style"})
    EXPECT_FALSE(SetLintClass(&options, text)) << text;
}

}  // namespace
}  // namespace compiler
