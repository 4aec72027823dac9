// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

// The kind of a token; QM_XPATH_TOKEN_INVALID past the end.
inline uint32_t KindAt(const QmXpathExpr* expr, uint32_t index) {
  return index < expr->count ? expr->tokens[index].kind : uint32_t{QM_XPATH_TOKEN_INVALID};
}

QM_BEGIN_INTERNAL_DECLS

// Makes both stacks, 12 without memory; frees them with whatever they still hold.
uint32_t QM_XPATH_InitEvalCtx(QmXpathEvalCtx* ctx, xmlNode* rootNode, xmlNode* currentNode);
void QM_XPATH_DestroyEvalCtx(QmXpathEvalCtx* ctx);

// Evaluates from the token *index on, up to the end, or to a ")" or "," that is left
// for the caller. The second begins at the "(" or "," that opens it,
// QM_XPATH_NOT_OPENED without one, and counts its depth. 12, 22, or the code of what is
// wrong with the expression (QM_XPATH_...); the stacks are left to
// QM_XPATH_DestroyEvalCtx() then.
uint32_t QM_XPATH_EvalExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalSubExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);

// An operator, or the barrier of a sub-expression, goes on the operator stack: 0 or 12.
// The second first computes what waits there and binds as tightly.
uint32_t QM_XPATH_PushExprTypeToStack(QmXpathEvalCtx* ctx, uint32_t exprType, uint32_t tokenIndex);
uint32_t QM_XPATH_PushExprTypeToStackByPriority(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                                uint32_t exprType, uint32_t tokenIndex);

// Compute the operators that wait: those that bind at least as tightly as `exprType`,
// one that was taken off the stack, those up to the barrier or, at the end of the
// input, all. 22 with fewer than two operands, QM_XPATH_NO_EVALUATOR and
// QM_XPATH_BAD_OPERATION for an operator that cannot be computed, QM_XPATH_BAD_PAREN
// when barrier and end do not meet.
uint32_t QM_XPATH_CalculateHighPriorityExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                            uint32_t exprType);
uint32_t QM_XPATH_CalculateOneExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                   const QmXpathOpEntry* op);
uint32_t QM_XPATH_CalculateRemainExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                      uint32_t endOfSubExpr);

// 0 when the only operand left is true, QM_XPATH_FALSE when it is false, 22 when it is not alone.
uint32_t QM_XPATH_GetEvalResult(QmXpathEvalCtx* ctx);

QM_END_INTERNAL_DECLS
