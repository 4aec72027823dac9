// SPDX-License-Identifier: BSD-3-Clause
//
// Path expressions: what pushes one operand. A location path of the abbreviated kind
// (XPath 1.0 section 2) selects at most one node: each step replaces the node on top of
// the operand stack, by the first child of that name, by the parent, or by NULL when
// nothing matches, and a NULL node stays NULL. Predicates are passed over without a
// look. A primary expression (sections 3.1 and 3.2) is a literal, a number, a function
// call or parentheses; a function call leaves its result.
#include "xpath/eval_path.h"

#include <cstring>

#include <qmodel/error.h>

#include "context/guard.h"
#include "context/records.h"
#include "context/text_scan.h"
#include "xpath/child_lookup.h"
#include "xpath/convert.h"
#include "xpath/eval.h"
#include "xpath/functions.h"
#include "xpath/object.h"

namespace {

constexpr uint32_t kMaxNameTest = 2 * (kQmsNameSize - 1) + 1;  // prefix, ":" and name

}  // namespace

uint32_t QM_XPATH_EvalPathExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const uint32_t kind = KindAt(expr, *index);
  if (QM_XPATH_IsPrimaryExprBeginToken(kind) != 0) {
    return QM_XPATH_EvalPrimaryExpr(ctx, expr, index);
  }
  const uint32_t ret = QM_XPATH_PushNodeToObjStack(ctx->objStack, nullptr);
  if (ret != QM_OK) return ret;
  if (kind == QM_XPATH_TOKEN_SLASH) return QM_XPATH_EvalAbsoluteLocationPath(ctx, expr, index);
  if (QM_XPATH_IsRelativeLocationPathBeginToken(kind) != 0) {
    return QM_XPATH_EvalRelativeLocationPath(ctx, expr, index);
  }
  return QM_INVALID;
}

uint32_t QM_XPATH_EvalAbsoluteLocationPath(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                           uint32_t* index) {
  const uint32_t ret = QM_XPATH_ReplaceNodeToTopElemInObjStack(ctx->objStack, ctx->rootNode);
  if (ret != QM_OK) return ret;
  if (expr->tokens[*index].length != 1) return QM_XPATH_BAD_DOUBLE_SLASH;
  ++*index;
  if (QM_XPATH_IsStepBeginToken(KindAt(expr, *index)) == 0) return QM_OK;
  return QM_XPATH_EvalRelativeLocationPath(ctx, expr, index);
}

// Deliberate: a "//" between steps acts as "/", and a slash may end the path.
uint32_t QM_XPATH_EvalRelativeLocationPath(QmXpathEvalCtx* ctx, QmXpathExpr* expr,
                                           uint32_t* index) {
  uint32_t ret = QM_OK;
  if (QM_XPATH_GetStackTopObjNode(ctx->objStack) == nullptr) {
    ret = QM_XPATH_ReplaceNodeToTopElemInObjStack(ctx->objStack, ctx->currentNode);
    if (ret != QM_OK) return ret;
  }
  while (QM_XPATH_IsStepBeginToken(KindAt(expr, *index)) != 0) {
    ret = QM_XPATH_EvalStep(ctx, expr, index);
    if (ret != QM_OK) return ret;
    if (KindAt(expr, *index) != QM_XPATH_TOKEN_SLASH) break;
    ++*index;
  }
  return QM_OK;
}

uint32_t QM_XPATH_EvalStep(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  switch (KindAt(expr, *index)) {
    case QM_XPATH_TOKEN_NAMETEST:
      return QM_XPATH_EvalNameTest(ctx, expr, index);
    case QM_XPATH_TOKEN_DOT:
      return QM_XPATH_EvalDot(ctx, expr, index);
    case QM_XPATH_TOKEN_DDOT:
      return QM_XPATH_EvalDDot(ctx, expr, index);
    default:
      return QM_XPATH_BAD_STEP;
  }
}

uint32_t QM_XPATH_EvalDot(QmXpathEvalCtx* /*ctx*/, QmXpathExpr* /*expr*/, uint32_t* index) {
  ++*index;
  return QM_OK;
}

// Deliberate: a node below the root stays where it is, so that ".." never reaches
// the root. Above the root there is nothing.
xmlNode* ParentWithin(const xmlNode* rootNode, xmlNode* node) {
  if (node == nullptr || node == rootNode) return nullptr;
  return node->parent == rootNode ? node : node->parent;
}

uint32_t QM_XPATH_EvalDDot(QmXpathEvalCtx* ctx, QmXpathExpr* /*expr*/, uint32_t* index) {
  ++*index;
  xmlNode* node = QM_XPATH_GetStackTopObjNode(ctx->objStack);
  return QM_XPATH_ReplaceNodeToTopElemInObjStack(ctx->objStack, ParentWithin(ctx->rootNode, node));
}

bool LocalNameOf(const QmXpathExpr* expr, const QmXpathToken* token, char* name) {
  char text[kMaxNameTest + 1] = "";
  char prefix[kQmsNameSize] = "";
  if (token->length > kMaxNameTest) return false;
  std::memcpy(text, expr->text + token->start, token->length);
  if (text[token->length - 1] == '*') {
    std::memcpy(name, "*", 2);
    return true;
  }
  return QM_UTL_GetXPathNextPrefixAndNode(text, prefix, kQmsNameSize, name, kQmsNameSize) == QM_OK;
}

uint32_t QM_XPATH_EvalNameTest(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  char name[kQmsNameSize] = "";
  xmlNode* node = QM_XPATH_GetStackTopObjNode(ctx->objStack);
  if (node != nullptr) {
    const bool named = LocalNameOf(expr, &expr->tokens[*index], name);
    node = named ? QMD_PAS_FindChildDataNode(node, name) : nullptr;
  }
  const uint32_t ret = QM_XPATH_ReplaceNodeToTopElemInObjStack(ctx->objStack, node);
  if (ret != QM_OK) return ret;
  ++*index;
  return QM_XPATH_SkipPredicate(expr, index);
}

// Skips all predicates that follow, each up to its first "]"; a list with two keys
// has two of them.
uint32_t QM_XPATH_SkipPredicate(QmXpathExpr* expr, uint32_t* index) {
  while (KindAt(expr, *index) == QM_XPATH_TOKEN_LBRACKET) {
    while (*index < expr->count && KindAt(expr, *index) != QM_XPATH_TOKEN_RBRACKET) ++*index;
    if (*index >= expr->count) return QM_XPATH_BAD_PREDICATE;
    ++*index;
  }
  return QM_OK;
}

uint32_t ConsumeClosingParen(const QmXpathExpr* expr, uint32_t* index) {
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

QmXpathFunc FunctionAt(const QmXpathExpr* expr, uint32_t index) {
  const QmXpathToken* token = &expr->tokens[index];
  return FindXpathFunction(expr->text + token->start, token->length);
}

uint32_t BeginCall(const QmXpathExpr* expr, uint32_t* index, QmXpathFunc* function) {
  *function = FunctionAt(expr, *index);
  if (*function == nullptr) return QM_XPATH_UNKNOWN_FUNCTION;
  ++*index;
  return KindAt(expr, *index) == QM_XPATH_TOKEN_LPAREN ? QM_OK : QM_XPATH_BAD_PAREN;
}

uint32_t QM_XPATH_EvalFunctionCall(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  QmXpathFunc function = nullptr;
  uint32_t ret = BeginCall(expr, index, &function);
  if (ret == QM_OK) ret = QM_XPATH_EvalFunctionCallArguments(ctx, expr, index);
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
