/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_AGENT_H
#define QMODEL_AGENT_H

#include <stddef.h>
#include <stdint.h>

#include <libxml/tree.h>

#include <qmodel/context.h>
#include <qmodel/data.h>
#include <qmodel/error.h>
#include <qmodel/export.h>

/**
 * @file
 * @brief A kit for agents: what a program that answers NETCONF messages needs
 * around the validation of qmodel/data.h.
 *
 * - Parsing: QM_AGENT_ParseMessage() makes of a text that comes from outside the
 *   document that validation wants, or says why not.
 * - Validation: QM_AGENT_ValidateRequest() and its kin answer with a verdict of
 *   their own, so that a run that could not tell, for want of memory, is never
 *   taken for a valid message. They take the operation or the whole `<rpc>`.
 * - Records: the error record of a failure as the XML of `<rpc-error>`
 *   (RFC 6241 section 4.3), and records for errors of the agent's own.
 * - Names: of tags, types, severities, kinds and statuses; the library's version.
 * - Events: modules, augments and nodes that come and go in a context, told to
 *   one function with an argument of the client's own.
 *
 * A request goes through in three steps:
 * @code
 * uint32_t reason = QM_AGENT_REASON_NONE;
 * xmlDoc *doc = QM_AGENT_ParseMessage(text, length, NULL, &reason);
 * QmErrNode *error = doc == NULL ? QM_AGENT_NewReasonRecord(reason) : NULL;
 * if (doc != NULL) {
 *   xmlNode *request = xmlDocGetRootElement(doc);
 *   const uint32_t verdict = QM_AGENT_ValidateRequest(ctx, request, NULL, NULL, &error);
 *   if (verdict == QM_AGENT_VALID) Handle(QM_AGENT_GetOperation(request));
 *   if (verdict == QM_AGENT_NO_MEMORY)
 *     error = QM_AGENT_NewRecord(QM_ERR_TYPE_RPC, QM_ERR_TAG_RESOURCE_DENIED);
 * }
 * if (error != NULL && QM_AGENT_WriteRecord(error, ctx, 0, Send, connection) != QM_OK)
 *   Close(connection);
 * QM_FreeErrNode(error);
 * xmlFreeDoc(doc);
 * @endcode
 *
 * Thread rule: as in qmodel/data.h. Functions without a context read what they
 * are given and nothing else.
 */

QM_BEGIN_DECLS

/* Parsing of messages. */

/** The largest message that is parsed when the limits name no size: 4 MiB. */
#define QM_AGENT_DEFAULT_BYTES UINT32_C(4194304)
/** The most levels of elements in each other, also when the limits ask for more. */
#define QM_AGENT_MAX_DEPTH 256
/** The most attributes of one element, declarations of namespaces among them. */
#define QM_AGENT_MAX_ATTRIBUTES 1024
/** The most declarations of namespaces that elements inside of each other have together. */
#define QM_AGENT_MAX_NAMESPACES 1024

/** Bounds of a message. A 0 stands for the default. */
typedef struct QmAgentLimits {
  size_t maxBytes;   /**< Length of the text; 0: #QM_AGENT_DEFAULT_BYTES. */
  uint32_t maxDepth; /**< Levels of elements; 0: #QM_AGENT_MAX_DEPTH, which is the most. */
} QmAgentLimits;

/** Why a message was not parsed. */
typedef enum QmAgentReason {
  QM_AGENT_REASON_NONE = 0,          /**< It was parsed. */
  QM_AGENT_REASON_WRONG_CALL = 1,    /**< The text is NULL. */
  QM_AGENT_REASON_NO_MEMORY = 2,     /**< Memory ran out. */
  QM_AGENT_REASON_TOO_BIG = 3,       /**< The text is longer than the limit. */
  QM_AGENT_REASON_TOO_DEEP = 4,      /**< Elements stand in each other beyond the limit. */
  QM_AGENT_REASON_TOO_MANY = 5,      /**< Attributes or namespaces beyond the limit. */
  QM_AGENT_REASON_NOT_UTF8 = 6,      /**< Not UTF-8, or declared as something else. */
  QM_AGENT_REASON_DOCUMENT_TYPE = 7, /**< It has a document type declaration. */
  QM_AGENT_REASON_NOT_XML =
      8 /**< Empty, with a NUL or an unbound prefix, or otherwise not well-formed. */
} QmAgentReason;

