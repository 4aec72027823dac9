/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_ERROR_H
#define QMODEL_ERROR_H

#include <stdint.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief Status numbers of every function, and the error records of validation.
 *
 * A status is an unsigned 32-bit number; 0 is success. The small numbers are
 * those of errno on Linux; value checks and XPath conditions have ranges of
 * their own. Error records are those of RFC 6241 section 4.3.
 */

QM_BEGIN_DECLS

/** An error record that a validation run made. Opaque; read it with QM_GetError…(). */
typedef struct QmErrNode QmErrNode;

/**
 * @brief The list of all statuses: X(name, number, text).
 *
 * One list makes the enumerators and the texts, so that they cannot drift.
 */
#define QM_STATUS_LIST(X)                                                              \
  X(QM_OK, 0, "success")                                                               \
  X(QM_FAILED, 1, "generic failure or refused change")                                 \
  X(QM_NOT_FOUND, 2, "file or module not found")                                       \
  X(QM_NO_MEMORY, 12, "out of memory")                                                 \
  X(QM_EXISTS, 17, "memory hooks are already registered")                              \
  X(QM_NOT_A_DIRECTORY, 20, "not a usable directory")                                  \
  X(QM_INVALID, 22, "invalid argument, bad value or failed check")                     \
  X(QM_LOCK_FAILED, 37, "a lock could not be taken")                                   \
  X(QM_NAME_TOO_LONG, 126, "a name does not fit its buffer")                           \
  X(QM_BELOW_SEGMENT, 4097, "a value lies below a segment")                            \
  X(QM_VALUE_NO_BODY, 28672, "a constraint entry has no body")                         \
  X(QM_VALUE_BAD_DERIVED, 28673, "typedef not found, or more than 128 derived links")  \
  X(QM_VALUE_BAD_IDENTITY, 28674, "identityref value is not derived from a base")      \
  X(QM_VALUE_BAD_BITS, 28675, "invalid bits value")                                    \
  X(QM_VALUE_BAD_ENUM, 28676, "invalid enumeration value")                             \
  X(QM_VALUE_BAD_LENGTH, 28677, "length outside the length restriction")               \
  X(QM_VALUE_BAD_LEAFREF, 28678, "leafref target leaf or its type not found")          \
  X(QM_VALUE_BAD_PATTERN, 28679, "pattern not matched, or matched under invert-match") \
  X(QM_VALUE_BAD_RANGE, 28680, "number unparsable or outside its range")               \
  X(QM_VALUE_BAD_UNION, 28681, "no member type of the union accepts the value")        \
  X(QM_VALUE_BAD_BOOLEAN, 28682, "invalid boolean value")                              \
  X(QM_VALUE_BAD_BINARY, 28683, "invalid binary value")                                \
  X(QM_VALUE_BAD_EMPTY, 28684, "a value where the type is empty")                      \
  X(QM_XPATH_FALSE, 28928, "the condition is false")                                   \
  X(QM_XPATH_BAD_TOKEN, 28929, "the expression could not be tokenized")                \
  X(QM_XPATH_BAD_PAREN, 28930, "parenthesis or function-call syntax error")            \
  X(QM_XPATH_NO_EVALUATOR, 28931, "operator without evaluator")                        \
  X(QM_XPATH_BAD_OPERATION, 28932, "operator token of unknown operation")              \
  X(QM_XPATH_BAD_PRIMARY, 28933, "token that cannot start a primary expression")       \
  X(QM_XPATH_BAD_DOUBLE_SLASH, 28934, "\"//\" at the start of an absolute path")       \
  X(QM_XPATH_BAD_STEP, 28935, "token that cannot be a location step")                  \
  X(QM_XPATH_UNKNOWN_FUNCTION, 28936, "unknown function")                              \
  X(QM_XPATH_BAD_ARGUMENTS, 28937, "derived-from without its two arguments")           \
  X(QM_XPATH_UNBOUND_NODE, 28938, "derived-from on an element without schema node")    \
  X(QM_XPATH_NOT_OPENED, 28939, "sub-expression not opened by \"(\" or \",\"")         \
  X(QM_XPATH_NOT_CLOSED, 28940, "sub-expression not closed by \")\" or \",\"")         \
  X(QM_XPATH_BAD_PREDICATE, 28941, "\"[\" without \"]\"")

#define QM_STATUS_ENUMERATOR_(name, number, text) name = (number),
/** Statuses; see #QM_STATUS_LIST for the meaning of each. */
typedef enum QmStatus
#if defined(__cplusplus)
    : uint32_t
#endif
{ QM_STATUS_LIST(QM_STATUS_ENUMERATOR_) } QmStatus;

/** The few statements that are refused with -1: no errno value, deliberately. */
#define QM_MINUS_ONE UINT32_C(0xFFFFFFFF)

/** error-type of a record, RFC 6241 section 4.3. */
typedef enum QmErrType {
  QM_ERR_TYPE_TRANSPORT = 1,
  QM_ERR_TYPE_RPC = 2,
  QM_ERR_TYPE_PROTOCOL = 3,
  QM_ERR_TYPE_APPLICATION = 4
} QmErrType;

