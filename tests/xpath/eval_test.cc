// SPDX-License-Identifier: BSD-3-Clause
#include "xpath/eval.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/guard.h"
#include "tests/support/condition_tree.h"
#include "tests/support/counting_memory.h"
#include "xpath/eval_path.h"
#include "xpath/object.h"

using condition_tree::Tree;

namespace {

constexpr uint32_t kTrue = 0;
constexpr uint32_t kFalse = QM_XPATH_FALSE;

constexpr const char* kData =
    "<a>x</a><n>5</n><e/><id>dog</id><did>dd:cat</did>"
    "<sub><x>1</x><l><k>1</k><m>1</m><v>one</v></l><l><k>2</k><m>2</m><v>two</v></l></sub>";

struct Row {
  const char* condition;
  uint32_t status;
};

template <size_t N>
void ExpectAt(const char* path, const Row (&rows)[N]) {
  Tree tree(kData);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.condition);
    EXPECT_EQ(row.status, tree.Eval(path, row.condition));
  }
}

TEST(EvalCondition, RefusesNull) {
  Tree tree(kData);
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalCondition(nullptr, tree.Element("a"), "1"));
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalCondition(tree.Document(), nullptr, "1"));
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalCondition(tree.Document(), tree.Element("a"), nullptr));
}

TEST(EvalCondition, TextsThatCannotBeTokenizedAre28929) {
  constexpr Row kRows[] = {{"$x", QM_XPATH_BAD_TOKEN},
                           {"'open", QM_XPATH_BAD_TOKEN},
                           {"a b", QM_XPATH_BAD_TOKEN},
                           {"child::a", QM_XPATH_BAD_TOKEN}};
  ExpectAt("", kRows);
}