/**
 * @brief Parses a message that comes from outside.
 *
 * The document is as validation wants it: without line numbers, document type,
 * comments, instructions and CDATA sections; the pieces of a text are joined, so
 * that what is checked is all that is there; blanks between elements are
 * dropped, while an element without elements keeps its text as it is. Nothing is
 * fetched, whatever the client has set in libxml2, nothing is written to standard
 * error, and the thread's settings of libxml2 are as before afterwards.
 *
 * A message is UTF-8 and has no document type (RFC 6241 section 3). Time and
 * memory stay in proportion to the length of the text: besides length and depth,
 * #QM_AGENT_MAX_ATTRIBUTES and #QM_AGENT_MAX_NAMESPACES bound what libxml2 compares
 * with each other.
 *
 * @param[in]  text    The message; need not end with a NUL. NULL is refused.
 * @param[in]  length  Its bytes.
 * @param[in]  limits  Bounds; NULL for the defaults.
 * @param[out] reason  A #QmAgentReason; may be NULL.
 *
 * @return The document, freed with xmlFreeDoc(); NULL when @p reason says why.
 *
 * @par Thread safety
 * Any number of threads may parse at the same time, after the first context was
 * created or xmlInitParser() called.
 *
 * @see QM_AGENT_NewReasonRecord() for the answer to a message that is none
 */
QM_API xmlDoc *QM_AGENT_ParseMessage(const char *text, size_t length, const QmAgentLimits *limits,
                                     uint32_t *reason) QM_NOEXCEPT;

/* Validation. */

/** Outcome of a validation. The numbers are those of #QmStatus. */
typedef enum QmAgentVerdict {
  QM_AGENT_VALID = 0,      /**< The message is valid. */
  QM_AGENT_INVALID = 1,    /**< It is not; there is an error record. */
  QM_AGENT_NO_MEMORY = 12, /**< Could not tell: memory was refused on the way. */
  QM_AGENT_WRONG_CALL = 22 /**< Could not tell: an argument was refused. */
} QmAgentVerdict;

/**
 * Receives a piece of text, which need not end with a NUL. Non-zero ends the
 * writing and becomes its result, where there is one.
 */
typedef uint32_t (*QmAgentOutputFunc)(const char *text, size_t length, void *arg);

/**
 * @brief Validates a request, with a verdict that is never mistaken.
 *
 * The element is one of these:
 * - the `<rpc>` of RFC 6241 with one operation in it;
 * - the `<action>` of RFC 7950 section 7.15.2 with a data tree in it that holds one
 *   action, alone or in an `<rpc>`;
 * - an operation, or a data tree that holds an action, by itself.
 *
 * What an `<rpc>` or `<action>` holds is validated as QM_CTX_ValidateRpcDataTree()
 * does; its attributes stay as they are. In an `<rpc>`, a data tree must stand in an
 * `<action>`, and only that. An `<rpc>` without the attribute message-id gives
 * missing-attribute with bad-attribute `message-id` and bad-element `rpc` (RFC 6241
 * appendix A). These records have the type rpc or protocol, and no path.
 *
 * When the message is valid, its defaults are added to the tree, which so is the
 * completed request; else the tree is as it was.
 *
 * The lines of all elements of the tree (libxml2's `line`) are set to 0 first: the
 * library marks added elements there while it runs, and line 256 would read as such a
 * mark. The `_private` pointers of the operation's elements are NULL afterwards.
 *
 * When memory is refused to the run, by the hooks or in libxml2, the verdict is
 * #QM_AGENT_NO_MEMORY, whatever the run found: a node that could not be looked up is
 * not a node that is missing. The tree is as it was then.
 *
 * @param[in]     ctx              Context with the modules. NULL is refused.
 * @param[in,out] request          Element of the caller's tree. An operation or data tree
 *                                 by itself has a parent, for example its document:
 *                                 conditions are evaluated within it. NULL, other nodes and
 *                                 elements without a parent are refused. Comments,
 *                                 instructions, CDATA sections and entity references, which
 *                                 QM_AGENT_ParseMessage() does not let in, stay, and hide what
 *                                 follows them in a value; a tree of other origin should have
 *                                 none.
 * @param[in]     defaultCallback  Called for each added element, after a successful run; may
 *                                 be NULL.
 * @param[in]     callbackArg      Handed to @p defaultCallback.
 * @param[out]    error            Receives the record of an invalid message, which the caller
 *                                 frees with QM_FreeErrNode(), else NULL. May be NULL.
 *
 * @retval 0   #QM_AGENT_VALID.
 * @retval 1   #QM_AGENT_INVALID. A document with a document type declaration is among
 *             these.
 * @retval 12  #QM_AGENT_NO_MEMORY.
 * @retval 22  #QM_AGENT_WRONG_CALL.
 *
 * @par Thread safety
 * May run at the same time as other validations on @p ctx, not as a load, an
 * unload or a change on it. Nobody else may use the caller's tree during the call.
 *
 * @see QM_AGENT_GetOperation(); RFC 6241 sections 4.1 and 4.3, RFC 7950 sections 7.14 and 7.15
 */
