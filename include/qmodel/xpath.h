/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_XPATH_H
#define QMODEL_XPATH_H

#include <stdint.h>

#include <libxml/tree.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief The XPath tokenizer and the evaluation of conditions.
 *
 * The arguments of `when`, `must` and `path` are XPath 1.0 texts (RFC 7950
 * section 6.4). The tokenizer splits such a text into a flat array of tokens
 * that refer to it; the evaluator answers a condition over a data tree that a
 * validation run has bound to its schema. It knows a subset of XPath: paths of
 * child names, "." and ".." that select at most one element (predicates are
 * skipped, prefixes are not compared), the operators or, and, =, !=, <, >, <=
 * and >=, and the functions not(), derived-from() and derived-from-or-self().
 *
 * Thread rule: nothing here is shared. A tokenized expression may be read from
 * several threads; two evaluations may run side by side on different trees.
 */

QM_BEGIN_DECLS

/** A tokenized expression. Opaque. */
typedef struct QmXpathExpr QmXpathExpr;

/** Token kinds. */
typedef enum QmXpathTokenKind {
  QM_XPATH_TOKEN_LPAREN = 0,          /**< "(" */
  QM_XPATH_TOKEN_RPAREN = 1,          /**< ")" */
  QM_XPATH_TOKEN_LBRACKET = 2,        /**< "[" */
  QM_XPATH_TOKEN_RBRACKET = 3,        /**< "]" */
  QM_XPATH_TOKEN_DOT = 4,             /**< "." */
  QM_XPATH_TOKEN_DDOT = 5,            /**< ".." */
  QM_XPATH_TOKEN_AT = 6,              /**< "@" */
  QM_XPATH_TOKEN_COMMA = 7,           /**< "," */
  QM_XPATH_TOKEN_NAMETEST = 8,        /**< name, prefix:name, prefix:* or "*". */
  QM_XPATH_TOKEN_BARRIER = 9,         /**< Never made by the tokenizer. */
  QM_XPATH_TOKEN_FUNCNAME = 10,       /**< A name before "(". */
  QM_XPATH_TOKEN_LITERAL = 11,        /**< '...' or "...", the quotes included. */
  QM_XPATH_TOKEN_NUMBER = 12,         /**< Digits with at most one ".". */
  QM_XPATH_TOKEN_SLASH = 13,          /**< "/" or "//". */
  QM_XPATH_TOKEN_UNION = 14,          /**< "|" */
  QM_XPATH_TOKEN_MULTIPLICATIVE = 15, /**< "*" as an operator, "div", "mod". */
  QM_XPATH_TOKEN_ADDITIVE = 16,       /**< "+", "-" */
  QM_XPATH_TOKEN_RELATIONAL = 17,     /**< "<", ">", "<=", ">=" */
  QM_XPATH_TOKEN_EQUALITY = 18,       /**< "=", "!=" */
  QM_XPATH_TOKEN_AND = 19,            /**< "and" */
  QM_XPATH_TOKEN_OR = 20,             /**< "or" */
  QM_XPATH_TOKEN_INVALID = 21         /**< A failed token; also: no token. */
} QmXpathTokenKind;

/** Expression types of tokens; of operators also their binding strength. */
typedef enum QmXpathExprType {
  QM_XPATH_EXPR_OR = 0,             /**< "or". */
  QM_XPATH_EXPR_AND = 1,            /**< "and". */
  QM_XPATH_EXPR_EQUALITY = 2,       /**< "=" and "!=". */
  QM_XPATH_EXPR_RELATIONAL = 3,     /**< The four comparisons by size. */
  QM_XPATH_EXPR_ADDITIVE = 4,       /**< "+" and "-". */
  QM_XPATH_EXPR_MULTIPLICATIVE = 5, /**< "*", "div" and "mod". */
  QM_XPATH_EXPR_UNION = 7,          /**< "|"; 6 is left free. */
  QM_XPATH_EXPR_OPERAND = 8,        /**< Not an operator. */
  QM_XPATH_EXPR_BARRIER = 9         /**< Never that of a token; the evaluator's own. */
} QmXpathExprType;

/** Operations of operator tokens. */
typedef enum QmXpathOperation {
  QM_XPATH_OP_OR = 0,
  QM_XPATH_OP_AND = 1,
  QM_XPATH_OP_EQUAL = 2,
  QM_XPATH_OP_NOT_EQUAL = 3,
  QM_XPATH_OP_GREATER = 4,
  QM_XPATH_OP_LESS = 5,
  QM_XPATH_OP_GREATER_EQUAL = 6,
  QM_XPATH_OP_LESS_EQUAL = 7,
  QM_XPATH_OP_UNKNOWN = 8 /**< Any other token. */
} QmXpathOperation;