TEST(EvalCondition, OneOperandIsTheResult) {
  constexpr Row kRows[] = {
      {"1", kTrue},
      {"0", kFalse},
      {"'x'", kTrue},
      {"''", kFalse},
      {"a", kTrue},
      {"b", kFalse},
      {"0.0000000000000001", kFalse},
      {"", QM_INVALID},
      {"  ", QM_INVALID},
      {"1 2", QM_INVALID},
      {"'x' 'y'", QM_INVALID},
      {"()", QM_INVALID},
      {"(1)", kTrue},
      {"0.001", kTrue},
      {".5.3", kFalse},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, ComparesASiblingsText) {
  constexpr Row kRows[] = {
      {"../a = 'x'", kTrue},        {"../a = 'y'", kFalse},     {"../a != 'y'", kTrue},
      {"../missing = 'x'", kFalse}, {"../missing = ''", kTrue}, {"../e = ''", kTrue},
      {"../n = '5'", kTrue},        {". = 'x'", kTrue},         {"'x' = .", kTrue},
      {"'a' = 'a '", kFalse},       {"'a' != 'a '", kTrue},     {"../n = ../sub/x", kFalse},
  };
  ExpectAt("a", kRows);
}

TEST(EvalCondition, ComparesNumbers) {
  constexpr Row kRows[] = {
      {"1 = 1.0", kTrue},    {"1 != 1.0", kFalse},    {"n = 5", kTrue},
      {"n = '5.0'", kFalse}, {"n = 5.0", kTrue},      {"1 = 1.0000000000000001", kTrue},
      {"1 = 1.001", kFalse}, {"n > 4.5", kTrue},      {"n < 4.5", kFalse},
      {"n >= 5", kTrue},     {"n <= 5", kTrue},       {"n > 5", kFalse},
      {"'10' > '9'", kTrue}, {"a > 3", kFalse},       {"a < 3", kFalse},
      {"a > 'x'", kFalse},   {"a >= 'x'", kFalse},    {"a = 3", kFalse},
      {"a != 3", kTrue},     {"e = 0", kFalse},       {"missing != 1", kTrue},
      {".5.3 != 1", kTrue},  {".5.3 = .5.3", kFalse}, {"missing < 1", kFalse},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, ComparesBooleans) {
  constexpr Row kRows[] = {
      {"not(a) = 0", kTrue},         {"not(missing) = 'x'", kTrue}, {"not(missing) = ''", kFalse},
      {"not(missing) != 1", kFalse}, {"not(missing) > 0", kTrue},   {"not(a) >= 1", kFalse},
      {"not(a) = not(n)", kTrue},    {"1 = 1 = 1", kTrue},          {"2 > 1 = 1", kTrue},
      {"3 > 2 > 1", kFalse},         {"not(missing) = a", kTrue},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, BindsOrLoosestAndRelationalTightest) {
  constexpr Row kRows[] = {
      {"1 or 0 and 0", kTrue},
      {"(1 or 0) and 0", kFalse},
      {"0 and 0 or 1", kTrue},
      {"1 = 2 or 1 = 1 and 2 = 2", kTrue},
      {"1 = 2 or 1 = 1 and 2 = 3", kFalse},
      {"a = 'x' and n > 4", kTrue},
      {"a = 'x' and n > 6", kFalse},
      {"a = 'y' or n > 4", kTrue},
      {"1 = 3 > 2", kTrue},
      {"(a = 'x') and (not(missing) or 0)", kTrue},
      {"((((1))))", kTrue},
      {"a and sub/x and not(b)", kTrue},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, BothSidesAreAlwaysEvaluated) {
  constexpr Row kRows[] = {{"1 or count(x)", QM_XPATH_UNKNOWN_FUNCTION},
                           {"0 and count(x)", QM_XPATH_UNKNOWN_FUNCTION},
                           {"1 or 1 + 1", QM_XPATH_NO_EVALUATOR}};
  ExpectAt("", kRows);
}

TEST(EvalCondition, OperatorsWithoutEvaluatorAre28931) {
  constexpr Row kRows[] = {
      {"a + 1 = 2", QM_XPATH_NO_EVALUATOR}, {"1 - 1", QM_XPATH_NO_EVALUATOR},
      {"2 * 3", QM_XPATH_NO_EVALUATOR},     {"4 div 2", QM_XPATH_NO_EVALUATOR},
      {"4 mod 2", QM_XPATH_NO_EVALUATOR},   {"a | n", QM_XPATH_NO_EVALUATOR},
      {"(1 + 1)", QM_XPATH_NO_EVALUATOR},   {"not(1 + 1)", QM_XPATH_NO_EVALUATOR},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, AMissingOperandIs22) {
  constexpr Row kRows[] = {
      {"1 =", QM_INVALID}, {"= 1", QM_INVALID},      {"1 and", QM_INVALID},
      {"- 1", QM_INVALID}, {"1 = = 1", QM_INVALID},  {"(1 =)", QM_INVALID},
      {"| a", QM_INVALID}, {"not(1 =)", QM_INVALID},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, UnbalancedParenthesesAre28930) {
  constexpr Row kRows[] = {
      {"(1", QM_XPATH_BAD_PAREN},     {"1)", QM_XPATH_BAD_PAREN},
      {"(", QM_XPATH_BAD_PAREN},      {")", QM_XPATH_BAD_PAREN},
      {"a, n", QM_XPATH_BAD_PAREN},   {",", QM_XPATH_BAD_PAREN},
      {"not(a", QM_XPATH_BAD_PAREN},  {"not(", QM_XPATH_BAD_PAREN},
      {"((1)", QM_XPATH_BAD_PAREN},   {"(1))", QM_XPATH_BAD_PAREN},
      {"(1, 2)", QM_XPATH_BAD_PAREN}, {"not(a))", QM_XPATH_BAD_PAREN},
      {"(1 = 1", QM_XPATH_BAD_PAREN},
  };
  ExpectAt("", kRows);
}

TEST(EvalCondition, AtMost256SubExpressionsAreOpen) {
  Tree tree(kData);
  EXPECT_EQ(kTrue, tree.Eval(std::string(256, '(') + "1" + std::string(256, ')')));
  EXPECT_EQ(QM_XPATH_BAD_PAREN, tree.Eval(std::string(257, '(') + "1" + std::string(257, ')')));
  EXPECT_EQ(QM_XPATH_BAD_PAREN, tree.Eval(std::string(10000, '(')));
  // Closed ones do not count.
  std::string many = "(1)";
  for (int i = 0; i < 300; ++i) many += " and (1)";
  EXPECT_EQ(kTrue, tree.Eval(many));
}

TEST(EvalCondition, UnknownFunctionsAre28936) {
  constexpr Row kRows[] = {
      {"count(x) > 0", QM_XPATH_UNKNOWN_FUNCTION},
      {"true()", QM_XPATH_UNKNOWN_FUNCTION},
      {"Not(a)", QM_XPATH_UNKNOWN_FUNCTION},
      {"no(a)", QM_XPATH_UNKNOWN_FUNCTION},
      {"nott(a)", QM_XPATH_UNKNOWN_FUNCTION},
      {"c:not(a)", QM_XPATH_UNKNOWN_FUNCTION},
      {"derived-from-or-self2(id, 'c:dog')", QM_XPATH_UNKNOWN_FUNCTION},
      {"*(a)", QM_XPATH_UNKNOWN_FUNCTION},
  };
  ExpectAt("", kRows);
}

TEST(FunctionNot, NegatesTheOperandOnTop) {
  constexpr Row kRows[] = {
      {"not(missing)", kTrue},
      {"not(a)", kFalse},
      {"not(0)", kTrue},
      {"not('')", kTrue},
      {"not('x')", kFalse},
      {"not (a)", kFalse},
      {"not(not(a))", kTrue},
      {"not()", QM_INVALID},
      {"not(a, n)", QM_INVALID},
      {"not(a = 'y')", kTrue},
      {"not(.5.3)", kTrue},
      // Without an argument it takes what an earlier operand left.
      {"a and not()", QM_INVALID},
      {"a not()", QM_XPATH_BAD_TOKEN},
  };
  ExpectAt("", kRows);
}

TEST(LocationPath, StepsTakeTheFirstChildOfTheirName) {
  constexpr Row kRows[] = {
      {"sub/x = '1'", kTrue},
      {"sub/l/v = 'one'", kTrue},
      {"sub/l/v = 'two'", kFalse},
      {"./sub/./x = '1'", kTrue},
      {"sub/../a = 'x'", kTrue},
      {"c:sub/c:x = '1'", kTrue},
      {"zz:sub/x = '1'", kTrue},
      {"sub//x = '1'", kTrue},
      {"sub/", kTrue},
      {"sub/x/ = '1'", kTrue},
      {"missing/a", kFalse},
      {"missing/../a", kFalse},
      {"a/x", kFalse},
      {"*", kFalse},
      {"c:*", kFalse},
      {"sub/*/v", kFalse},
      {"a: = 'x'", kFalse},
      {"a/b/c/d/e", kFalse},
  };
  ExpectAt("", kRows);
}

TEST(LocationPath, AbsolutePathsBeginAtTheRoot) {
  constexpr Row kRows[] = {
      {"/top/a = 'x'", kTrue},
      {"/c:top/c:sub/x = '1'", kTrue},
      {"/", kTrue},
      {"/ = ''", kTrue},
      {"/a", kFalse},
      {"/./top", kTrue},
      {"//a", QM_XPATH_BAD_DOUBLE_SLASH},
      {"// ", QM_XPATH_BAD_DOUBLE_SLASH},
      {"a and //n", QM_XPATH_BAD_DOUBLE_SLASH},
      {"/top//a = 'x'", kTrue},
      {"/top/", kTrue},
  };
  ExpectAt("sub", kRows);
}

TEST(LocationPath, ParentNeverReachesTheRoot) {
  constexpr Row kRows[] = {
      {"../../a = 'x'", kTrue},
      {"../../../../a = 'x'", kTrue},
      {"../../../../../sub/x = '1'", kTrue},
      {"../../top", kFalse},
      {"/top/../a = 'x'", kTrue},
      {"/..", kFalse},
      {"/../top", kFalse},
  };
  ExpectAt("sub/x", kRows);
}

TEST(LocationPath, AnElementMayBeTheRoot) {
  Tree tree(kData);
  xmlNode* root = tree.Element("sub");
  xmlNode* current = tree.Element("sub/x");
  EXPECT_EQ(kTrue, QM_XPATH_EvalCondition(root, current, "../../.. = '1'"));
  EXPECT_EQ(kTrue, QM_XPATH_EvalCondition(root, current, "/x = '1'"));
  EXPECT_EQ(kFalse, QM_XPATH_EvalCondition(root, current, "/../a"));
  EXPECT_EQ(kFalse, QM_XPATH_EvalCondition(root, current, "../a"));
}

TEST(LocationPath, PredicatesAreSkipped) {
  constexpr Row kRows[] = {
      {"sub/l[k='2']/v = 'one'", kTrue},
      {"sub/l[k='2'][m='2']/v = 'one'", kTrue},
      {"sub/l[count(junk) + 1]/v = 'one'", kTrue},
      {"sub[1] [2]/x[3] = '1'", kTrue},
      {"a[b='1']/c", kFalse},
      {"missing[1]", kFalse},
      {"a[]", kTrue},
      {"a[']']", kTrue},
      {"sub/l[k='2'", QM_XPATH_BAD_PREDICATE},
      {"a[", QM_XPATH_BAD_PREDICATE},
      {"a[1][2", QM_XPATH_BAD_PREDICATE},
      {"sub/l[a[1]]/v", QM_INVALID},
      {".[1]", QM_INVALID},
      {"[1]", QM_INVALID},
  };
  ExpectAt("", kRows);
}

TEST(LocationPath, TokensThatAreNoStepAre22) {
  constexpr Row kRows[] = {{"@x", QM_INVALID},
                           {"a/@x", QM_INVALID},
                           {"/@x", QM_INVALID},
                           {"]", QM_INVALID},
                           {"a = @x", QM_INVALID}};
  ExpectAt("", kRows);
}

TEST(LocationPath, ANameThatIsTooLongMatchesNothing) {
  Tree tree(kData);
  const std::string name(65, 'n');
  EXPECT_EQ(kFalse, tree.Eval(name));
  EXPECT_EQ(kTrue, tree.Eval("not(" + name + "/a)"));
  EXPECT_EQ(kFalse, tree.Eval(name + ":a"));
  EXPECT_EQ(kFalse, tree.Eval(std::string(300, 'n') + ":" + std::string(300, 'n')));
  const std::string prefix(64, 'p');
  EXPECT_EQ(kTrue, tree.Eval(prefix + ":a = 'x'"));
}

TEST(LocationPath, DeclarationsAreNoChildren) {
  Tree tree("<a>x</a>", "<!DOCTYPE top [<!ELEMENT top ANY><!ENTITY a 'b'>]>");
  EXPECT_EQ(kTrue, tree.Eval("/top/a = 'x'"));
}

TEST(LocationPath, TheContextMayHaveOtherNodesBesideElements) {
  Tree tree("<!-- c --><?a b?>text<a>x</a><![CDATA[cd]]>");
  EXPECT_EQ(kFalse, tree.Eval("a = 'x'"));  // the processing instruction "a" comes first
  EXPECT_EQ(kTrue, tree.Eval("a = ''"));
  EXPECT_EQ(kTrue, tree.Eval("comment = ''"));
  EXPECT_EQ(kTrue, tree.Eval("text/.. = text"));
}

TEST(ValueContent, AnUnboundElementIsEmpty) {
  Tree tree(kData);
  tree.Element("a")->_private = nullptr;
  EXPECT_EQ(kTrue, tree.Eval("a = ''"));
  EXPECT_EQ(kTrue, tree.Eval("a"));
}

TEST(ValueContent, AnIdentityCarriesItsModulesName) {
  constexpr Row kRows[] = {{"id = 'c:dog'", kTrue},
                           {"id = 'dog'", kFalse},
                           {"did = 'd:cat'", kTrue},
                           {"did = 'dd:cat'", kFalse}};
  ExpectAt("", kRows);
}

TEST(ValueContent, AnIdentityWithoutAKnownPrefixIsEmpty) {
  Tree tree("<id>zz:dog</id><did xmlns:zz='urn:unloaded'>zz:cat</did>");
  EXPECT_EQ(kTrue, tree.Eval("id = ''"));
  EXPECT_EQ(kTrue, tree.Eval("did = ''"));
  EXPECT_EQ(kFalse, tree.Eval("derived-from(id, 'c:animal')"));
  EXPECT_EQ(kFalse, tree.Eval("derived-from-or-self(did, 'd:cat')"));
}

TEST(FunctionDerivedFrom, LooksAtDirectBases) {
  constexpr Row kRows[] = {
      {"derived-from(id, 'c:mammal')", kTrue},
      {"derived-from(id, 'mammal')", kTrue},
      {"derived-from(id, 'c:animal')", kFalse},
      {"derived-from(id, 'c:dog')", kFalse},
      {"derived-from(id, 'd:mammal')", kFalse},
      {"derived-from(id, 'nosuch')", kFalse},
      {"derived-from-or-self(id, 'c:dog')", kTrue},
      {"derived-from-or-self(id, 'dog')", kTrue},
      {"derived-from-or-self(id, 'd:dog')", kFalse},
      {"derived-from-or-self(id, 'c:mammal')", kTrue},
      {"derived-from-or-self(id, 'c:animal')", kFalse},
      {"derived-from(did, 'c:mammal')", kTrue},
      {"derived-from-or-self(did, 'd:cat')", kTrue},
      {"derived-from-or-self(did, 'cat')", kFalse},
      {"not(derived-from(id, 'c:animal')) and a = 'x'", kTrue},
  };
  ExpectAt("", kRows);
}

TEST(FunctionDerivedFrom, WorksOnTheContextNode) {
  constexpr Row kRows[] = {{"derived-from(., 'c:mammal')", kTrue},
                           {"derived-from(../did, 'c:mammal')", kTrue}};
  ExpectAt("id", kRows);
}

TEST(FunctionDerivedFrom, MissingOrEmptyArgumentsAre28937) {
  constexpr Row kRows[] = {
      {"derived-from(missing, 'c:dog')", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from(id, '')", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from(id)", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from('c:dog')", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from()", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from(id, a)", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from(id, 1)", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from('c:dog', id)", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from(id, 'c:dog', 'x')", QM_XPATH_BAD_ARGUMENTS},
      {"derived-from(1, 'c:dog')", QM_XPATH_BAD_ARGUMENTS},
  };
  ExpectAt("", kRows);
}

TEST(FunctionDerivedFrom, OtherLeavesAndBadNamesAre22) {
  constexpr Row kRows[] = {
      {"derived-from(a, 'c:dog')", QM_INVALID},    {"derived-from(sub, 'c:dog')", QM_INVALID},
      {"derived-from(id, 'a b')", QM_INVALID},     {"derived-from(id, 'a:b:c')", QM_INVALID},
      {"derived-from(., 'c:animal')", QM_INVALID}, {"derived-from(a, id, 'c:mammal')", QM_INVALID},
  };
  ExpectAt("", kRows);
}

TEST(FunctionDerivedFrom, ANodeWithoutSchemaIs28938) {
  Tree tree(kData);
  tree.Element("id")->_private = nullptr;
  EXPECT_EQ(QM_XPATH_UNBOUND_NODE, tree.Eval("derived-from(id, 'c:mammal')"));
  EXPECT_EQ(QM_XPATH_UNBOUND_NODE, tree.Eval("derived-from(/, 'c:mammal')"));
}

TEST(FunctionDerivedFrom, AValueThatNamesNoIdentityIs22) {
  Tree unknown("<id>unicorn</id>");
  EXPECT_EQ(QM_INVALID, unknown.Eval("derived-from(id, 'c:mammal')"));
  EXPECT_EQ(QM_INVALID, unknown.Eval("derived-from-or-self(id, 'c:unicorn')"));
}

TEST(FunctionDerivedFrom, AValueThatIsNoNameIsFalse) {
  Tree tree("<id>a b</id><did/>");
  EXPECT_EQ(kFalse, tree.Eval("derived-from(id, 'c:mammal')"));
  EXPECT_EQ(kFalse, tree.Eval("derived-from(did, 'c:mammal')"));
}

// The grammar steps called with tokens that the evaluator never hands them.
class Steps : public testing::Test {
 protected:
  void Start(const char* text) {
    expr_ = QM_XPATH_ExprTokenize(text);
    ASSERT_NE(nullptr, expr_);
    ASSERT_EQ(QM_OK, QM_XPATH_InitEvalCtx(&ctx_, tree_.Document(), tree_.Element("a")));
  }
  void TearDown() override {
    QM_XPATH_FreeXpathLex(expr_);
    QM_XPATH_DestroyEvalCtx(&ctx_);
  }
  Tree tree_{kData};
  QmXpathExpr* expr_ = nullptr;
  QmXpathEvalCtx ctx_{};
  uint32_t index_ = 0;
};

TEST_F(Steps, AStepMustBeANameOrDots) {
  Start("1");
  EXPECT_EQ(QM_XPATH_BAD_STEP, QM_XPATH_EvalStep(&ctx_, expr_, &index_));
}

TEST_F(Steps, APrimaryExpressionMustBeginAsOne) {
  Start("a");
  EXPECT_EQ(QM_XPATH_BAD_PRIMARY, QM_XPATH_EvalPrimaryExpr(&ctx_, expr_, &index_));
  index_ = 1;
  EXPECT_EQ(QM_XPATH_BAD_PRIMARY, QM_XPATH_EvalPrimaryExpr(&ctx_, expr_, &index_));
}

TEST_F(Steps, APrimaryExpressionIsALiteralANumberACallOrAnExpressionInParentheses) {
  constexpr Row kRows[] = {{"'x'", QM_OK},
                           {"2.5", QM_OK},
                           {"not(1)", QM_OK},
                           {"(1)", QM_OK},
                           {"(1", QM_XPATH_BAD_PAREN},
                           {"nosuch(1)", QM_XPATH_UNKNOWN_FUNCTION}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.condition);
    Start(row.condition);
    index_ = 0;
    EXPECT_EQ(row.status, QM_XPATH_EvalPrimaryExpr(&ctx_, expr_, &index_));
    if (row.status == QM_OK) {
      EXPECT_EQ(expr_->count, index_) << "all of its tokens are taken";
      EXPECT_EQ(1u, RTK_GetSize(ctx_.objStack));
    }
    TearDown();
    expr_ = nullptr;
    ctx_ = {};
  }
}

TEST_F(Steps, ASubExpressionMustBeOpened) {
  Start("a");
  EXPECT_EQ(QM_XPATH_NOT_OPENED, QM_XPATH_EvalSubExpr(&ctx_, expr_, &index_));
  index_ = 1;
  EXPECT_EQ(QM_XPATH_NOT_OPENED, QM_XPATH_EvalSubExpr(&ctx_, expr_, &index_));
}

TEST_F(Steps, ASubExpressionLeavesItsClosingTokenToTheCaller) {
  Start("(1)");
  EXPECT_EQ(QM_OK, QM_XPATH_EvalSubExpr(&ctx_, expr_, &index_));
  EXPECT_EQ(2u, index_);
  EXPECT_EQ(0u, RTK_GetSize(ctx_.opStack));
}

TEST_F(Steps, AnExpressionEndsAtTheParenthesisThatItDidNotOpen) {
  Start("not(a = (1 = 1)) = (a)");
  index_ = 2;
  ASSERT_EQ(QM_OK, QM_XPATH_PushExprTypeToStack(&ctx_, QM_XPATH_EXPR_BARRIER, 1));
  EXPECT_EQ(QM_OK, QM_XPATH_EvalExpr(&ctx_, expr_, &index_));
  EXPECT_EQ(9u, index_);
  EXPECT_EQ(1u, RTK_GetSize(ctx_.objStack));
  EXPECT_EQ(0u, RTK_GetSize(ctx_.opStack));
  EXPECT_EQ(0u, ctx_.depth);
}

TEST_F(Steps, AnExpressionThatBeginsBehindAFunctionNameCallsNothing) {
  Start("not('')");
  index_ = 1;
  EXPECT_EQ(QM_OK, QM_XPATH_EvalExpr(&ctx_, expr_, &index_));
  EXPECT_EQ(4u, index_);
  EXPECT_EQ(QM_XPATH_FALSE, QM_XPATH_GetEvalResult(&ctx_));
}

TEST_F(Steps, AFailureLeavesTheDepthAsItWas) {
  Start("(((//a)))");
  EXPECT_EQ(QM_XPATH_BAD_DOUBLE_SLASH, QM_XPATH_EvalExpr(&ctx_, expr_, &index_));
  EXPECT_EQ(0u, ctx_.depth);
  EXPECT_EQ(3u, index_);
}

TEST_F(Steps, ASubExpressionMustBeClosed) {
  Start("(1)");
  expr_->count = 2;  // the input ends before the ")"
  EXPECT_EQ(QM_XPATH_BAD_PAREN, QM_XPATH_EvalSubExpr(&ctx_, expr_, &index_));
}

TEST_F(Steps, AFunctionCallNeedsItsParenthesis) {
  Start("not(1)");
  expr_->count = 1;
  EXPECT_EQ(QM_XPATH_BAD_PAREN, QM_XPATH_EvalFunctionCall(&ctx_, expr_, &index_));
}

TEST_F(Steps, APathNeedsANodeAsItsBeginning) {
  Start("/a");
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalAbsoluteLocationPath(&ctx_, expr_, &index_));
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalRelativeLocationPath(&ctx_, expr_, &index_));
  index_ = 1;
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalNameTest(&ctx_, expr_, &index_));
  EXPECT_EQ(QM_INVALID, QM_XPATH_EvalStep(&ctx_, expr_, &index_));
  EXPECT_EQ(1u, index_);
  EXPECT_EQ(0u, RTK_GetSize(ctx_.objStack));
}

TEST_F(Steps, AnOperatorOfUnknownOperationIs28932) {
  Start("a = b");
  ASSERT_EQ(QM_OK, QM_XPATH_PushNumberToObjStack(ctx_.objStack, 1));
  ASSERT_EQ(QM_OK, QM_XPATH_PushNumberToObjStack(ctx_.objStack, 1));
  const QmXpathOpEntry op = {QM_XPATH_EXPR_EQUALITY, 0};  // token 0 is a name
  EXPECT_EQ(QM_XPATH_BAD_OPERATION, QM_XPATH_CalculateOneExpr(&ctx_, expr_, &op));
  EXPECT_EQ(0u, RTK_GetSize(ctx_.objStack));
}

TEST_F(Steps, DestroyFreesWhatTheStacksHold) {
  Start("a");
  EXPECT_EQ(QM_OK, QM_XPATH_PushStringToObjStack(ctx_.objStack, "abc", 2));
  EXPECT_EQ(QM_OK, QM_XPATH_PushExprTypeToStack(&ctx_, QM_XPATH_EXPR_OR, 0));
}

TEST_F(Steps, ReducingStopsAtABarrierAndAtLooserOperators) {
  Start("1 or 1 = 1 and 1");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(QM_OK, QM_XPATH_PushNumberToObjStack(ctx_.objStack, 1));
  EXPECT_EQ(QM_OK, QM_XPATH_PushExprTypeToStack(&ctx_, QM_XPATH_EXPR_OR, 1));
  EXPECT_EQ(QM_OK, QM_XPATH_PushExprTypeToStack(&ctx_, QM_XPATH_EXPR_EQUALITY, 3));
  EXPECT_EQ(QM_OK, QM_XPATH_PushExprTypeToStackByPriority(&ctx_, expr_, QM_XPATH_EXPR_AND, 5));
  EXPECT_EQ(2u, RTK_GetSize(ctx_.opStack));  // or, and
  EXPECT_EQ(2u, RTK_GetSize(ctx_.objStack));
  EXPECT_EQ(QM_OK, QM_XPATH_PushExprTypeToStack(&ctx_, QM_XPATH_EXPR_BARRIER, 0));
  EXPECT_EQ(QM_OK, QM_XPATH_CalculateHighPriorityExpr(&ctx_, expr_, QM_XPATH_EXPR_OR));
  EXPECT_EQ(3u, RTK_GetSize(ctx_.opStack));
}

TEST_F(Steps, TheResultIsExactlyOneOperand) {
  Start("a");
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetEvalResult(&ctx_));
  EXPECT_EQ(QM_OK, QM_XPATH_PushBooleanToObjStack(ctx_.objStack, 1));
  EXPECT_EQ(QM_OK, QM_XPATH_GetEvalResult(&ctx_));
  EXPECT_EQ(QM_OK, QM_XPATH_PushBooleanToObjStack(ctx_.objStack, 1));
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetEvalResult(&ctx_));
}