QM_API QM_NODISCARD uint32_t QM_AGENT_ValidateRequest(QmCtx *ctx, xmlNode *request,
                                                      QmDefaultNodeFunc defaultCallback,
                                                      void *callbackArg,
                                                      QmErrNode **error) QM_NOEXCEPT;

/**
 * @brief Parses and validates a request, and hands the completed one back as text.
 *
 * As QM_AGENT_ParseMessage() and QM_AGENT_ValidateRequest() one after the other. What
 * cannot be parsed is invalid, with the record of QM_AGENT_NewReasonRecord().
 *
 * @param[in]  ctx     Context with the modules. NULL is refused.
 * @param[in]  text    The message. NULL is refused.
 * @param[in]  length  Its bytes.
 * @param[in]  limits  Bounds; NULL for the defaults.
 * @param[in]  output  Receives the completed request, an indented UTF-8 document with
 *                     XML declaration, in one piece that ends with a NUL; the length
 *                     does not count it. Called for a valid message only; its result is
 *                     not evaluated. May be NULL.
 * @param[in]  arg     Handed to @p output.
 * @param[out] error   As in QM_AGENT_ValidateRequest().
 *
 * @retval 0   #QM_AGENT_VALID.
 * @retval 1   #QM_AGENT_INVALID; so is a text that cannot be parsed.
 * @retval 12  #QM_AGENT_NO_MEMORY, also when there was none for the text that @p output gets.
 * @retval 22  #QM_AGENT_WRONG_CALL: @p ctx or @p text is NULL.
 *
 * @par Thread safety
 * As QM_AGENT_ValidateRequest().
 *
 * @see RFC 6241 sections 4.1 and 4.3, RFC 7950 sections 7.14 and 7.15
 */
QM_API QM_NODISCARD uint32_t QM_AGENT_ValidateRequestText(QmCtx *ctx, const char *text,
                                                          size_t length,
                                                          const QmAgentLimits *limits,
                                                          QmAgentOutputFunc output, void *arg,
                                                          QmErrNode **error) QM_NOEXCEPT;

/**
 * @brief Validates a notification.
 *
 * The element is the notification itself, or the `<notification>` of RFC 5277
 * section 4 with one `<eventTime>` and the notification in it. It is validated as
 * QM_CTX_ValidateNotifDataTree() does: values and order are not checked, no defaults are
 * added, and nodes whose when or must is false are removed, also when the message turns
 * out to be invalid later. Unlike that function, this one gives the record.
 *
 * Lines, `_private` pointers and refused memory are as in QM_AGENT_ValidateRequest(), but
 * what was removed until memory was refused is gone.
 *
 * @param[in]     ctx           Context with the modules. NULL is refused.
 * @param[in,out] notification  Element of the caller's tree, as in QM_AGENT_ValidateRequest().
 * @param[out]    error         Receives the record of an invalid message, which the caller
 *                              frees with QM_FreeErrNode(), else NULL. May be NULL.
 *
 * @retval 0   #QM_AGENT_VALID.
 * @retval 1   #QM_AGENT_INVALID. A document with a document type declaration is among
 *             these.
 * @retval 12  #QM_AGENT_NO_MEMORY.
 * @retval 22  #QM_AGENT_WRONG_CALL.
 *
 * @par Thread safety
 * As QM_AGENT_ValidateRequest().
 *
 * @see RFC 7950 section 7.16, RFC 5277 section 4
 */
