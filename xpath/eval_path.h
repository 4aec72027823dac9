// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "xpath/functions.h"
#include "xpath/records.h"

// The beginning of a call: its function, with *index on the "(" behind the name, else
// QM_XPATH_UNKNOWN_FUNCTION or QM_XPATH_BAD_PAREN; the function that a name names, or
// NULL. The end of a call and of parentheses: QM_XPATH_BAD_PAREN for any other token.
uint32_t BeginCall(const QmXpathExpr* expr, uint32_t* index, QmXpathFunc* function);
QmXpathFunc FunctionAt(const QmXpathExpr* expr, uint32_t index);
uint32_t ConsumeClosingParen(const QmXpathExpr* expr, uint32_t* index);

// The local name of a name test, in a buffer of kQmsNameSize bytes. False when there is
// none that a child could have: a name that is too long, or none after the prefix. A
// wildcard stands for itself.
bool LocalNameOf(const QmXpathExpr* expr, const QmXpathToken* token, char* name);
// What ".." selects.
xmlNode* ParentWithin(const xmlNode* rootNode, xmlNode* node);

// Each begins at the token *index and moves past what it consumed; 0 when it pushed its
// operand or replaced the one on top. 12 without memory, 22 for an operand that is not
// there, and the code of what is wrong with the expression (QM_XPATH_...). The stacks are
// left to QM_XPATH_DestroyEvalCtx().

QM_BEGIN_INTERNAL_DECLS

// One operand of whatever kind. 22 for a token that begins none.
uint32_t QM_XPATH_EvalPathExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);

// From the root, where "//" is refused, or from the current node. Slashes between steps
// and behind the last one are consumed.
uint32_t QM_XPATH_EvalAbsoluteLocationPath(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalRelativeLocationPath(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);

// One step by its kind: to the first child of a name with the predicates that follow, to
// the node itself, to the parent unless that is the root.
uint32_t QM_XPATH_EvalStep(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalNameTest(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalDot(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalDDot(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);

// Moves past the predicates at *index; QM_XPATH_BAD_PREDICATE for one without "]".
uint32_t QM_XPATH_SkipPredicate(QmXpathExpr* expr, uint32_t* index);

// A literal without its quotes, a number (NaN for a text that is none), a function call,
// or parentheses.
uint32_t QM_XPATH_EvalPrimaryExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalLiteral(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalNumber(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);
uint32_t QM_XPATH_EvalFunctionCall(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index);

// The arguments from "(" on, up to the ")", which is left. Their number is not checked.
uint32_t QM_XPATH_EvalFunctionCallArguments(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                            uint32_t* index);

QM_END_INTERNAL_DECLS
