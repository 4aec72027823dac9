// SPDX-License-Identifier: BSD-3-Clause
//
// Evaluates a condition in one pass over its tokens, without a syntax tree. Path
// expressions push an operand; an operator first computes the waiting operators that
// bind at least as tightly and then waits itself. A sub-expression puts a barrier on
// the operator stack, behind which nothing is computed until it ends; the barrier knows
// what opened it, so that parentheses and calls inside of each other are one loop. The
// path expressions themselves are in a file of their own.
#include "xpath/eval.h"

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/memory.h"
#include "xpath/compare.h"
#include "xpath/convert.h"
#include "xpath/eval_path.h"
#include "xpath/functions.h"
#include "xpath/object.h"

uint32_t QM_XPATH_InitEvalCtx(QmXpathEvalCtx* ctx, xmlNode* rootNode, xmlNode* currentNode) {
  *ctx = QmXpathEvalCtx{};
  ctx->currentNode = currentNode;
  ctx->rootNode = rootNode;
  ctx->opStack = RTK_CreateStack();
  ctx->objStack = RTK_CreateStack();
  if (ctx->opStack != nullptr && ctx->objStack != nullptr) return QM_OK;
  QM_XPATH_DestroyEvalCtx(ctx);
  return QM_NO_MEMORY;
}

static void FreeOpEntry(QmXpathOpEntry* op) {
  g_qmMemFreeFunc(op);
}

static QmXpathOpEntry* PopOp(QmXpathEvalCtx* ctx) {
  return static_cast<QmXpathOpEntry*>(RTK_Pop(ctx->opStack));
}

static QmXpathObject* PopObject(QmXpathEvalCtx* ctx) {
  return static_cast<QmXpathObject*>(RTK_Pop(ctx->objStack));
}

void QM_XPATH_DestroyEvalCtx(QmXpathEvalCtx* ctx) {
  while (RTK_GetSize(ctx->opStack) > 0) FreeOpEntry(PopOp(ctx));
  while (RTK_GetSize(ctx->objStack) > 0) QM_XPATH_FreeObject(PopObject(ctx));
  RTK_DeleteStack(ctx->opStack);
  RTK_DeleteStack(ctx->objStack);
  *ctx = QmXpathEvalCtx{};
}

uint32_t QM_XPATH_PushExprTypeToStack(QmXpathEvalCtx* ctx, uint32_t exprType, uint32_t tokenIndex) {
  QmHeld<QmXpathOpEntry> op(NewRecord<QmXpathOpEntry>());
  if (!op) return QM_NO_MEMORY;
  op->exprType = exprType;
  op->tokenIndex = tokenIndex;
  if (RTK_Push(ctx->opStack, op.Get()) != QM_OK) return QM_NO_MEMORY;
  static_cast<void>(op.Release());
  return QM_OK;
}

uint32_t QM_XPATH_PushExprTypeToStackByPriority(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                                uint32_t exprType, uint32_t tokenIndex) {
  const uint32_t ret = QM_XPATH_CalculateHighPriorityExpr(ctx, expr, exprType);
  return ret != QM_OK ? ret : QM_XPATH_PushExprTypeToStack(ctx, exprType, tokenIndex);
}

static bool TopBindsAsTightly(const QmXpathEvalCtx* ctx, uint32_t exprType) {
  const auto* top = static_cast<const QmXpathOpEntry*>(RTK_Peep(ctx->opStack));
  return top != nullptr && top->exprType >= exprType && top->exprType != QM_XPATH_EXPR_BARRIER;
}

uint32_t QM_XPATH_CalculateHighPriorityExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                            uint32_t exprType) {
  while (TopBindsAsTightly(ctx, exprType)) {
    const QmOwn<FreeOpEntry> op(PopOp(ctx));
    const uint32_t ret = QM_XPATH_CalculateOneExpr(ctx, expr, op.Get());
    if (ret != QM_OK) return ret;
  }
  return QM_OK;
}

uint32_t QM_XPATH_CalculateOneExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                   const QmXpathOpEntry* op) {
  if (RTK_GetSize(ctx->objStack) < 2) return QM_INVALID;
  const QmOwn<QM_XPATH_FreeObject> right(PopObject(ctx));
  const QmOwn<QM_XPATH_FreeObject> left(PopObject(ctx));
  const QmXpathEvalFunc evaluate = QM_XPATH_GetExprEvalFunc(op->exprType);
  if (evaluate == nullptr) return QM_XPATH_NO_EVALUATOR;
  const uint32_t operation = QM_XPATH_GetTokenOperationType(expr, op->tokenIndex);
  if (operation == QM_XPATH_OP_UNKNOWN) return QM_XPATH_BAD_OPERATION;
  return evaluate(ctx, operation, left.Get(), right.Get());
}

uint32_t QM_XPATH_CalculateRemainExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                      uint32_t endOfSubExpr) {
  while (RTK_GetSize(ctx->opStack) > 0) {
    const QmOwn<FreeOpEntry> op(PopOp(ctx));
    if (op->exprType == QM_XPATH_EXPR_BARRIER) {
      return endOfSubExpr != 0 ? QM_OK : QM_XPATH_BAD_PAREN;  // "(" is still open at the end
    }
    const uint32_t ret = QM_XPATH_CalculateOneExpr(ctx, expr, op.Get());
    if (ret != QM_OK) return ret;
  }
  return endOfSubExpr != 0 ? QM_XPATH_BAD_PAREN : QM_OK;  // ")" without its "("
}