QM_API QM_NODISCARD uint32_t QM_AGENT_ValidateNotification(QmCtx *ctx, xmlNode *notification,
                                                           QmErrNode **error) QM_NOEXCEPT;

/**
 * @brief Parses and validates a notification, and hands what is left of it back as text.
 *
 * @param[in]  ctx     Context with the modules. NULL is refused.
 * @param[in]  text    The message. NULL is refused.
 * @param[in]  length  Its bytes.
 * @param[in]  limits  Bounds; NULL for the defaults.
 * @param[in]  output  As in QM_AGENT_ValidateRequestText().
 * @param[in]  arg     Handed to @p output.
 * @param[out] error   As in QM_AGENT_ValidateNotification().
 *
 * @retval 0   #QM_AGENT_VALID.
 * @retval 1   #QM_AGENT_INVALID; so is a text that cannot be parsed.
 * @retval 12  #QM_AGENT_NO_MEMORY, also when there was none for the text that @p output gets.
 * @retval 22  #QM_AGENT_WRONG_CALL: @p ctx or @p text is NULL.
 *
 * @par Thread safety
 * As QM_AGENT_ValidateRequest().
 *
 * @see RFC 7950 section 7.16, RFC 5277 section 4
 */
QM_API QM_NODISCARD uint32_t QM_AGENT_ValidateNotificationText(QmCtx *ctx, const char *text,
                                                               size_t length,
                                                               const QmAgentLimits *limits,
                                                               QmAgentOutputFunc output, void *arg,
                                                               QmErrNode **error) QM_NOEXCEPT;

/**
 * @brief Finds the operation of a request.
 *
 * @param[in] request  An `<rpc>`, an `<action>` or an operation. NULL gives NULL.
 *
 * @return The first element below `<rpc>`, or below the `<action>` in it; any other
 *         element itself. It stays a part of the caller's tree. NULL when there is none.
 *
 * @par Thread safety
 * Reads the tree only.
 *
 * @see RFC 6241 section 4.1, RFC 7950 section 7.15.2
 */
QM_API xmlNode *QM_AGENT_GetOperation(xmlNode *request) QM_NOEXCEPT;

/* Error records. */

/** Texts of an error record. The children of error-info begin with 4. */
typedef enum QmAgentField {
  QM_AGENT_FIELD_APP_TAG = 1,        /**< error-app-tag */
  QM_AGENT_FIELD_PATH = 2,           /**< error-path */
  QM_AGENT_FIELD_MESSAGE = 3,        /**< error-message */
  QM_AGENT_FIELD_BAD_ATTRIBUTE = 4,  /**< bad-attribute */
  QM_AGENT_FIELD_BAD_ELEMENT = 5,    /**< bad-element */
  QM_AGENT_FIELD_BAD_NAMESPACE = 6,  /**< bad-namespace, of unknown-namespace */
  QM_AGENT_FIELD_SESSION_ID = 7,     /**< session-id, of lock-denied */
  QM_AGENT_FIELD_MISSING_CHOICE = 8, /**< missing-choice, RFC 7950 section 15.6 */
  QM_AGENT_FIELD_COUNT = 9           /**< One more than the last. */
} QmAgentField;

/** How a record is written. */
typedef enum QmAgentRecordFlag {
  QM_AGENT_RECORD_INDENTED = 1, /**< An element a line, indented by two blanks a level. */
  /**
   * No prefix is bound, and error-info has bad-attribute and bad-element only: the form
   * that the program qmodel prints.
   */
  QM_AGENT_RECORD_BARE = 2
} QmAgentRecordFlag;

