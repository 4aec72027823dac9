// SPDX-License-Identifier: BSD-3-Clause
//
// The operations behind the operators. A comparison first turns its nodes into strings;
// the types of the two sides then decide how they are compared (XPath 1.0 section 3.4,
// for node-sets of one node). Every operation pushes a boolean.
#include "xpath/compare.h"

#include <cfloat>
#include <cmath>
#include <iterator>

#include <qmodel/error.h>

#include "platform/string.h"
#include "xpath/convert.h"
#include "xpath/object.h"

namespace {

constexpr QmXpathEvalFunc g_qmXpathEvalFuncTbl[] = {
    QM_XPATH_EvalOrExpr,          // QM_XPATH_EXPR_OR
    QM_XPATH_EvalAndExpr,         // QM_XPATH_EXPR_AND
    QM_XPATH_EvalEqualityExpr,    // QM_XPATH_EXPR_EQUALITY
    QM_XPATH_EvalRelationalExpr,  // QM_XPATH_EXPR_RELATIONAL
    nullptr,                      // QM_XPATH_EXPR_ADDITIVE
    nullptr,                      // QM_XPATH_EXPR_MULTIPLICATIVE
    nullptr,                      // left free
    nullptr,                      // QM_XPATH_EXPR_UNION
};
static_assert(std::size(g_qmXpathEvalFuncTbl) == QM_XPATH_EXPR_UNION + 1);

}  // namespace

QmXpathEvalFunc QM_XPATH_GetExprEvalFunc(uint32_t exprType) {
  return exprType < std::size(g_qmXpathEvalFuncTbl) ? g_qmXpathEvalFuncTbl[exprType] : nullptr;
}

using ConvertFunc = uint32_t (*)(QmXpathObject* object);

static uint32_t ConvertBoth(QmXpathObject* left, QmXpathObject* right, ConvertFunc convert) {
  const uint32_t ret = convert(left);
  return ret != QM_OK ? ret : convert(right);
}

uint32_t QM_XPATH_EvalOrExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                             QmXpathObject* right) {
  return QM_XPATH_EvalLogicExpr(ctx, operation, left, right);
}

uint32_t QM_XPATH_EvalAndExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                              QmXpathObject* right) {
  return QM_XPATH_EvalLogicExpr(ctx, operation, left, right);
}

uint32_t QM_XPATH_EvalLogicExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                QmXpathObject* right) {
  const uint32_t ret = ConvertBoth(left, right, QM_XPATH_FuncBooleanInner);
  if (ret != QM_OK) return ret;
  const bool a = left->value.boolean != 0;
  const bool b = right->value.boolean != 0;
  const bool result = operation == QM_XPATH_OP_OR ? a || b : a && b;
  return QM_XPATH_PushBooleanToObjStack(ctx->objStack, result ? 1 : 0);
}

uint32_t QM_XPATH_EvalEqualityExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                   QmXpathObject* right) {
  return QM_XPATH_EvalCompareExpr(ctx, operation, left, right);
}

uint32_t QM_XPATH_EvalRelationalExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                     QmXpathObject* right) {
  return QM_XPATH_EvalCompareExpr(ctx, operation, left, right);
}

// A long text is not copied for each comparison with it: its node stands for it, and
// means the same as the copy to what comes after.
static uint32_t StringOfNode(QmXpathObject* object) {
  if (object->type != QM_XPATH_OBJECT_NODE || LongTextOf(object) != nullptr) return QM_OK;
  return QM_XPATH_FuncStringInner(object);
}

uint32_t QM_XPATH_ProcessArgumentsWithNodeSet(QmXpathObject* left, QmXpathObject* right) {
  return ConvertBoth(left, right, StringOfNode);
}

