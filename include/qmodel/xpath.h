/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_XPATH_H
#define QMODEL_XPATH_H

#include <stdint.h>

#include <libxml/tree.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief The XPath tokenizer and the evaluation of conditions.
 */

QM_BEGIN_DECLS

/** A tokenized expression. Opaque. */
typedef struct QmXpathExpr QmXpathExpr;

/** Token kinds. */
typedef enum QmXpathTokenKind {
  QM_XPATH_TOKEN_LPAREN = 0,
  QM_XPATH_TOKEN_RPAREN = 1,
  QM_XPATH_TOKEN_LBRACKET = 2,
  QM_XPATH_TOKEN_RBRACKET = 3,
  QM_XPATH_TOKEN_DOT = 4,
  QM_XPATH_TOKEN_DDOT = 5,
  QM_XPATH_TOKEN_AT = 6,
  QM_XPATH_TOKEN_COMMA = 7,
  QM_XPATH_TOKEN_NAMETEST = 8,
  QM_XPATH_TOKEN_BARRIER = 9, /**< Never made by the tokenizer. */
  QM_XPATH_TOKEN_FUNCNAME = 10,
  QM_XPATH_TOKEN_LITERAL = 11,
  QM_XPATH_TOKEN_NUMBER = 12,
  QM_XPATH_TOKEN_SLASH = 13,
  QM_XPATH_TOKEN_UNION = 14,
  QM_XPATH_TOKEN_MULTIPLICATIVE = 15,
  QM_XPATH_TOKEN_ADDITIVE = 16,
  QM_XPATH_TOKEN_RELATIONAL = 17,
  QM_XPATH_TOKEN_EQUALITY = 18,
  QM_XPATH_TOKEN_AND = 19,
  QM_XPATH_TOKEN_OR = 20,
  QM_XPATH_TOKEN_INVALID = 21
} QmXpathTokenKind;

QM_API QmXpathExpr *QM_XPATH_ExprTokenize(const char *text) QM_NOEXCEPT;

QM_API void QM_XPATH_FreeXpathLex(QmXpathExpr *expr) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_GetTokenNumber(const QmXpathExpr *expr) QM_NOEXCEPT;

QM_API const char *QM_XPATH_GetTokenExprByPos(const QmXpathExpr *expr, uint32_t index,
                                              uint32_t *outKind, uint32_t *outLength) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_GetTokenExprType(uint32_t kind) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_GetTokenOperationType(const QmXpathExpr *expr, uint32_t index) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsEqualityOperator(uint32_t op) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsRelationalOperator(uint32_t op) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsCurTokenOperator(uint32_t kind) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsNextTokenOperator(uint32_t previousKind) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsPrimaryExprBeginToken(uint32_t kind) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsStepBeginToken(uint32_t kind) QM_NOEXCEPT;

QM_API uint32_t QM_XPATH_IsRelativeLocationPathBeginToken(uint32_t kind) QM_NOEXCEPT;

QM_API char *QM_XPATH_CopyTokenContent(const QmXpathExpr *expr, uint32_t index) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_XPATH_EvalCondition(xmlNode *rootNode, xmlNode *currentNode,
                                                    const char *expressionText) QM_NOEXCEPT;

QM_END_DECLS

#endif