/**
 * @brief Makes an error record for an error of the agent's own.
 *
 * So that the agent's errors and the library's are written by one function.
 *
 * @param[in] type  A #QmErrType.
 * @param[in] tag   A #QmErrTag.
 *
 * @return The record, with severity error and without texts, freed with QM_FreeErrNode();
 *         NULL when a number is not in its enumeration, or without memory.
 *
 * @par Thread safety
 * The record belongs to the calling thread.
 *
 * @see QM_AGENT_SetRecordText(), RFC 6241 appendix A
 */
QM_API QmErrNode *QM_AGENT_NewRecord(uint32_t type, uint32_t tag) QM_NOEXCEPT;

/**
 * @brief Makes the record for a message that could not be parsed.
 *
 * Texts beyond a limit give too-big, others malformed-message (RFC 6241 appendix A), of
 * the type rpc, with a message. What is the agent's own fault, a wrong call or no memory,
 * gives operation-failed and resource-denied.
 *
 * @param[in] reason  A #QmAgentReason other than #QM_AGENT_REASON_NONE.
 *
 * @return The record, freed with QM_FreeErrNode(); NULL for another number and without memory.
 *
 * @par Thread safety
 * The record belongs to the calling thread.
 */
QM_API QmErrNode *QM_AGENT_NewReasonRecord(uint32_t reason) QM_NOEXCEPT;

/**
 * @brief Sets, replaces or takes away a text of a record.
 *
 * @param[in,out] err    The record, of the library or of QM_AGENT_NewRecord(). NULL is refused.
 * @param[in]     field  A #QmAgentField.
 * @param[in]     text   Copied; NULL takes the text away.
 *
 * @retval 0   Done.
 * @retval 12  No memory; the text is as it was.
 * @retval 22  @p err is NULL or @p field no field.
 *
 * @par Thread safety
 * The record belongs to the calling thread.
 *
 * @see RFC 6241 section 4.3
 */
QM_API QM_NODISCARD uint32_t QM_AGENT_SetRecordText(QmErrNode *err, uint32_t field,
                                                    const char *text) QM_NOEXCEPT;

/**
 * @brief Gives a text of a record.
 *
 * @param[in] err    The record; NULL gives NULL.
 * @param[in] field  A #QmAgentField; another number gives NULL.
 *
 * @return The text, or NULL when the record does not have it. Valid until it is set or the
 *         record is freed.
 *
 * @par Thread safety
 * Reads the record only.
 *
 * @see RFC 6241 section 4.3
 */
QM_API const char *QM_AGENT_GetRecordText(const QmErrNode *err, uint32_t field) QM_NOEXCEPT;

/**
 * @brief Writes a record as the `<rpc-error>` of RFC 6241 section 4.3.
 *
 * The element declares the namespace of NETCONF as default. Its children stand in the order
 * of the RFC, each left out when the record does not have it. error-path declares each module
 * name that stands as a prefix in the path for the namespace of that module, when it is
 * loaded in @p ctx; missing-choice is in the namespace of YANG (RFC 7950 section 15.6). What
 * is no character of XML becomes U+FFFD.
 *
 * The function takes no memory, so that it works when there is none.
 *
 * @param[in] err     The record. NULL is refused.
 * @param[in] ctx     Context of the modules that the path names; NULL: no prefix is bound.
 * @param[in] flags   Bits of #QmAgentRecordFlag; 0: one line without a line break.
 * @param[in] output  Receives the text, piece by piece. NULL is refused.
 * @param[in] arg     Handed to @p output.
 *
 * @retval 0   Written.
 * @retval 22  An argument was refused.
 * @return Otherwise the result of @p output that ended the writing.
 *
 * @par Thread safety
 * Reads the record and the schema only.
 *
 * @see RFC 6241 section 4.3 and appendix A
 */
QM_API QM_NODISCARD uint32_t QM_AGENT_WriteRecord(const QmErrNode *err, QmCtx *ctx, uint32_t flags,
                                                  QmAgentOutputFunc output, void *arg) QM_NOEXCEPT;

