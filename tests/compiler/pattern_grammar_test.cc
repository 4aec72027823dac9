// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/pattern_grammar.h"

#include <gtest/gtest.h>

#include <string>

#include "compiler/words/pattern.h"

namespace compiler {
namespace {

TEST(FaultOfPattern, IsEmptyForExpressionsOfXmlSchema) {
  for (const char* pattern : {"",
                              "a|",
                              "()",
                              "^a$",
                              "a{2}",
                              "a{2,}",
                              "a{0,2}",
                              "a{2,2}(b|c)*d+e?",
                              "[a-z-[aeiou]]{2}",
                              "[^a-z-[^x-[y]]]",
                              "[-a]",
                              "[a-]",
                              "[\\w-.]",
                              "[.*+?{}()|$,]",
                              "\\p{IsBasicLatin}\\P{Nd}+",
                              "\\p{IsLatin-1Supplement}",
                              "[\\p{L}\\-\\]^]",
                              "\\n\\r\\t\\\\\\|\\.\\?\\*\\+\\(\\)\\{\\}\\-\\[\\]\\^",
                              "\\s\\S\\i\\I\\c\\C\\d\\D\\w\\W",
                              "ä{1,2}"}) {
    SCOPED_TRACE(pattern);
    EXPECT_EQ("", FaultOfPattern(pattern));
    EXPECT_EQ(PatternState::kCompiles, JudgePattern(pattern));
  }
}

TEST(FaultOfPattern, SaysWhatXmlSchemaForbids) {
  const struct {
    const char* pattern;
    const char* fault;
  } rows[] = {
      {"a{2,1}", "the quantity \"{2,1}\" descends"},
      {"\\p{IsFoo}", "there is no block of characters \"IsFoo\""},
      {"[\\P{Xy}]", "there is no category of characters \"Xy\""},
      {"\\p{Cs}", "there is no category of characters \"Cs\""},
      {"\\pL", "behind \"\\p\" stands a name in braces"},
      {"a{", "\"{\" is no quantity, such as {2}, {2,} or {2,5}"},
      {"a{,3}", "\"{,3}\" is no quantity, such as {2}, {2,} or {2,5}"},
      {"a{x}b", "\"{x}\" is no quantity, such as {2}, {2,} or {2,5}"},
      {"{2}", "\"{\" stands for itself only behind a backslash"},
      {"a}", "\"}\" stands for itself only behind a backslash"},
      {"a]", "\"]\" stands for itself only behind a backslash"},
      {"a{1}{2}", "\"{\" stands for itself only behind a backslash"},
      {"a**", "there is nothing to repeat before \"*\""},
      {"(?:a)", "there is nothing to repeat before \"?\""},
      {"|+", "there is nothing to repeat before \"+\""},
      {"(a", "a \"(\" is not closed"},
      {"a)", "a \")\" closes nothing"},
      {"[]", "a class has no characters"},
      {"[^]", "a class has no characters"},
      {"[a", "a \"[\" is not closed"},
      {"[a-[b]", "a \"[\" is not closed"},
      {"[a-[b]c]", "what is taken from a class stands at its end"},
      {"[[:alpha:]]", "\"[\" stands for itself only behind a backslash"},
      {"\\u0041", "\"\\u\" is no escape"},
      {"a\\", "\"\\\" is no escape"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.fault, FaultOfPattern(row.pattern)) << row.pattern;
}

}  // namespace
}  // namespace compiler
