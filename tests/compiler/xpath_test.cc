// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/words/xpath.h"

#include <gtest/gtest.h>

#include <string>

namespace compiler {
namespace {

std::string Dump(const Xpath& xpath, uint32_t index);

std::string DumpSteps(const Xpath& xpath, const std::vector<XpathStep>& steps) {
  std::string out;
  for (const XpathStep& step : steps) {
    out += step.descendants ? " //" : " /";
    if (step.isShort) {
      out += xpath.Of(step.span);
      continue;
    }
    if (step.axis != XpathAxis::kChild)
      out += "axis" + std::to_string(static_cast<int>(step.axis)) + "::";
    if (!step.prefix.empty()) out += std::string(xpath.Of(step.prefix)) + ":";
    out += xpath.Of(step.name);
    for (const uint32_t predicate : step.predicates) out += "[" + Dump(xpath, predicate) + "]";
  }
  return out;
}

// Prefix notation: "(and a (= b c))", which shows what binds how.
std::string Dump(const Xpath& xpath, uint32_t index) {
  const XpathNode& node = xpath.At(index);
  switch (node.kind) {
    case XpathKind::kLiteral:
    case XpathKind::kNumber:
    case XpathKind::kVariable:
      return std::string(xpath.Of(node.span));
    case XpathKind::kGroup:
      return "{" + Dump(xpath, node.operands[0]) + "}";
    case XpathKind::kNegate:
      return "(- " + Dump(xpath, node.operands[0]) + ")";
    case XpathKind::kPath: {
      std::string out = node.absolute ? "<abs" : "<";
      if (!node.operands.empty()) out += Dump(xpath, node.operands[0]);
      for (const uint32_t predicate : node.predicates) out += "[" + Dump(xpath, predicate) + "]";
      return out + DumpSteps(xpath, node.steps) + ">";
    }
    case XpathKind::kCall: {
      std::string out = std::string(xpath.Of(node.name)) + "(";
      for (size_t i = 0; i < node.operands.size(); ++i) {
        out += (i == 0 ? "" : ", ") + Dump(xpath, node.operands[i]);
      }
      return out + ")";
    }
    default: {
      std::string out = "(" + Dump(xpath, node.operands[0]);
      for (size_t i = 1; i < node.operands.size(); ++i) {
        out += " " + std::string(xpath.Of(node.operators[i - 1])) + " " +
               Dump(xpath, node.operands[i]);
      }
      return out + ")";
    }
  }
}

std::string Parsed(const std::string& text) {
  Xpath xpath;
  XpathError error;
  if (!ParseXpath(text, &xpath, &error)) return std::to_string(error.offset) + ": " + error.message;
  const XpathNode& root = xpath.At(xpath.root);
  EXPECT_LE(root.span.end, text.size());
  return Dump(xpath, xpath.root);
}

TEST(ParseXpath, OperatorsBindInTheirOrder) {
  const struct {
    const char* text;
    const char* tree;
  } kRows[] = {
      {"a or b and c", "(< /a> or (< /b> and < /c>))"},
      {"a and b or c and d or e", "((< /a> and < /b>) or (< /c> and < /d>) or < /e>)"},
      {"a = b != c", "(< /a> = < /b> != < /c>)"},
      {"a < b = c >= d", "((< /a> < < /b>) = (< /c> >= < /d>))"},
      {"1 + 2 * 3 - 4", "(1 + (2 * 3) - 4)"},
      {"-a|b", "(- (< /a> | < /b>))"},
      {"- 1 * 2", "((- 1) * 2)"},
      {"--1", "(- (- 1))"},
      {"(a or b) and c", "({(< /a> or < /b>)} and < /c>)"},
      {"a div b mod c", "(< /a> div < /b> mod < /c>)"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Parsed(row.text), row.tree);
  }
}

TEST(ParseXpath, NamesAndOperatorsAreToldApartByWhatStandsBefore) {
  const struct {
    const char* text;
    const char* tree;
  } kRows[] = {
      {"and and or", "(< /and> and < /or>)"},
      {"div div mod", "(< /div> div < /mod>)"},
      {"* * *", "(< /*> * < /*>)"},
      {"a-b", "< /a-b>"},
      {"a -b", "(< /a> - < /b>)"},
      {"not(a)", "not(< /a>)"},
      {"not = 1", "(< /not> = 1)"},
      {"text", "< /text>"},
      {"a/text()", "< /a /text>"},
      {"p:*/p:x", "< /p:* /p:x>"},
      {"child::a/parent::node()/@b", "< /a /axis1::node /axis3::b>"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Parsed(row.text), row.tree);
  }
}

TEST(ParseXpath, PathsKeepTheirStepsAndPredicates) {
  const struct {
    const char* text;
    const char* tree;
  } kRows[] = {
      {"/", "<abs>"},
      {"(/) and /", "({<abs>} and <abs>)"},
      {"/ = 1", "(<abs> = 1)"},
      {"/p:a//b[x='1'][2]/..", "<abs /p:a //b[(< /x> = '1')][2] /..>"},
      {"//a", "<abs //a>"},
      {". = './..'", "(< /.> = './..')"},
      {".. /a", "< /.. /a>"},
      {"current()/../a", "<current() /.. /a>"},
      {"(a|b)[1]/c", "<{(< /a> | < /b>)}[1] /c>"},
      {"deref(../x)/../y", "<deref(< /.. /x>) /.. /y>"},
      {"concat('a', \"b\", c)", "concat('a', \"b\", < /c>)"},
      {"$v/a", "<$v /a>"},
      {".5 + 5.", "(.5 + 5.)"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Parsed(row.text), row.tree);
  }
}

TEST(ParseXpath, MistakesAreNamedWithTheirOffset) {
  const struct {
    const char* text;
    const char* message;
  } kRows[] = {
      {"", "0: the expression is empty"},
      {"  ", "2: the expression is empty"},
      {"a b", "2: \"b\" stands where an operator is expected"},
      {"a andx", "2: \"andx\" stands where an operator is expected"},
      {"(a", "2: \")\" is missing here"},
      {"a)", "1: the expression should end before this"},
      {"a[1", "3: \"]\" is missing here"},
      {"'x", "0: this literal has no closing quote"},
      {"a and", "5: an operand is missing here"},
      {"= 1", "0: an operand is missing here"},
      {"/ and /", "7: a step is missing behind the \"/\""},
      {"a/", "2: a step is missing behind the \"/\""},
      {"a ! b", "2: this character belongs to no expression"},
      {"p: = 1", "1: a name is missing behind this \":\""},
      {"f(a b)", "4: \"b\" stands where an operator is expected"},
      {"f(1 2)", "4: \",\" is missing here"},
      {"sideways::a", "0: \"sideways\" is no axis"},
      {"a | -b", "4: a sign cannot stand here"},
      {"1.2.3", "3: the expression should end before this"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Parsed(row.text), row.message);
  }
}

TEST(ParseXpath, NestingIsBoundedAndLongChainsAreNot) {
  EXPECT_EQ(Parsed(std::string(300, '(') + "a" + std::string(300, ')')),
            "256: the expression is nested too deep");
  EXPECT_EQ(Parsed(std::string(300, '-') + "1"), "256: the expression is nested too deep");
  std::string chain = "a";
  for (int i = 0; i < 100000; ++i) chain += " or a";
  Xpath xpath;
  XpathError error;
  ASSERT_TRUE(ParseXpath(chain, &xpath, &error)) << error.message;
  EXPECT_EQ(xpath.At(xpath.root).operands.size(), 100001U);
}

TEST(ParseXpath, SpansAreThoseOfTheText) {
  Xpath xpath;
  XpathError error;
  ASSERT_TRUE(ParseXpath(" a/p:b [1] = 'x' ", &xpath, &error));
  const XpathNode& root = xpath.At(xpath.root);
  EXPECT_EQ(xpath.Of(root.span), "a/p:b [1] = 'x'");
  const XpathNode& path = xpath.At(root.operands[0]);
  EXPECT_EQ(xpath.Of(path.span), "a/p:b [1]");
  EXPECT_EQ(xpath.Of(path.steps[1].span), "p:b [1]");
  EXPECT_EQ(xpath.Of(path.steps[1].prefix), "p");
  EXPECT_EQ(xpath.Of(path.steps[1].name), "b");
  EXPECT_EQ(LiteralText(xpath, root.operands[1]), "x");
}

TEST(CheckXpathCalls, UnknownFunctionsWrongCountsAndVariablesAreNamed) {
  Xpath xpath;
  XpathError error;
  ASSERT_TRUE(
      ParseXpath("foo(1) and count() and not(a, b) and $v and concat('a') and substring('a')",
                 &xpath, &error));
  std::string all;
  for (const XpathError& mistake : CheckXpathCalls(xpath)) {
    all += std::to_string(mistake.offset) + " " + mistake.message + "\n";
  }
  EXPECT_EQ(all,
            "0 there is no function \"foo\"\n"
            "11 \"count\" takes 1 argument, not 0\n"
            "23 \"not\" takes 1 argument, not 2\n"
            "37 conditions have no variables\n"
            "44 \"concat\" takes at least 2 arguments, not 1\n"
            "60 \"substring\" takes 2 to 3 arguments, not 1\n");
}

TEST(TypeOf, FollowsOperatorsAndFunctions) {
  const struct {
    const char* text;
    XpathType type;
  } kRows[] = {
      {"a", XpathType::kNodeSet},           {"(a | b)", XpathType::kNodeSet},
      {"current()/a", XpathType::kNodeSet}, {"1", XpathType::kNumber},
      {"-a", XpathType::kNumber},           {"a + 1", XpathType::kNumber},
      {"((a = 1))", XpathType::kBoolean},   {"not(a)", XpathType::kBoolean},
      {"'x'", XpathType::kString},          {"string(a)", XpathType::kString},
      {"true()", XpathType::kBoolean},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    Xpath xpath;
    XpathError error;
    ASSERT_TRUE(ParseXpath(row.text, &xpath, &error));
    EXPECT_EQ(TypeOf(xpath, xpath.root), row.type);
  }
}

}  // namespace
}  // namespace compiler
