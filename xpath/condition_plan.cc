// SPDX-License-Identifier: BSD-3-Clause
//
// From the tokens of a condition to its plan. It is the evaluation of xpath/eval.cc with
// the data left out: where that computes an operand, this notes the step that will. What
// cannot be planned is left to that evaluation, which fails at the right place and with
// the right status: a syntax error, or an operator that has no evaluator or no operands.
//
// Each token makes one step at most, now or when its sub-expression ends, so the block
// of the steps has room for both: the steps grow from its beginning, the operators that
// wait from its end.
#include "xpath/condition_plan.h"

#include <cstring>

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/memory.h"
#include "context/records.h"
#include "platform/string.h"
#include "xpath/compare.h"
#include "xpath/convert.h"
#include "xpath/eval.h"
#include "xpath/eval_path.h"
#include "xpath/functions.h"
#include "xpath/token.h"

namespace {

struct Planner {
  QmXpathExpr* expr;
  QmConditionPlan* plan;
  char* chars;       // where the next text goes
  uint32_t index;    // of the token to read
  uint32_t waiting;  // operators and barriers, the latest at expr->count - waiting
  uint32_t values;   // operands that are there by now
  uint32_t depth;    // open sub-expressions
};

}  // namespace

static QmPlanStep* AddStep(Planner* p, uint32_t kind, uint32_t detail) {
  QmPlanStep* step = &p->plan->steps[p->plan->count++];
  *step = {kind, detail, {nullptr}};
  return step;
}

static QmPlanStep* AddOperand(Planner* p, uint32_t kind, uint32_t detail) {
  ++p->values;
  if (p->values > p->plan->height) p->plan->height = p->values;
  return AddStep(p, kind, detail);
}

static const char* KeepChars(Planner* p, const char* text, size_t length) {
  char* kept = p->chars;
  std::memcpy(kept, text, length);
  kept[length] = '\0';
  p->chars += length + 1;
  return kept;
}

// The operators that wait.

static QmPlanStep* TopOfWaiting(const Planner* p) {
  return p->waiting == 0 ? nullptr : &p->plan->steps[p->expr->count - p->waiting];
}

static void AddWaiting(Planner* p, uint32_t exprType, uint32_t tokenIndex) {
  ++p->waiting;
  *TopOfWaiting(p) = {exprType, tokenIndex, {nullptr}};
}

static uint32_t KindOfOperator(uint32_t exprType) {
  switch (exprType) {
    case QM_XPATH_EXPR_OR:
      return QM_PLAN_OR;
    case QM_XPATH_EXPR_AND:
      return QM_PLAN_AND;
    case QM_XPATH_EXPR_EQUALITY:
      return QM_PLAN_EQUALITY;
    default:
      return QM_PLAN_RELATIONAL;
  }
}

static bool AddOperator(Planner* p, uint32_t exprType, uint32_t tokenIndex) {
  if (p->values < 2 || QM_XPATH_GetExprEvalFunc(exprType) == nullptr) return false;
  const uint32_t operation = QM_XPATH_GetTokenOperationType(p->expr, tokenIndex);
  if (operation == QM_XPATH_OP_UNKNOWN) return false;
  --p->values;
  AddStep(p, KindOfOperator(exprType), operation);
  return true;
}

static bool AddTighterOperators(Planner* p, uint32_t exprType) {
  const QmPlanStep* top = TopOfWaiting(p);
  while (top != nullptr && top->kind >= exprType && top->kind != QM_XPATH_EXPR_BARRIER) {
    const QmPlanStep own = *top;
    --p->waiting;
    if (!AddOperator(p, own.kind, own.detail)) return false;
    top = TopOfWaiting(p);
  }
  return true;
}

// Sub-expressions.

static bool Open(Planner* p, uint32_t opening) {
  if (p->depth >= kQmXpathMaxDepth) return false;
  AddWaiting(p, QM_XPATH_EXPR_BARRIER, opening);
  ++p->depth;
  ++p->index;
  return true;
}

static bool OpenCall(Planner* p) {
  QmXpathFunc function = nullptr;
  return BeginCall(p->expr, &p->index, &function) == QM_OK && Open(p, p->index);
}

static bool AddCall(Planner* p, QmXpathFunc function) {
  const uint32_t operands = function == QM_XPATH_FuncNot ? 1 : 2;
  if (p->values < operands) return false;
  p->values -= operands - 1;
  if (function == QM_XPATH_FuncNot) {
    AddStep(p, QM_PLAN_NOT, 0);
  } else {
    const bool orSelf = function == QM_XPATH_FuncDerivedFromOfSelf;
    AddStep(p, orSelf ? QM_PLAN_DERIVED_OR_SELF : QM_PLAN_DERIVED, 0);
  }
  return true;
}

static bool Close(Planner* p) {
  if (p->depth == 0 || !AddTighterOperators(p, QM_XPATH_EXPR_OR)) return false;
  const uint32_t opening = TopOfWaiting(p)->detail;
  --p->waiting;
  --p->depth;
  const bool isCall = opening > 0 && KindAt(p->expr, opening - 1) == QM_XPATH_TOKEN_FUNCNAME;
  if (isCall && KindAt(p->expr, p->index) == QM_XPATH_TOKEN_COMMA) return Open(p, opening);
  if (ConsumeClosingParen(p->expr, &p->index) != QM_OK) return false;
  return !isCall || AddCall(p, FunctionAt(p->expr, opening - 1));
}