/* Tokenizing. */

/**
 * @brief Splits an XPath text into tokens.
 *
 * Tabs, line feeds, carriage returns and spaces separate tokens. Whether "*",
 * "and", "or", "div" and "mod" are operators depends on the token before them,
 * XPath 1.0 section 3.7. Variables ("$x"), axes ("child::x") and a lone "!" are
 * refused.
 *
 * Deliberate: an operator name is compared by its beginning only, so "a andx"
 * reads as "a and x"; a number that begins with "." may hold one further ".".
 *
 * @param[in] text  Text to split, NUL-terminated. Not copied: it must live as
 *                  long as the result. NULL gives NULL.
 *
 * @return The new expression, to be freed with QM_XPATH_FreeXpathLex(), or NULL
 *         when the text cannot be tokenized or memory runs out.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API QmXpathExpr *QM_XPATH_ExprTokenize(const char *text) QM_NOEXCEPT;

/**
 * @brief Frees a tokenized expression; its text stays the caller's.
 *
 * @param[in] expr  Expression to free. NULL is accepted.
 *
 * @par Thread safety
 * The caller makes sure that nobody uses @p expr any more.
 */
QM_API void QM_XPATH_FreeXpathLex(QmXpathExpr *expr) QM_NOEXCEPT;

/**
 * @brief Gives the number of tokens.
 *
 * @param[in] expr  Expression to read. NULL gives 0.
 *
 * @return The number of tokens.
 *
 * @par Thread safety
 * Safe as long as nobody frees @p expr.
 */
QM_API uint32_t QM_XPATH_GetTokenNumber(const QmXpathExpr *expr) QM_NOEXCEPT;

/**
 * @brief Gives one token: its kind, its length and its place in the text.
 *
 * @param[in]  expr       Expression to read. NULL gives NULL.
 * @param[in]  index      Number of the token, from 0.
 * @param[out] outKind    Its #QmXpathTokenKind. May be NULL.
 * @param[out] outLength  Its characters, the quotes of a literal included. May
 *                        be NULL.
 *
 * @return A pointer to the token's first character in the text (the token is
 *         not NUL-terminated); NULL, with nothing stored, when there is no such
 *         token.
 *
 * @par Thread safety
 * Safe as long as nobody frees @p expr.
 */
QM_API const char *QM_XPATH_GetTokenExprByPos(const QmXpathExpr *expr, uint32_t index,
                                              uint32_t *outKind, uint32_t *outLength) QM_NOEXCEPT;

/**
 * @brief Copies the characters of a token.
 *
 * @param[in] expr   Expression to read. NULL gives NULL.
 * @param[in] index  Number of the token, from 0.
 *
 * @return A new text, to be freed with the free hook; NULL when there is no such
 *         token or memory runs out.
 *
 * @par Thread safety
 * Safe as long as nobody frees @p expr.
 */
QM_API char *QM_XPATH_CopyTokenContent(const QmXpathExpr *expr, uint32_t index) QM_NOEXCEPT;

/* Classes of tokens. */

/**
 * @brief Gives the expression type of a token kind, which is also its binding strength.
 *
 * @param[in] kind  A #QmXpathTokenKind; any other number counts as an operand.
 *
 * @return A #QmXpathExprType.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_GetTokenExprType(uint32_t kind) QM_NOEXCEPT;

/**
 * @brief Gives the operation that an operator token stands for.
 *
 * @param[in] expr   Expression to read. NULL gives 8.
 * @param[in] index  Number of the token, from 0.
 *
 * @return A #QmXpathOperation; 8 also when there is no such token.
 *
 * @par Thread safety
 * Safe as long as nobody frees @p expr.
 */
QM_API uint32_t QM_XPATH_GetTokenOperationType(const QmXpathExpr *expr, uint32_t index) QM_NOEXCEPT;

