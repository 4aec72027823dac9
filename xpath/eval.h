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

// The steps of the grammar. `*index` is the current token and moves past what a
// step consumed. A step that fails leaves the stacks to QM_XPATH_DestroyEvalCtx().
uint32_t QM_XPATH_EvalExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalSubExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalPathExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalPrimaryExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalLiteral(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalNumber(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalAbsoluteLocationPath(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalRelativeLocationPath(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalStep(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalNameTest(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalDot(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalDDot(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_SkipPredicate(QmXpathExpr* expr, uint32_t* index);

// The operator machine.
uint32_t QM_XPATH_PushExprTypeToStack(QmXpathEvalCtx* ctx, uint32_t exprType, uint32_t tokenIndex);
uint32_t QM_XPATH_PushExprTypeToStackByPriority(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                                uint32_t exprType, uint32_t tokenIndex);
uint32_t QM_XPATH_CalculateHighPriorityExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                            uint32_t exprType);
uint32_t QM_XPATH_CalculateOneExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                   const QmXpathOpEntry* op);
uint32_t QM_XPATH_CalculateRemainExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                      uint32_t endOfSubExpr);
uint32_t QM_XPATH_GetEvalResult(QmXpathEvalCtx* ctx);

// Function calls.
uint32_t QM_XPATH_EvalFunctionCall(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalFunctionCallArguments(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                            uint32_t* index);

QM_END_INTERNAL_DECLS
