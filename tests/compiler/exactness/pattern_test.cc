// SPDX-License-Identifier: BSD-3-Clause
// The library and the compiler have the bounds of a pattern each for itself, since neither
// may know the other. What the one says of a pattern the other does.
#include <gtest/gtest.h>
#include <libxml/xmlregexp.h>

#include <random>
#include <string>
#include <vector>

#include <qmodel/error.h>

#include "compiler/words/pattern.h"
#include "context/pattern.h"

namespace {

bool LibraryCompiles(const std::string& pattern) {
  bool isWhole = false;
  xmlRegexp* compiled = CompilePattern(pattern.c_str(), &isWhole);
  xmlSetStructuredErrorFunc(nullptr, nullptr);
  xmlRegFreeRegexp(compiled);
  return compiled != nullptr;
}

bool CompilerCompiles(const std::string& pattern) {
  return compiler::JudgePattern(pattern.c_str()) == compiler::PatternState::kCompiles;
}

bool CompilerFindsTooDeep(const std::string& pattern) {
  return compiler::JudgePattern(pattern.c_str()) == compiler::PatternState::kTooDeep;
}

std::string Times(size_t count, const std::string& part) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += part;
  return text;
}

// With a letter between them, since libxml2 takes seconds for as many in a row.
TEST(PatternBounds, AreTheSameNumberOfOptionalParts) {
  EXPECT_TRUE(LibraryCompiles(Times(512, "xa?")));
  EXPECT_TRUE(CompilerCompiles(Times(512, "xa?")));
  for (const std::string part : {"a?", "a*", "a{0,1}", "a{0}", "(|a)", "(a|)", "(a||b)"}) {
    EXPECT_EQ(LibraryCompiles(Times(8, part)), CompilerCompiles(Times(8, part))) << part;
    EXPECT_FALSE(LibraryCompiles(Times(513, part))) << part;
    EXPECT_TRUE(CompilerFindsTooDeep(Times(513, part))) << part;
  }
}

// In classes, and behind a backslash, these characters stand for themselves.
TEST(PatternBounds, DoNotCountWhatIsNoPart) {
  for (const std::string part : {"[a?]", "[*]", "\\?", "\\*", "[\\]*]", "a+", "a{1,2}", "(a|b)"}) {
    EXPECT_TRUE(LibraryCompiles(Times(600, part))) << part;
    EXPECT_TRUE(CompilerCompiles(Times(600, part))) << part;
  }
}

TEST(PatternBounds, AreTheSameNumberOfOpenClasses) {
  for (const size_t depth : {1U, 8U, 1023U, 1024U, 1025U, 2000U}) {
    const std::string open = Times(depth, "[a-z-");
    for (const std::string& pattern :
         {open, open + "[a]" + Times(depth, "]"), "x" + open + Times(depth - 1, "]")}) {
      EXPECT_EQ(LibraryCompiles(pattern), CompilerCompiles(pattern)) << depth;
    }
    const std::string nested = Times(depth, "[a-z-") + "[a]" + Times(depth, "]");
    EXPECT_EQ(depth < 1024, LibraryCompiles(nested)) << depth;
    EXPECT_EQ(depth >= 1024, CompilerFindsTooDeep(nested)) << depth;
  }
}

TEST(PatternBounds, AreTheSameForBytesThatAreNoText) {
  for (const std::string pattern : {"\xff", "a\xc3", "\xc3\xa4", "[\xed\xa0\x80]", ""})
    EXPECT_EQ(LibraryCompiles(pattern), CompilerCompiles(pattern)) << pattern;
}

TEST(PatternBounds, AreTheSameForPatternsOfAnyForm) {
  const std::vector<std::string> parts = {"a",   "[",   "]",      "(",        ")",      "|",  "?",
                                          "*",   "+",   "{0,2}",  "{3}",      "\\",     "^",  "-",
                                          "\\d", ".",   "\\p{L}", "[a-z]",    "[^0-9]", "||", "(|",
                                          "|)",  "\\[", "\\]",    "[a-z-[b]]"};
  std::mt19937 random(20261122);
  size_t good = 0;
  constexpr size_t kPatterns = 20000;
  for (size_t i = 0; i < kPatterns; ++i) {
    std::string pattern;
    const size_t length = 1 + random() % 12;
    for (size_t j = 0; j < length; ++j) pattern += parts[random() % parts.size()];
    const bool compiles = LibraryCompiles(pattern);
    ASSERT_EQ(compiles, CompilerCompiles(pattern)) << pattern;
    if (!compiles) continue;
    ++good;
    for (const char* text : {"", "a", "aa", "b3", "-", "[]"}) {
      ASSERT_EQ(QM_UTL_MatchStrWithPattern(text, pattern.c_str()) == QM_OK,
                compiler::PatternMatches(pattern.c_str(), text))
          << pattern << " on " << text;
    }
  }
  EXPECT_GT(good, kPatterns / 20);
  EXPECT_LT(good, kPatterns);
}

}  // namespace