// Operands.

static void AddNamePathStep(Planner* p, QmPlanStep* step) {
  char name[kQmsNameSize] = "";
  if (LocalNameOf(p->expr, &p->expr->tokens[p->index], name)) {
    step->text = KeepChars(p, name, RTK_StrLen(name));
  } else {
    step->kind = QM_PLAN_NOWHERE;
  }
}

static bool AddPathStep(Planner* p, bool isFirst) {
  const uint32_t token = KindAt(p->expr, p->index);
  uint32_t kind = QM_PLAN_CHILD;
  if (token == QM_XPATH_TOKEN_DOT) kind = QM_PLAN_SELF;
  if (token == QM_XPATH_TOKEN_DDOT) kind = QM_PLAN_PARENT;
  QmPlanStep* step = isFirst ? AddOperand(p, kind, 1) : AddStep(p, kind, 0);
  if (kind == QM_PLAN_CHILD) AddNamePathStep(p, step);
  ++p->index;
  return kind != QM_PLAN_CHILD || QM_XPATH_SkipPredicate(p->expr, &p->index) == QM_OK;
}

static bool AddPath(Planner* p) {
  bool isFirst = true;
  if (KindAt(p->expr, p->index) == QM_XPATH_TOKEN_SLASH) {
    if (p->expr->tokens[p->index].length != 1) return false;
    AddOperand(p, QM_PLAN_ROOT, 0);
    ++p->index;
    isFirst = false;
  } else if (QM_XPATH_IsStepBeginToken(KindAt(p->expr, p->index)) == 0) {
    return false;
  }
  while (QM_XPATH_IsStepBeginToken(KindAt(p->expr, p->index)) != 0) {
    if (!AddPathStep(p, isFirst)) return false;
    isFirst = false;
    if (KindAt(p->expr, p->index) != QM_XPATH_TOKEN_SLASH) break;
    ++p->index;
  }
  return true;
}

static bool AddLiteral(Planner* p) {
  const QmXpathToken* token = &p->expr->tokens[p->index++];
  AddOperand(p, QM_PLAN_STRING, 0)->text =
      KeepChars(p, p->expr->text + token->start + 1, token->length - 2);
  return true;
}

static bool AddNumber(Planner* p) {
  const QmXpathToken* token = &p->expr->tokens[p->index++];
  const char* text = KeepChars(p, p->expr->text + token->start, token->length);
  AddOperand(p, QM_PLAN_NUMBER, 0)->number = QM_XPATH_ConvertStringToNumber(text);
  return true;
}

static bool PlanToken(Planner* p) {
  const uint32_t kind = KindAt(p->expr, p->index);
  const uint32_t exprType = QM_XPATH_GetTokenExprType(kind);
  if (exprType != QM_XPATH_EXPR_OPERAND) {
    if (!AddTighterOperators(p, exprType)) return false;
    AddWaiting(p, exprType, p->index++);
    return true;
  }
  switch (kind) {
    case QM_XPATH_TOKEN_LPAREN:
      return Open(p, p->index);
    case QM_XPATH_TOKEN_FUNCNAME:
      return OpenCall(p);
    case QM_XPATH_TOKEN_RPAREN:
    case QM_XPATH_TOKEN_COMMA:
      return Close(p);
    case QM_XPATH_TOKEN_LITERAL:
      return AddLiteral(p);
    case QM_XPATH_TOKEN_NUMBER:
      return AddNumber(p);
    default:
      return AddPath(p);
  }
}

static bool PlanTokens(Planner* p) {
  while (p->index < p->expr->count) {
    if (!PlanToken(p)) return false;
  }
  return p->depth == 0 && AddTighterOperators(p, QM_XPATH_EXPR_OR) && p->values == 1;
}

// The texts of a plan are parts of the condition, one for a token at most.
static QmConditionPlan* NewPlan(const char* condition, uint32_t tokens) {
  const size_t steps = size_t{tokens} * sizeof(QmPlanStep);
  const size_t texts = tokens == 0 ? 0 : RTK_StrLen(condition) + tokens;
  auto* plan = static_cast<QmConditionPlan*>(TakeBlock(sizeof(QmConditionPlan) + steps + texts));
  if (plan == nullptr) return nullptr;
  *plan = {0, 0, reinterpret_cast<QmPlanStep*>(plan + 1)};
  return plan;
}

QmConditionPlan* PlanCondition(const char* condition) {
  const QmOwn<QM_XPATH_FreeXpathLex> expr(QM_XPATH_ExprTokenize(condition));
  QmConditionPlan* plan = NewPlan(condition, expr ? expr->count : 0);
  if (plan == nullptr || !expr) return plan;
  Planner p = {expr.Get(), plan, reinterpret_cast<char*>(plan->steps + expr->count), 0, 0, 0, 0};
  if (!PlanTokens(&p)) plan->count = 0;
  return plan;
}