/**
 * @brief Writes a record into a buffer of the caller, as snprintf() does.
 *
 * @param[in]  err     The record.
 * @param[in]  ctx     As in QM_AGENT_WriteRecord().
 * @param[in]  flags   As in QM_AGENT_WriteRecord().
 * @param[out] buffer  Receives the text, as much as fits, and always a NUL. NULL when
 *                     @p size is 0.
 * @param[in]  size    Bytes of @p buffer.
 *
 * @return The length of the whole text, without its NUL; it was cut when that is @p size or
 *         more. 0, with an empty text, when @p err is NULL.
 *
 * @par Thread safety
 * Reads the record and the schema only.
 *
 * @see RFC 6241 section 4.3
 */
QM_API size_t QM_AGENT_PrintRecord(const QmErrNode *err, QmCtx *ctx, uint32_t flags, char *buffer,
                                   size_t size) QM_NOEXCEPT;

/* Memory, names, version. */

/**
 * @brief Frees a block that the library has handed out, through the memory hooks.
 *
 * For blocks whose description says that they are the caller's and names no function
 * of their own; records have QM_FreeErrNode(), contexts QM_CTX_Delete(), documents
 * xmlFreeDoc().
 *
 * @param[in] block  The block; NULL is accepted.
 *
 * @par Thread safety
 * The block belongs to the calling thread.
 *
 * @see QM_MemRegisterCallBack()
 */
QM_API void QM_AGENT_Free(void *block) QM_NOEXCEPT;

/**
 * @brief Gives the name of an error-tag, as in "bad-element".
 *
 * @param[in] tag  A #QmErrTag.
 * @return The name, which lives as long as the library; NULL for another number.
 * @par Thread safety
 * May be called at any time.
 * @see RFC 6241 appendix A
 */
QM_API const char *QM_AGENT_GetTagName(uint32_t tag) QM_NOEXCEPT;

/**
 * @brief Gives the name of an error-type, as in "application".
 *
 * @param[in] type  A #QmErrType.
 * @return The name, which lives as long as the library; NULL for another number.
 * @par Thread safety
 * May be called at any time.
 * @see RFC 6241 section 4.3
 */
QM_API const char *QM_AGENT_GetTypeName(uint32_t type) QM_NOEXCEPT;

/**
 * @brief Gives the name of an error-severity, "error" or "warning".
 *
 * @param[in] severity  A #QmErrSeverity.
 * @return The name, which lives as long as the library; NULL for another number.
 * @par Thread safety
 * May be called at any time.
 * @see RFC 6241 section 4.3
 */
QM_API const char *QM_AGENT_GetSeverityName(uint32_t severity) QM_NOEXCEPT;

/**
 * @brief Gives the name of a node kind, the statement's, as in "leaf-list".
 *
 * @param[in] kind  A #QmsNodeKind, as QM_NODE_GetNodeType() gives it.
 * @return The name, which lives as long as the library; NULL for #QMS_NODE_NONE and other
 *         numbers.
 * @par Thread safety
 * May be called at any time.
 */
QM_API const char *QM_AGENT_GetKindName(uint32_t kind) QM_NOEXCEPT;

/**
 * @brief Gives the name of a built-in type, as in "decimal64".
 *
 * @param[in] base  A #QmtBaseType, as QM_TYPE_GetBuiltInBaseType() gives it.
 * @return The name, which lives as long as the library; NULL for #QMT_BASE_TYPEDEF,
 *         #QMT_BASE_NONE and other numbers.
 * @par Thread safety
 * May be called at any time.
 * @see RFC 7950 section 4.2.4
 */
QM_API const char *QM_AGENT_GetBaseTypeName(uint32_t base) QM_NOEXCEPT;

/**
 * @brief Gives the text of a status, as in "out of memory".
 *
 * @param[in] status  A #QmStatus or #QM_MINUS_ONE.
 * @return The text, which lives as long as the library; NULL for another number.
 * @par Thread safety
 * May be called at any time.
 */
QM_API const char *QM_AGENT_GetStatusText(uint32_t status) QM_NOEXCEPT;

/**
 * @brief Gives the text of the reason why a message was not parsed, an English sentence.
 *
 * @param[in] reason  A #QmAgentReason.
 * @return The text, which lives as long as the library; NULL for another number.
 * @par Thread safety
 * May be called at any time.
 */