Tree* g_tree = nullptr;

TEST(EvalCondition, FailsOrIsRightForEachRefusedAllocation) {
  Tree tree(kData);
  g_tree = &tree;
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    const uint32_t ret = QM_XPATH_EvalCondition(
        g_tree->Document(), g_tree->Element(""),
        "(a = 'x' and not(missing)) and n > 4 and sub/l[k='1']/v != '' and id = 'c:dog' and "
        "derived-from(did, 'c:mammal') and not(a) = 0");
    EXPECT_TRUE(ret == QM_OK || (refusing && (ret == QM_NO_MEMORY || ret == QM_XPATH_BAD_TOKEN)))
        << ret;
  });
  EXPECT_GT(injected, 60u);
}

// A text with a colon is a name in an identityref only, and a prefix that stands for
// nothing is an empty value; missing memory must be told from both.
TEST(EvalCondition, ValuesWithColonsAreRightOrFailForEachRefusedAllocation) {
  Tree tree("<a>x:y</a><id>nowhere:dog</id>");
  g_tree = &tree;
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    const uint32_t text =
        QM_XPATH_EvalCondition(g_tree->Document(), g_tree->Element(""), "a = 'x:y'");
    EXPECT_TRUE(text == 0 || (refusing && (text == 12 || text == QM_XPATH_BAD_TOKEN))) << text;
    const uint32_t identity =
        QM_XPATH_EvalCondition(g_tree->Document(), g_tree->Element(""), "id = ''");
    EXPECT_TRUE(identity == 0 || (refusing && (identity == 12 || identity == QM_XPATH_BAD_TOKEN)))
        << identity;
  });
  EXPECT_GT(injected, 20u);
}

}  // namespace
