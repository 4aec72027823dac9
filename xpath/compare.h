// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "xpath/records.h"

using QmXpathEvalFunc = uint32_t (*)(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                     QmXpathObject* right);

// "=" of two numbers, and the four relational operations.
bool NumbersAreEqual(double left, double right);
bool CompareNumbers(double left, double right, uint32_t operation);

QM_BEGIN_INTERNAL_DECLS

// The operations. Each may convert its two operands in place, which stay the
// caller's, and pushes a boolean: 0, or 12 without memory.
uint32_t QM_XPATH_EvalOrExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                             QmXpathObject* right);
uint32_t QM_XPATH_EvalAndExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                              QmXpathObject* right);
uint32_t QM_XPATH_EvalEqualityExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                   QmXpathObject* right);
uint32_t QM_XPATH_EvalRelationalExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                     QmXpathObject* right);
uint32_t QM_XPATH_EvalLogicExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                QmXpathObject* right);
uint32_t QM_XPATH_EvalCompareExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                  QmXpathObject* right);

// The comparisons behind "=" and "!=", and behind the four relational operators. They
// convert the operands in place and set *result to 1 or 0; 12 without memory, and 22 where
// the text of a number is asked for.
uint32_t QM_XPATH_EqualityCompareTwoObject(QmXpathObject* left, QmXpathObject* right,
                                           uint32_t operation, uint32_t* result);
uint32_t QM_XPATH_EqualityCompareAsBoolean(QmXpathObject* left, QmXpathObject* right,
                                           uint32_t operation, uint32_t* result);
uint32_t QM_XPATH_EqualityCompareAsNumber(QmXpathObject* left, QmXpathObject* right,
                                          uint32_t operation, uint32_t* result);
uint32_t QM_XPATH_EqualityCompareAsString(QmXpathObject* left, QmXpathObject* right,
                                          uint32_t operation, uint32_t* result);
uint32_t QM_XPATH_RelationalCompareTwoObject(QmXpathObject* left, QmXpathObject* right,
                                             uint32_t operation, uint32_t* result);

// Turns the operands that are nodes into strings, the left one first: 0, or 12 when a
// text cannot be copied. A bound element, no identityref, whose text has 1,024
// characters or more stays a node: it would be copied for each comparison, and the
// comparisons below take it as it is, with the same results.
uint32_t QM_XPATH_ProcessArgumentsWithNodeSet(QmXpathObject* left, QmXpathObject* right);

// The operation of an expression type; NULL for those without one.
QmXpathEvalFunc QM_XPATH_GetExprEvalFunc(uint32_t exprType);

QM_END_INTERNAL_DECLS