/** error-severity of a record. */
typedef enum QmErrSeverity { QM_ERR_SEVERITY_ERROR = 1, QM_ERR_SEVERITY_WARNING = 2 } QmErrSeverity;

/** error-tag of a record, RFC 6241 appendix A. */
typedef enum QmErrTag {
  QM_ERR_TAG_IN_USE = 1,
  QM_ERR_TAG_INVALID_VALUE = 2,
  QM_ERR_TAG_TOO_BIG = 3,
  QM_ERR_TAG_MISSING_ATTRIBUTE = 4,
  QM_ERR_TAG_BAD_ATTRIBUTE = 5,
  QM_ERR_TAG_UNKNOWN_ATTRIBUTE = 6,
  QM_ERR_TAG_MISSING_ELEMENT = 7,
  QM_ERR_TAG_BAD_ELEMENT = 8,
  QM_ERR_TAG_UNKNOWN_ELEMENT = 9,
  QM_ERR_TAG_UNKNOWN_NAMESPACE = 10,
  QM_ERR_TAG_ACCESS_DENIED = 11,
  QM_ERR_TAG_LOCK_DENIED = 12,
  QM_ERR_TAG_RESOURCE_DENIED = 13,
  QM_ERR_TAG_ROLLBACK_FAILED = 14,
  QM_ERR_TAG_DATA_EXISTS = 15,
  QM_ERR_TAG_DATA_MISSING = 16,
  QM_ERR_TAG_OPERATION_NOT_SUPPORTED = 17,
  QM_ERR_TAG_OPERATION_FAILED = 18,
  QM_ERR_TAG_PARTIAL_OPERATION = 19,
  QM_ERR_TAG_MALFORMED_MESSAGE = 20
} QmErrTag;

/**
 * @brief Gives the error-type of a record.
 *
 * @param[in] err  The record; NULL gives 0.
 *
 * @return A #QmErrType; QM_ERR_TYPE_APPLICATION in every record of
 *         QM_CTX_ValidateRpcDataTree(). What the kit of qmodel/agent.h finds in the message
 *         around the operation has others.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 section 4.3
 */
QM_API uint32_t QM_GetErrorType(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the error-severity of a record.
 *
 * @param[in] err  The record; NULL gives 0.
 *
 * @return A #QmErrSeverity; QM_ERR_SEVERITY_ERROR in every record that the library makes.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 section 4.3
 */
QM_API uint32_t QM_GetErrorSeverity(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the error-tag of a record.
 *
 * @param[in] err  The record; NULL gives 0.
 *
 * @return A #QmErrTag.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 appendix A
 */
QM_API uint32_t QM_GetErrorTag(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the error-app-tag of a record.
 *
 * @param[in] err  The record; NULL gives NULL.
 *
 * @return "missing-choice", "must-violation" or the error-app-tag of the must
 *         statement that failed; NULL for other failures, and when there was no
 *         memory for it. Valid until the record is freed.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 7950 section 15
 */
QM_API const char *QM_GetErrorAppTag(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the error-path of a record.
 *
 * Steps carry a module name where it differs from that of the step before,
 * and predicates for list keys and leaf-list values, as in
 * /modA:top/entry[name='x']/modB:leaf. Failures without an element have "/".
 *
 * @param[in] err  The record; NULL gives NULL.
 *
 * @return The path; NULL when it would be longer than 10239 characters, when there
 *         was no memory for it, and in records that QM_AGENT_NewRecord() and the kit make
 *         about the message around an operation. Valid until the record is freed.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 section 4.3
 */
QM_API const char *QM_GetErrorPath(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the error-message of a record.
 *
 * @param[in] err  The record; NULL gives NULL.
 *
 * @return A text of at most 10240 characters; NULL in the general record, for a
 *         must whose error-message is an empty CDATA section, and when there was
 *         no memory for it. An error-message without any text counts as none, and
 *         the general text is given. Valid until the record is freed.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 section 4.3, RFC 7950 section 7.5.4
 */
QM_API const char *QM_GetErrorMessage(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the bad-element of a record.
 *
 * @param[in] err  The record; NULL gives NULL.
 *
 * @return The name of the element; NULL in the general record and when there was
 *         no memory for it. Valid until the record is freed.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 appendix A
 */
QM_API const char *QM_GetBadElement(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Gives the bad-attribute of a record.
 *
 * @param[in] err  The record; NULL gives NULL.
 *
 * @return "message-id" in the record of QM_AGENT_ValidateRequest() for an `<rpc>` without
 *         one, else what QM_AGENT_SetRecordText() has set; NULL in every record of
 *         QM_CTX_ValidateRpcDataTree(). Valid until it is set or the record is freed.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 appendix A
 */
QM_API const char *QM_GetBadAttribute(const QmErrNode *err) QM_NOEXCEPT;

/**
 * @brief Frees an error record with its texts.
 *
 * @param[in] err  The record; NULL is accepted.
 *
 * @par Thread safety
 * The record belongs to the calling thread.
 *
 * @see QM_CTX_ValidateRpcDataTree()
 */
QM_API void QM_FreeErrNode(QmErrNode *err) QM_NOEXCEPT;

QM_END_DECLS

#endif
