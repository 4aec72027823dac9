// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/xpath_edit.h"

#include <gtest/gtest.h>

#include <string>

namespace compiler {
namespace {

Xpath Parse(const std::string& text) {
  Xpath xpath;
  XpathError error;
  EXPECT_TRUE(ParseXpath(text, &xpath, &error)) << text << ": " << error.message;
  return xpath;
}

// Names: "" becomes "u", "a" becomes "b", "own" becomes nothing, "x" is not known.
// Identities: "" becomes "g", "a" becomes "b".
NameRules Rules() {
  NameRules rules;
  rules.nodes = [](std::string_view prefix) -> std::optional<std::string> {
    if (prefix.empty()) return "u";
    if (prefix == "a") return "b";
    if (prefix == "own") return "";
    if (prefix == "x") return std::nullopt;
    return std::string(prefix);
  };
  rules.identities = [](std::string_view prefix) -> std::optional<std::string> {
    if (prefix.empty()) return "g";
    if (prefix == "a") return "b";
    if (prefix == "x") return std::nullopt;
    return std::string(prefix);
  };
  return rules;
}

struct Row {
  const char* text;
  const char* result;
};

TEST(RenamePrefixes, ChangesNodeTestsAndIdentitiesAndNothingElse) {
  const Row kRows[] = {
      {"  ../c  =  'q' ", "  ../u:c  =  'q' "},
      {"/a:b/own:c/d", "/b:b/c/u:d"},
      {"a:*/*", "b:*/*"},
      {"child::a:b[own:c]/.", "child::b:b[c]/."},
      {"@c", "@c"},
      {"derived-from(x1, 'id')", "derived-from(u:x1, 'g:id')"},
      {"derived-from-or-self(a:x1, \"a:id\")", "derived-from-or-self(b:x1, \"b:id\")"},
      {"c = 'a:id'", "u:c = 'b:id'"},
      {"'a:id' != current()", "'b:id' != current()"},
      {"c = 'a:id with blanks'", "u:c = 'a:id with blanks'"},
      {"c = 'http://a:id'", "u:c = 'http://a:id'"},
      {"c = 'id'", "u:c = 'id'"},
      {"'a:id' = 'a:id'", "'a:id' = 'a:id'"},
      {"concat('a:id', c)", "concat('a:id', u:c)"},
      {"d[c='a:id']/e", "u:d[u:c='b:id']/u:e"},
      {"count(a:b) > 0 and not(own:c)", "count(b:b) > 0 and not(c)"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    std::vector<UnknownPrefix> unknown;
    EXPECT_EQ(RenamePrefixes(Parse(row.text), Rules(), &unknown), row.result);
    EXPECT_TRUE(unknown.empty());
  }
}

TEST(RenamePrefixes, TellsPrefixesThatAreNotKnown) {
  std::vector<UnknownPrefix> unknown;
  EXPECT_EQ(RenamePrefixes(Parse("a:b/x:c and derived-from(q:c, 'x:d') and q:c = 'x:maybe'"),
                           Rules(), &unknown),
            "b:b/x:c and derived-from(q:c, 'x:d') and q:c = 'x:maybe'");
  ASSERT_EQ(unknown.size(), 2U);
  EXPECT_EQ(unknown[0].prefix, "x");
  EXPECT_EQ(unknown[1].prefix, "x");
}

TEST(RenamePrefixes, AsksWhatALiteralMeans) {
  NameRules rules = Rules();
  rules.isIdentity = [](const Xpath& xpath, uint32_t path, std::string_view) {
    return xpath.Of(xpath.At(path).span) == "t";
  };
  EXPECT_EQ(
      RenamePrefixes(Parse("t = 'id' or t != 'a:id' or s = 'a:id' or s = 'id'"), rules, nullptr),
      "u:t = 'g:id' or u:t != 'b:id' or u:s = 'a:id' or u:s = 'id'");
}

TEST(ShiftOneDown, PutsAStepBeforeEachPathFromTheContextNode) {
  const Row kRows[] = {
      {"a", "../a"},
      {"../a = b", "../../a = ../b"},
      {".", ".."},
      {"./a", "../a"},
      {". = 'x' and /a/b", ".. = 'x' and /a/b"},
      {"not( a )or b", "not( ../a )or ../b"},
      {"derived-from(a, 'p:i') or f(., b)", "derived-from(../a, 'p:i') or f(.., ../b)"},
      {"a[b = c]/d", "../a[b = c]/d"},
      {"a[b = current()/c]/d", "../a[b = current()/../c]/d"},
      {"a[b = current()]", "../a[b = current()/..]"},
      {"current() = 'x'", "current()/.. = 'x'"},
      {"current()/../a", "current()/../../a"},
      {"current()[a]/b", "current()/parent::node()[a]/b"},
      {"child::a | self::node()/b", "../child::a | ../self::node()/b"},
      {"string() = 'x'", "string(..) = 'x'"},
      {"a[position() = 1]", "../a[position() = 1]"},
      {"a[string() = 'x']", "../a[string() = 'x']"},
      {"deref(a)/../b", "deref(../a)/../b"},
      {"(a | b)/c", "(../a | ../b)/c"},
      {"1 = 1", "1 = 1"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(ShiftOneDown(Parse(row.text)), row.result);
  }
  EXPECT_EQ(ShiftOneDown(Parse("position() = 1")), std::nullopt);
  EXPECT_EQ(ShiftOneDown(Parse("a and last() > 1")), std::nullopt);
}

TEST(ShiftToRoot, MakesPathsAbsolute) {
  const Row kRows[] = {
      {"a", "/a"},
      {"p:a/b = 'x' and not(c)", "/p:a/b = 'x' and not(/c)"},
      {"./a", "/a"},
      {".", "(/)"},
      {"current()/a", "/a"},
      {"a[b = current()/c]", "/a[b = /c]"},
      {"current() and a", "(/) and /a"},
      {"/a", "/a"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(ShiftToRoot(Parse(row.text)), row.result);
  }
  for (const char* text : {"../a", "current()/../a", "./../a", "ancestor::a", "position() = 1"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(ShiftToRoot(Parse(text)), std::nullopt);
  }
}

TEST(JoinConditions, PutsBothInParentheses) {
  EXPECT_EQ(JoinConditions("a or b", "c"), "(a or b) and (c)");
  EXPECT_EQ(JoinConditions("", "c"), "c");
  EXPECT_EQ(JoinConditions("a", ""), "a");
  EXPECT_EQ(JoinConditions("a", "a"), "a");
}

TEST(LibraryShiftsRightly, KnowsWhereTheLibraryGoesWrong) {
  const struct {
    const char* text;
    bool right;
  } kRows[] = {
      {"../a = 'x' or b = 'y'", true},
      {"derived-from-or-self(../a, 'p:b')", true},
      {"not(../a) and (b or c)", true},
      {"/a:b/c = 'x'", true},
      {"./a = 'x'", true},
      {"../a = 'x'  ", true},
      {"current()/../a = 'x'", true},
      {"current() = 'x'", false},
      {"current() = 'x' and a/b", false},
      {"concat(a, b) = 'x'", false},  // a path behind a comma
      {"a[b and c]", false},          // an operator in a predicate
      {"a", false},                   // no room for the longer text
      {"a or b or c or d", true},
      {"a=b=c", false},
      {"string() = 'x'", false},
      {"$v", false},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(LibraryShiftsRightly(Parse(row.text)), row.right);
  }
}

}  // namespace
}  // namespace compiler
