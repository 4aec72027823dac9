// SPDX-License-Identifier: BSD-3-Clause
#include <qmodel/error.h>

#include "context/guard.h"
#include "xpath/eval.h"
#include "xpath/functions.h"
#include "xpath/object.h"

// Primary expressions, XPath 1.0 sections 3.1 and 3.2: literals, numbers, function
// calls and parentheses. Each leaves one operand, a function call its result.

static uint32_t ConsumeClosingParen(const QmXpathExpr* expr, uint32_t* index) {
  if (KindAt(expr, *index) != QM_XPATH_TOKEN_RPAREN) return QM_XPATH_BAD_PAREN;
  ++*index;
  return QM_OK;
}

static uint32_t EvalParentheses(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const uint32_t ret = QM_XPATH_EvalSubExpr(ctx, expr, index);
  return ret != QM_OK ? ret : ConsumeClosingParen(expr, index);
}

uint32_t QM_XPATH_EvalPrimaryExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  switch (KindAt(expr, *index)) {
    case QM_XPATH_TOKEN_LITERAL:
      return QM_XPATH_EvalLiteral(ctx, expr, index);
    case QM_XPATH_TOKEN_NUMBER:
      return QM_XPATH_EvalNumber(ctx, expr, index);
    case QM_XPATH_TOKEN_FUNCNAME:
      return QM_XPATH_EvalFunctionCall(ctx, expr, index);
    case QM_XPATH_TOKEN_LPAREN:
      return EvalParentheses(ctx, expr, index);
    default:
      return QM_XPATH_BAD_PRIMARY;
  }
}

uint32_t QM_XPATH_EvalLiteral(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const QmXpathToken* token = &expr->tokens[*index];
  ++*index;
  return QM_XPATH_PushStringToObjStack(ctx->objStack, expr->text + token->start + 1,
                                       token->length - 2);
}

uint32_t QM_XPATH_EvalNumber(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const QmHeld<char> text(QM_XPATH_CopyTokenContent(expr, *index));
  if (!text) return QM_NO_MEMORY;
  ++*index;
  return QM_XPATH_PushNumberToObjStack(ctx->objStack, QM_XPATH_ConvertStringToNumber(text.Get()));
}

uint32_t QM_XPATH_EvalFunctionCall(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const QmXpathToken* token = &expr->tokens[*index];
  const QmXpathFunc function = FindXpathFunction(expr->text + token->start, token->length);
  if (function == nullptr) return QM_XPATH_UNKNOWN_FUNCTION;
  ++*index;
  if (KindAt(expr, *index) != QM_XPATH_TOKEN_LPAREN) return QM_XPATH_BAD_PAREN;
  uint32_t ret = QM_XPATH_EvalFunctionCallArguments(ctx, expr, index);
  if (ret == QM_OK) ret = ConsumeClosingParen(expr, index);
  return ret != QM_OK ? ret : function(ctx);
}

// Each argument is opened by the "(" or by the "," in front of it. Their number
// is not checked: what a function does not take stays on the operand stack.
uint32_t QM_XPATH_EvalFunctionCallArguments(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                            uint32_t* index) {
  do {
    const uint32_t ret = QM_XPATH_EvalSubExpr(ctx, expr, index);
    if (ret != QM_OK) return ret;
  } while (KindAt(expr, *index) == QM_XPATH_TOKEN_COMMA);
  return QM_OK;
}
