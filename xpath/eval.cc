// SPDX-License-Identifier: BSD-3-Clause
//
// Evaluates a condition in one pass over its tokens, without a syntax tree. Path
// expressions push an operand; an operator first computes the waiting operators that
// bind at least as tightly and then waits itself. A sub-expression puts a barrier on
// the operator stack, behind which nothing is computed until it ends. The path
// expressions themselves are in a file of their own.
#include "xpath/eval.h"

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/memory.h"
#include "xpath/compare.h"
#include "xpath/convert.h"
#include "xpath/eval_path.h"
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

uint32_t QM_XPATH_EvalExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  while (*index < expr->count) {
    const uint32_t kind = expr->tokens[*index].kind;
    if (kind == QM_XPATH_TOKEN_RPAREN || kind == QM_XPATH_TOKEN_COMMA) {
      return QM_XPATH_CalculateRemainExpr(ctx, expr, 1);
    }
    const uint32_t exprType = QM_XPATH_GetTokenExprType(kind);
    uint32_t ret = QM_OK;
    if (exprType == QM_XPATH_EXPR_OPERAND) {
      ret = QM_XPATH_EvalPathExpr(ctx, expr, index);
    } else {
      ret = QM_XPATH_PushExprTypeToStackByPriority(ctx, expr, exprType, *index);
      ++*index;
    }
    if (ret != QM_OK) return ret;
  }
  return QM_XPATH_CalculateRemainExpr(ctx, expr, 0);
}

static bool IsParenOrComma(uint32_t kind, uint32_t paren) {
  return kind == paren || kind == QM_XPATH_TOKEN_COMMA;
}

// The closing token is left for the caller.
uint32_t QM_XPATH_EvalSubExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  if (!IsParenOrComma(KindAt(expr, *index), QM_XPATH_TOKEN_LPAREN)) return QM_XPATH_NOT_OPENED;
  // Each level recurses, and conditions come from files.
  if (ctx->depth >= kQmXpathMaxDepth) return QM_XPATH_BAD_PAREN;
  uint32_t ret = QM_XPATH_PushExprTypeToStack(ctx, QM_XPATH_EXPR_BARRIER, *index);
  if (ret != QM_OK) return ret;
  ++*index;
  ++ctx->depth;
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