// Conditions come from files, so the depth has a bound.
static uint32_t OpenSubExpr(QmXpathEvalCtx* ctx, uint32_t* index, uint32_t opening) {
  if (ctx->depth >= kQmXpathMaxDepth) return QM_XPATH_BAD_PAREN;
  const uint32_t ret = QM_XPATH_PushExprTypeToStack(ctx, QM_XPATH_EXPR_BARRIER, opening);
  if (ret != QM_OK) return ret;
  ++*index;
  ++ctx->depth;
  return QM_OK;
}

static uint32_t OpenPrimaryExpr(QmXpathEvalCtx* ctx, const QmXpathExpr* expr, uint32_t* index) {
  QmXpathFunc function = nullptr;
  uint32_t ret = QM_OK;
  if (KindAt(expr, *index) == QM_XPATH_TOKEN_FUNCNAME) ret = BeginCall(expr, index, &function);
  return ret != QM_OK ? ret : OpenSubExpr(ctx, index, *index);
}

// Ends the innermost sub-expression at a ")" or ",". A call goes on to its next argument,
// or is done once all are there; `first` is where the evaluation began, and what stands
// before it opens nothing.
static uint32_t CloseSubExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index,
                             uint32_t first) {
  uint32_t ret = QM_XPATH_CalculateHighPriorityExpr(ctx, expr, QM_XPATH_EXPR_OR);
  if (ret != QM_OK) return ret;
  const QmOwn<FreeOpEntry> barrier(PopOp(ctx));
  const uint32_t opening = barrier->tokenIndex;
  --ctx->depth;
  const bool isCall = opening > first && KindAt(expr, opening - 1) == QM_XPATH_TOKEN_FUNCNAME;
  if (isCall && KindAt(expr, *index) == QM_XPATH_TOKEN_COMMA) {
    return OpenSubExpr(ctx, index, opening);
  }
  ret = ConsumeClosingParen(expr, index);
  return ret != QM_OK || !isCall ? ret : FunctionAt(expr, opening - 1)(ctx);
}

static bool Closes(uint32_t kind) {
  return kind == QM_XPATH_TOKEN_RPAREN || kind == QM_XPATH_TOKEN_COMMA;
}

// One token that closes nothing, or one operand.
static uint32_t EvalOperatorOrOperand(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const uint32_t kind = KindAt(expr, *index);
  const uint32_t exprType = QM_XPATH_GetTokenExprType(kind);
  if (exprType != QM_XPATH_EXPR_OPERAND) {
    return QM_XPATH_PushExprTypeToStackByPriority(ctx, expr, exprType, (*index)++);
  }
  if (kind == QM_XPATH_TOKEN_LPAREN || kind == QM_XPATH_TOKEN_FUNCNAME) {
    return OpenPrimaryExpr(ctx, expr, index);
  }
  return QM_XPATH_EvalPathExpr(ctx, expr, index);
}

uint32_t QM_XPATH_EvalExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const uint32_t first = *index;
  const uint32_t outerDepth = ctx->depth;
  uint32_t ret = QM_OK;
  while (ret == QM_OK && *index < expr->count) {
    if (!Closes(expr->tokens[*index].kind)) {
      ret = EvalOperatorOrOperand(ctx, expr, index);
    } else if (ctx->depth > outerDepth) {
      ret = CloseSubExpr(ctx, expr, index, first);
    } else {
      return QM_XPATH_CalculateRemainExpr(ctx, expr, 1);
    }
  }
  ctx->depth = outerDepth;
  return ret != QM_OK ? ret : QM_XPATH_CalculateRemainExpr(ctx, expr, 0);
}

static bool IsParenOrComma(uint32_t kind, uint32_t paren) {
  return kind == paren || kind == QM_XPATH_TOKEN_COMMA;
}

// The closing token is left for the caller.
uint32_t QM_XPATH_EvalSubExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  if (!IsParenOrComma(KindAt(expr, *index), QM_XPATH_TOKEN_LPAREN)) return QM_XPATH_NOT_OPENED;
  uint32_t ret = OpenSubExpr(ctx, index, *index);
  if (ret != QM_OK) return ret;
  ret = QM_XPATH_EvalExpr(ctx, expr, index);
  --ctx->depth;
  if (ret != QM_OK) return ret;
  return IsParenOrComma(KindAt(expr, *index), QM_XPATH_TOKEN_RPAREN) ? QM_OK : QM_XPATH_NOT_CLOSED;
}

uint32_t QM_XPATH_GetEvalResult(QmXpathEvalCtx* ctx) {
  if (RTK_GetSize(ctx->objStack) != 1) return QM_INVALID;
  auto* object = static_cast<QmXpathObject*>(RTK_Peep(ctx->objStack));
  const uint32_t ret = QM_XPATH_FuncBooleanInner(object);
  if (ret != QM_OK) return ret;
  return object->value.boolean != 0 ? QM_OK : QM_XPATH_FALSE;
}

uint32_t QM_XPATH_EvalCondition(xmlNode* rootNode, xmlNode* currentNode,
                                const char* expressionText) noexcept {
  if (rootNode == nullptr || currentNode == nullptr || expressionText == nullptr) {
    return QM_INVALID;
  }
  const QmOwn<QM_XPATH_FreeXpathLex> expr(QM_XPATH_ExprTokenize(expressionText));
  if (!expr) return QM_XPATH_BAD_TOKEN;
  QmXpathEvalCtx ctx;
  uint32_t ret = QM_XPATH_InitEvalCtx(&ctx, rootNode, currentNode);
  if (ret != QM_OK) return ret;
  uint32_t index = 0;
  ret = QM_XPATH_EvalExpr(&ctx, expr.Get(), &index);
  if (ret == QM_OK) ret = QM_XPATH_GetEvalResult(&ctx);
  QM_XPATH_DestroyEvalCtx(&ctx);
  return ret;
}