uint32_t QM_XPATH_EvalCompareExpr(QmXpathEvalCtx* ctx, uint32_t operation, QmXpathObject* left,
                                  QmXpathObject* right) {
  uint32_t result = 0;
  uint32_t ret = QM_XPATH_ProcessArgumentsWithNodeSet(left, right);
  if (ret != QM_OK) return ret;
  if (QM_XPATH_IsEqualityOperator(operation) != 0) {
    ret = QM_XPATH_EqualityCompareTwoObject(left, right, operation, &result);
  } else {
    ret = QM_XPATH_RelationalCompareTwoObject(left, right, operation, &result);
  }
  return ret != QM_OK ? ret : QM_XPATH_PushBooleanToObjStack(ctx->objStack, result);
}

static bool EitherHasType(const QmXpathObject* left, const QmXpathObject* right, uint32_t type) {
  return left->type == type || right->type == type;
}

uint32_t QM_XPATH_EqualityCompareTwoObject(QmXpathObject* left, QmXpathObject* right,
                                           uint32_t operation, uint32_t* result) {
  if (EitherHasType(left, right, QM_XPATH_OBJECT_BOOLEAN)) {
    return QM_XPATH_EqualityCompareAsBoolean(left, right, operation, result);
  }
  if (EitherHasType(left, right, QM_XPATH_OBJECT_NUMBER)) {
    return QM_XPATH_EqualityCompareAsNumber(left, right, operation, result);
  }
  return QM_XPATH_EqualityCompareAsString(left, right, operation, result);
}

static uint32_t EqualityResult(bool equal, uint32_t operation) {
  return equal == (operation == QM_XPATH_OP_EQUAL) ? 1 : 0;
}

// A NaN on either side makes the difference NaN, which is below nothing.
bool NumbersAreEqual(double left, double right) {
  return std::fabs(left - right) < DBL_EPSILON;
}

uint32_t QM_XPATH_EqualityCompareAsBoolean(QmXpathObject* left, QmXpathObject* right,
                                           uint32_t operation, uint32_t* result) {
  const uint32_t ret = ConvertBoth(left, right, QM_XPATH_FuncBooleanInner);
  if (ret != QM_OK) return ret;
  *result = EqualityResult(left->value.boolean == right->value.boolean, operation);
  return QM_OK;
}

uint32_t QM_XPATH_EqualityCompareAsNumber(QmXpathObject* left, QmXpathObject* right,
                                          uint32_t operation, uint32_t* result) {
  const uint32_t ret = ConvertBoth(left, right, QM_XPATH_FuncNumberInner);
  if (ret != QM_OK) return ret;
  *result = EqualityResult(NumbersAreEqual(left->value.number, right->value.number), operation);
  return QM_OK;
}

static uint32_t StringUnlessLong(QmXpathObject* object) {
  return LongTextOf(object) != nullptr ? uint32_t{QM_OK} : QM_XPATH_FuncStringInner(object);
}

static const char* TextOf(const QmXpathObject* object) {
  return object->type == QM_XPATH_OBJECT_STRING ? object->value.string : LongTextOf(object);
}

uint32_t QM_XPATH_EqualityCompareAsString(QmXpathObject* left, QmXpathObject* right,
                                          uint32_t operation, uint32_t* result) {
  const uint32_t ret = ConvertBoth(left, right, StringUnlessLong);
  if (ret != QM_OK) return ret;
  *result = EqualityResult(RTK_StrCmp(TextOf(left), TextOf(right)) == 0, operation);
  return QM_OK;
}

// Comparisons with NaN are false by themselves.
bool CompareNumbers(double left, double right, uint32_t operation) {
  switch (operation) {
    case QM_XPATH_OP_GREATER:
      return left > right;
    case QM_XPATH_OP_LESS:
      return left < right;
    case QM_XPATH_OP_GREATER_EQUAL:
      return left >= right;
    default:
      return left <= right;
  }
}

uint32_t QM_XPATH_RelationalCompareTwoObject(QmXpathObject* left, QmXpathObject* right,
                                             uint32_t operation, uint32_t* result) {
  const uint32_t ret = ConvertBoth(left, right, QM_XPATH_FuncNumberInner);
  if (ret != QM_OK) return ret;
  *result = CompareNumbers(left->value.number, right->value.number, operation) ? 1 : 0;
  return QM_OK;
}
