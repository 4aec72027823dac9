// SPDX-License-Identifier: BSD-3-Clause
#include "xpath/token.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/memory.h"
#include "tests/support/counting_memory.h"

namespace {

// "kind:text kind:text …"; "NULL" when the text is refused.
std::string Dump(const char* text) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize(text);
  if (expr == nullptr) return "NULL";
  std::string out;
  for (uint32_t i = 0; i < QM_XPATH_GetTokenNumber(expr); ++i) {
    uint32_t kind = 99;
    uint32_t length = 99;
    const char* start = QM_XPATH_GetTokenExprByPos(expr, i, &kind, &length);
    if (i > 0) out += ' ';
    out += std::to_string(kind) + ':' + std::string(start, length);
  }
  QM_XPATH_FreeXpathLex(expr);
  return out;
}

struct Row {
  const char* text;
  const char* tokens;
};

template <size_t N>
void ExpectTokens(const Row (&rows)[N]) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.tokens, Dump(row.text));
  }
}

TEST(ExprTokenize, EachSymbolHasItsKind) {
  constexpr Row kRows[] = {
      {"", ""},
      {")", "1:)"},
      {"[", "2:["},
      {"]", "3:]"},
      {"@", "6:@"},
      {",", "7:,"},
      {"|", "14:|"},
      {"+", "16:+"},
      {"-", "16:-"},
      {"=", "18:="},
      {"!=", "18:!="},
      {">=", "17:>="},
      {"<=", "17:<="},
      {">", "17:>"},
      {"<", "17:<"},
      {"..", "5:.."},
      {"//", "13://"},
      {"/", "13:/"},
      {"(", "0:("},
      {".", "4:."},
      {"/ /", "13:/ 13:/"},
      {"> =", "17:> 18:="},
      {"a!=b", "8:a 18:!= 8:b"},
      {"a>=b", "8:a 17:>= 8:b"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, OperatorNamesDependOnTheTokenBefore) {
  constexpr Row kRows[] = {
      {"a and b", "8:a 19:and 8:b"},
      {"and", "8:and"},
      {"and and and", "8:and 19:and 8:and"},
      {"a or b", "8:a 20:or 8:b"},
      {"a div b mod c", "8:a 15:div 8:b 15:mod 8:c"},
      {"(or", "0:( 8:or"},
      {"[or", "2:[ 8:or"},
      {"@or", "6:@ 8:or"},
      {",or", "7:, 8:or"},
      {"/or", "13:/ 8:or"},
      {"'x' or", "11:'x' 20:or"},
      {"1 or", "12:1 20:or"},
      {". or", "4:. 20:or"},
      {".. or", "5:.. 20:or"},
      {"a] or", "8:a 3:] 20:or"},
      {"a b", "NULL"},
      {"a And b", "NULL"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, AnOperatorNameIsComparedByItsBeginningOnly) {
  constexpr Row kRows[] = {
      {"a andx", "8:a 19:and 8:x"},
      {"a orb", "8:a 20:or 8:b"},
      {"a divmod", "8:a 15:div 8:mod"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, AStarIsANameOrMultiplies) {
  constexpr Row kRows[] = {
      {"a*b", "8:a 15:* 8:b"}, {"*", "8:*"},           {"* * *", "8:* 15:* 8:*"},
      {"/*", "13:/ 8:*"},      {"(*)", "0:( 8:* 1:)"}, {"2*3", "12:2 15:* 12:3"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, NamesMayHaveOnePrefix) {
  constexpr Row kRows[] = {
      {"_a-b.c_1", "8:_a-b.c_1"}, {"p:name", "8:p:name"}, {"p:*", "8:p:*"},
      {"p:*x", "NULL"},           {"a:", "8:a:"},         {"a:b:c", "NULL"},
      {"a::b", "NULL"},           {"child::b", "NULL"},   {"p:1a", "8:p:1a"},
      {"a:/b", "8:a: 13:/ 8:b"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, ANameBeforeAParenthesisIsAFunctionName) {
  constexpr Row kRows[] = {
      {"count(x)", "10:count 0:( 8:x 1:)"},
      {"not (a)", "10:not 0:( 8:a 1:)"},
      {"(a)", "0:( 8:a 1:)"},
      {"'x'(a)", "11:'x' 0:( 8:a 1:)"},
      {"f(g(h))", "10:f 0:( 10:g 0:( 8:h 1:) 1:)"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, NumbersHoldOneDot) {
  constexpr Row kRows[] = {
      {"12", "12:12"},
      {"1.5", "12:1.5"},
      {"1.", "12:1."},
      {".5", "12:.5"},
      {"1.2.3", "NULL"},
      {"1..2", "NULL"},
      {".5.3", "12:.5.3"},
      {".5.3.1", "NULL"},
      {"1a", "NULL"},
      {"1=1.0", "12:1 18:= 12:1.0"},
      {"../x", "5:.. 13:/ 8:x"},
      {"./x", "4:. 13:/ 8:x"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, LiteralsRunToTheNextQuoteOfTheirKind) {
  constexpr Row kRows[] = {
      {"'a b'", "11:'a b'"},
      {"\"it's\"", "11:\"it's\""},
      {"''", "11:''"},
      {"'a", "NULL"},
      {"\"a'", "NULL"},
      {"'$x'", "11:'$x'"},
      {"'a''b'", "11:'a' 11:'b'"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, OnlyFourCharactersAreBlank) {
  constexpr Row kRows[] = {
      {" \t\n\ra\t=\n'x'\r ", "8:a 18:= 11:'x'"},
      {" ", ""},
      {"a\fb", "NULL"},
      {"\va", "NULL"},
  };
  ExpectTokens(kRows);
}

TEST(ExprTokenize, CharactersWithoutARuleAreRefused) {
  for (const char* text : {"$x", "!", "a ! b", ":", "#", "&", "{", "\x80", "a;b", "\xc3\xa9"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ("NULL", Dump(text));
  }
}

TEST(ExprTokenize, NullGivesNull) {
  EXPECT_EQ(nullptr, QM_XPATH_ExprTokenize(nullptr));
}

TEST(ExprTokenize, ManyTokensGrowTheArray) {
  std::string text = "a";
  for (int i = 0; i < 40; ++i) text += "/a";
  QmXpathExpr* expr = QM_XPATH_ExprTokenize(text.c_str());
  ASSERT_NE(nullptr, expr);
  EXPECT_EQ(81u, QM_XPATH_GetTokenNumber(expr));
  EXPECT_EQ(90u, expr->capacity);
  uint32_t kind = 0;
  EXPECT_EQ(text.c_str() + 80, QM_XPATH_GetTokenExprByPos(expr, 80, &kind, nullptr));
  EXPECT_EQ(8u, kind);
  QM_XPATH_FreeXpathLex(expr);
}

TEST(ExprTokenize, StartsWithTenSlots) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize("a");
  ASSERT_NE(nullptr, expr);
  EXPECT_EQ(10u, expr->capacity);
  QM_XPATH_FreeXpathLex(expr);
}

TEST(ExprTokenize, TheCapacityIsTheTokensRoundedUpToTens) {
  for (uint32_t tokens = 1; tokens < 2500; ++tokens) {
    const std::string text(tokens, ',');
    QmXpathExpr* expr = QM_XPATH_ExprTokenize(text.c_str());
    ASSERT_NE(nullptr, expr);
    ASSERT_EQ(tokens, expr->count);
    ASSERT_EQ((tokens + 9) / 10 * 10, expr->capacity);
    QM_XPATH_FreeXpathLex(expr);
  }
}

// Copying the array for each ten tokens would cost 20,000 blocks.
TEST(ExprTokenize, ALongTextCostsFewBlocks) {
  std::string text = "a";
  for (int i = 0; i < 100000; ++i) text += "/a";
  const uint64_t before = counting_memory::AllocationCount();
  QmXpathExpr* expr = QM_XPATH_ExprTokenize(text.c_str());
  ASSERT_NE(nullptr, expr);
  EXPECT_EQ(200001u, QM_XPATH_GetTokenNumber(expr));
  // The record, ten slots, and fifteen times twice as many.
  EXPECT_EQ(17u, counting_memory::AllocationCount() - before);
  QM_XPATH_FreeXpathLex(expr);
}

TEST(TokenRules, ARecordMadeByHandGrowsByTenSlots) {
  QmXpathExpr expr = {nullptr, ", , ,", 0, 0};
  QmXpathToken token = {};
  const uint64_t before = counting_memory::AllocationCount();
  for (uint32_t i = 0; i < 45; ++i) {
    ASSERT_EQ(i == 0 ? 0u : (i + 9) / 10 * 10, expr.capacity);
    ASSERT_EQ(QM_OK, QM_XPATH_ParseCurTokenFromExpr(&expr, 2, &token));
  }
  EXPECT_EQ(45u, expr.count);
  EXPECT_EQ(50u, expr.capacity);
  EXPECT_EQ(5u, counting_memory::AllocationCount() - before);
  g_qmMemFreeFunc(expr.tokens);
}

// A token more for a record that the tokenizer made takes the same steps.
TEST(TokenRules, AFinishedRecordGrowsByTenSlots) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize(", , , , , , , , , , , , , , , , , , , ,");
  ASSERT_NE(nullptr, expr);
  ASSERT_EQ(20u, expr->count);
  ASSERT_EQ(20u, expr->capacity);
  QmXpathToken token = {};
  for (uint32_t i = 0; i < 30; ++i)
    ASSERT_EQ(QM_OK, QM_XPATH_ParseCurTokenFromExpr(expr, 2, &token));
  EXPECT_EQ(50u, expr->count);
  EXPECT_EQ(50u, expr->capacity);
  for (uint32_t i = 0; i < 50; ++i) EXPECT_EQ(7u, expr->tokens[i].kind);
  QM_XPATH_FreeXpathLex(expr);
}

TEST(ExprTokenize, GivesNullForEachRefusedAllocation) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    QmXpathExpr* expr = QM_XPATH_ExprTokenize("a/a/a/a/a/a/a/a/a/a/a/a");
    // The last refusing run meets no refusal and must give the whole expression.
    EXPECT_TRUE(QM_XPATH_GetTokenNumber(expr) == 23 || (refusing && expr == nullptr));
    QM_XPATH_FreeXpathLex(expr);
  });
  // The record, the first ten slots and two times ten more, in both modes.
  EXPECT_EQ(8u, injected);
}

TEST(GetTokenExprByPos, AnIndexPastTheEndFillsNothing) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize("a = b");
  ASSERT_NE(nullptr, expr);
  uint32_t kind = 77;
  uint32_t length = 78;
  EXPECT_EQ(nullptr, QM_XPATH_GetTokenExprByPos(expr, 3, &kind, &length));
  EXPECT_EQ(nullptr, QM_XPATH_GetTokenExprByPos(nullptr, 0, &kind, &length));
  EXPECT_EQ(77u, kind);
  EXPECT_EQ(78u, length);
  EXPECT_EQ(expr->text + 4, QM_XPATH_GetTokenExprByPos(expr, 2, nullptr, nullptr));
  QM_XPATH_FreeXpathLex(expr);
}

TEST(GetTokenNumber, NullHasNone) {
  EXPECT_EQ(0u, QM_XPATH_GetTokenNumber(nullptr));
}

TEST(FreeXpathLex, NullIsAccepted) {
  QM_XPATH_FreeXpathLex(nullptr);
}

TEST(GetTokenExprType, IsTheBindingStrength) {
  constexpr uint32_t kTypes[] = {8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 8, 7, 5, 4, 3, 2, 1, 0, 8};
  for (uint32_t kind = 0; kind < 22; ++kind) {
    SCOPED_TRACE(kind);
    EXPECT_EQ(kTypes[kind], QM_XPATH_GetTokenExprType(kind));
  }
  EXPECT_EQ(8u, QM_XPATH_GetTokenExprType(UINT32_MAX));
}

TEST(GetTokenOperationType, TellsTheOperatorsApart) {
  struct {
    const char* text;
    uint32_t operation;
  } constexpr kRows[] = {
      {"a or b", 0}, {"a and b", 1}, {"a = b", 2}, {"a != b", 3}, {"a > b", 4}, {"a < b", 5},
      {"a >= b", 6}, {"a <= b", 7},  {"a + b", 8}, {"a * b", 8},  {"a | b", 8}, {"a / b", 8},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.text);
    QmXpathExpr* expr = QM_XPATH_ExprTokenize(row.text);
    EXPECT_EQ(row.operation, QM_XPATH_GetTokenOperationType(expr, 1));
    EXPECT_EQ(8u, QM_XPATH_GetTokenOperationType(expr, 3));
    QM_XPATH_FreeXpathLex(expr);
  }
  EXPECT_EQ(8u, QM_XPATH_GetTokenOperationType(nullptr, 0));
}

TEST(TokenClasses, HoldTheirKinds) {
  for (uint32_t kind = 0; kind < 23; ++kind) {
    SCOPED_TRACE(kind);
    const bool isOperator = kind >= 13 && kind <= 20;
    const bool startsOperand = kind == 0 || kind == 2 || kind == 6 || kind == 7;
    EXPECT_EQ(isOperator ? 1u : 0u, QM_XPATH_IsCurTokenOperator(kind));
    EXPECT_EQ(kind < 13 && !startsOperand ? 1u : 0u, QM_XPATH_IsNextTokenOperator(kind));
    const bool primary = kind == 0 || kind == 10 || kind == 11 || kind == 12;
    EXPECT_EQ(primary ? 1u : 0u, QM_XPATH_IsPrimaryExprBeginToken(kind));
    const bool step = kind == 4 || kind == 5 || kind == 8 || kind == 9;
    EXPECT_EQ(step ? 1u : 0u, QM_XPATH_IsStepBeginToken(kind));
    EXPECT_EQ(step ? 1u : 0u, QM_XPATH_IsRelativeLocationPathBeginToken(kind));
    EXPECT_EQ(kind == 2 || kind == 3 ? 1u : 0u, QM_XPATH_IsEqualityOperator(kind));
    EXPECT_EQ(kind >= 4 && kind <= 7 ? 1u : 0u, QM_XPATH_IsRelationalOperator(kind));
  }
}

TEST(CopyTokenContent, CopiesTheCharactersOfTheToken) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize("abc='x y'");
  ASSERT_NE(nullptr, expr);
  char* name = QM_XPATH_CopyTokenContent(expr, 0);
  char* literal = QM_XPATH_CopyTokenContent(expr, 2);
  EXPECT_STREQ("abc", name);
  EXPECT_STREQ("'x y'", literal);
  EXPECT_EQ(nullptr, QM_XPATH_CopyTokenContent(expr, 3));
  EXPECT_EQ(nullptr, QM_XPATH_CopyTokenContent(nullptr, 0));
  g_qmMemFreeFunc(name);
  g_qmMemFreeFunc(literal);
  QM_XPATH_FreeXpathLex(expr);
}

TEST(TokenRules, AFailedTokenHasTheInvalidKind) {
  QmXpathExpr expr = {nullptr, "1.2.3", 0, 0};
  QmXpathToken token = {};
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetTokenStartWithDigit(&expr, 0, &token));
  EXPECT_EQ(21u, token.kind);
  expr.text = "'open";
  EXPECT_EQ(QM_INVALID, QM_XPATH_ParseLiteralToken(&expr, 0, &token));
  EXPECT_EQ(21u, token.kind);
  expr.text = "$";
  EXPECT_EQ(QM_INVALID, QM_XPATH_ParseCurTokenFromExpr(&expr, 0, &token));
  EXPECT_EQ(21u, token.kind);
  EXPECT_EQ(0u, expr.count);
  expr.text = "xor";
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetOperatorType(&expr, 0, &token));
  EXPECT_EQ(QM_OK, QM_XPATH_GetOperatorType(&expr, 1, &token));
  EXPECT_EQ(20u, token.kind);
}

}  // namespace
