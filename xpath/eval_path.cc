// SPDX-License-Identifier: BSD-3-Clause
#include <cstring>

#include <qmodel/error.h>

#include "context/path_scan.h"
#include "context/records.h"
#include "xpath/child_lookup.h"
#include "xpath/eval.h"
#include "xpath/object.h"

// Location paths, XPath 1.0 section 2, of the abbreviated kind. A path selects at
// most one node: each step replaces the node on top of the operand stack, by the
// first child of that name, by the parent, or by NULL when nothing matches, and a
// NULL node stays NULL. Predicates are passed over without a look.

namespace {

constexpr uint32_t kMaxNameTest = 2 * 64 + 1;  // prefix, ":" and name

}  // namespace

uint32_t QM_XPATH_EvalPathExpr(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  const uint32_t kind = KindAt(expr, *index);
  if (QM_XPATH_IsPrimaryExprBeginToken(kind) != 0)
    return QM_XPATH_EvalPrimaryExpr(ctx, expr, index);
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

uint32_t QM_XPATH_EvalDot(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  static_cast<void>(ctx);
  static_cast<void>(expr);
  ++*index;
  return QM_OK;
}

// Deliberate: a node below the root stays where it is, so that ".." never reaches
// the root. Above the root there is nothing.
static xmlNode* ParentWithin(const QmXpathEvalCtx* ctx, xmlNode* node) {
  if (node == nullptr || node == ctx->rootNode) return nullptr;
  return node->parent == ctx->rootNode ? node : node->parent;
}

uint32_t QM_XPATH_EvalDDot(QmXpathEvalCtx* ctx, QmXpathExpr* expr, uint32_t* index) {
  static_cast<void>(expr);
  ++*index;
  xmlNode* node = QM_XPATH_GetStackTopObjNode(ctx->objStack);
  return QM_XPATH_ReplaceNodeToTopElemInObjStack(ctx->objStack, ParentWithin(ctx, node));
}

// The local name of a name test. False when there is none that a child could have:
// a name that is too long, or none after the prefix. A wildcard stands for itself.
static bool LocalNameOf(const QmXpathExpr* expr, const QmXpathToken* token, char* name) {
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