QM_API const char *QM_AGENT_GetReasonText(uint32_t reason) QM_NOEXCEPT;

/**
 * @brief Gives the version of the library that runs, as in "1.0.0".
 *
 * The version of the headers that a program was compiled with is #QM_VERSION_STRING.
 *
 * @return The version, which lives as long as the library.
 * @par Thread safety
 * May be called at any time.
 */
QM_API const char *QM_AGENT_GetVersion(void) QM_NOEXCEPT;

/* Events. */

/** What an event tells. */
typedef enum QmAgentEventKind {
  /**
   * A module was loaded. It is registered, its augments are attached and its deviations
   * applied where their targets are there; its imports may still be missing.
   */
  QM_AGENT_EVENT_MODULE_LOADED = 1,
  /** A module is about to go, by an unload or with its context. Its augments are detached. */
  QM_AGENT_EVENT_MODULE_GOING = 2,
  /**
   * A module is back: an unload destroyed it and has loaded it again from its files, in
   * place of #QM_AGENT_EVENT_MODULE_LOADED. Its features are enabled again.
   */
  QM_AGENT_EVENT_MODULE_BACK = 3,
  /** An augment of another module was attached: its children hang under the target. */
  QM_AGENT_EVENT_AUGMENT_ATTACHED = 4,
  /** An augment is about to be detached. Its children still hang under the target. */
  QM_AGENT_EVENT_AUGMENT_DETACHING = 5,
  /** A deviation is about to remove a node, with everything below it. */
  QM_AGENT_EVENT_NODE_GOING = 6,
  /** A load has added another file of a module that is split to the loaded record. */
  QM_AGENT_EVENT_MODULE_EXTENDED = 7
} QmAgentEventKind;

/** One event. It lives during the call; further fields may be added at its end. */
typedef struct QmAgentEvent {
  uint32_t kind;               /**< A #QmAgentEventKind. */
  QmsModule *module;           /**< The module; that of the augment; that of the removed node. */
  const char *moduleName;      /**< Its name. */
  QmsNode *node;               /**< The first child of the augment; the removed node; else NULL. */
  QmsNode *target;             /**< Where the augment hangs; else NULL. */
  const char *path;            /**< Target path of the augment or deviation; else NULL. */
  const char *deviatingModule; /**< Name of the module that removes the node; else NULL. */
} QmAgentEvent;

/** Receives one event. */
typedef void (*QmAgentEventFunc)(QmCtx *ctx, const QmAgentEvent *event, void *arg);

/**
 * @brief Sets the function that is told what comes and goes in a context.
 *
 * It stands beside the hooks of qmodel/context.h, which are called as before, and is called
 * right after the hook where both are told of a moment.
 *
 * The order: a load tells of the augments that it attaches and the nodes that its
 * deviations remove, then of the module, then of other modules' augments that found their
 * target in it. With #QM_LOAD_IMPORTS the module is told of before its imports. An unload
 * tells of the augments that it detaches, then of each module that goes, then as a load of
 * each that comes back, of the module itself last. A context that is deleted detaches its
 * augments first, then tells of each module that goes. A load that fails before its module is
 * registered tells of nothing; one that fails later, for want of an import, has told of what stays
 * loaded.
 *
 * What is balanced: each module that was loaded or is back goes once. An augment that was
 * attached is detached once, unless a deviation has removed its children or their target. An
 * augment of a module into itself is a part of the module and told of by nobody; so is an
 * augment without children.
 *
 * Allowed in the function: everything that reads the context, walks, lookups, prints, value
 * checks and validations included; setting private data of modules and nodes; in
 * #QM_AGENT_EVENT_MODULE_LOADED and #QM_AGENT_EVENT_MODULE_BACK switching features; setting
 * this function. Not allowed: to load or unload, to delete the context, to set search
 * directories, to change nodes. While the context is being deleted there are no load errors
 * any more. Pointers of an event hold as long as other borrowed ones: until the load or unload
 * goes on.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The function; NULL removes it.
 * @param[in]     arg   Handed to @p func.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see RFC 7950 sections 7.17 and 7.20.3
 */
QM_API void QM_AGENT_SetEvents(QmCtx *ctx, QmAgentEventFunc func, void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