/**
 * @brief Tells whether an operation is "=" or "!=".
 *
 * @param[in] op  A result of QM_XPATH_GetTokenOperationType().
 *
 * @retval 1  It is.
 * @retval 0  It is not.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_IsEqualityOperator(uint32_t op) QM_NOEXCEPT;

/**
 * @brief Tells whether an operation is "<", ">", "<=" or ">=".
 *
 * @param[in] op  A result of QM_XPATH_GetTokenOperationType().
 *
 * @retval 1  It is.
 * @retval 0  It is not.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_IsRelationalOperator(uint32_t op) QM_NOEXCEPT;

/**
 * @brief Tells whether a token kind is an operator; the slash counts as one.
 *
 * @param[in] kind  A #QmXpathTokenKind.
 *
 * @retval 1  Kinds 13 to 20.
 * @retval 0  Any other.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_IsCurTokenOperator(uint32_t kind) QM_NOEXCEPT;

/**
 * @brief Tells whether a "*" or a name after a token must be an operator.
 *
 * @param[in] previousKind  Kind of the token before; 21 when there is none.
 *
 * @retval 1  An operator is expected.
 * @retval 0  There is no token before, or it is "(", "[", "@", "," or an
 *            operator.
 *
 * @par Thread safety
 * Safe to call from any thread.
 *
 * @see XPath 1.0 section 3.7
 */
QM_API uint32_t QM_XPATH_IsNextTokenOperator(uint32_t previousKind) QM_NOEXCEPT;

/**
 * @brief Tells whether a token kind begins a primary expression.
 *
 * @param[in] kind  A #QmXpathTokenKind.
 *
 * @retval 1  "(", a function name, a literal or a number.
 * @retval 0  Any other.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_IsPrimaryExprBeginToken(uint32_t kind) QM_NOEXCEPT;

/**
 * @brief Tells whether a token kind begins a location step.
 *
 * @param[in] kind  A #QmXpathTokenKind.
 *
 * @retval 1  ".", "..", a name test, or the barrier value. "@" is not one:
 *            attributes are not supported.
 * @retval 0  Any other.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_IsStepBeginToken(uint32_t kind) QM_NOEXCEPT;

/**
 * @brief Tells whether a token kind begins a relative location path.
 *
 * @param[in] kind  A #QmXpathTokenKind.
 *
 * @retval 1  ".", "..", a name test, or the barrier value.
 * @retval 0  Any other.
 *
 * @par Thread safety
 * Safe to call from any thread.
 */
QM_API uint32_t QM_XPATH_IsRelativeLocationPathBeginToken(uint32_t kind) QM_NOEXCEPT;

/* Evaluation. */

/**
 * @brief Evaluates a condition over a bound data tree.
 *
 * The `_private` word of each element must be its schema node or NULL, as a
 * validation run sets it. That includes @p rootNode and all its children, which an
 * absolute path can reach: a client who keeps data of its own in `_private` there
 * must take it away before. A path selects the first child of each name; "and" and
 * "or" always evaluate both sides. Comparisons take the text of a node, with the
 * prefix of an identityref value replaced by its module name; a node that does
 * not exist compares as the empty text. Nothing is written to the tree.
 *
 * @param[in] rootNode        Node that "/" selects and that ".." never reaches:
 *                            the parent of the root of the tree, which is the
 *                            document or an element of a larger tree. NULL is
 *                            refused; so every condition of a tree whose root
 *                            element has no parent fails. Put such an element
 *                            into a document.
 * @param[in] currentNode     Context node of the condition. NULL is refused.
 * @param[in] expressionText  The condition, with module names in place of
 *                            prefixes in the argument of derived-from(). NULL is
 *                            refused.
 *
 * @retval 0      The condition is true.
 * @retval 12     Out of memory.
 * @retval 22     An argument is NULL; an operand is missing or left over; a path
 *                begins with a token that is no step, as in "@x"; or the leaf of
 *                derived-from() is no identityref, its value names no identity
 *                that is loaded, or its argument is no name.
 * @retval 28928  The condition is false.
 * @retval 28929  It cannot be tokenized, or memory ran out while it was.
 * @retval 28930  An unclosed "(", a ")" or "," without its "(", or more than 256
 *                of them open.
 * @retval 28931  An operator that is not supported: +, -, *, div, mod or "|".
 * @retval 28934  "//" at the beginning of a path.
 * @retval 28936  An unknown function.
 * @retval 28937  derived-from() without an existing node and a name.
 * @retval 28938  derived-from() on an element without schema node.
 * @retval 28941  "[" without "]".
 *
 * @par Thread safety
 * Reads the tree and the schema; evaluations of different trees may run side by
 * side while nothing is loaded, unloaded or switched.
 *
 * @see RFC 7950 sections 6.4, 7.5.3, 7.21.5 and 10.4
 */
QM_API QM_NODISCARD uint32_t QM_XPATH_EvalCondition(xmlNode *rootNode, xmlNode *currentNode,
                                                    const char *expressionText) QM_NOEXCEPT;

QM_END_DECLS

#endif
