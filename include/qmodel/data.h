/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_DATA_H
#define QMODEL_DATA_H

#include <stdint.h>

#include <libxml/tree.h>

#include <qmodel/context.h>
#include <qmodel/error.h>
#include <qmodel/export.h>

/**
 * @file
 * @brief Validation of rpc, action and notification messages.
 *
 * A message is bound to the schema of a context, checked, and answered with an
 * error record after RFC 6241 section 4.3 or with the validated text. A run
 * stops at the first failure.
 *
 * Runs only read the schema: any number of threads may validate different
 * messages on one context at the same time while nothing is loaded, unloaded or
 * switched in it. One data tree belongs to one run at a time.
 *
 * A message has no document type declaration (RFC 6241 section 3): one that has any
 * is refused before what is declared is read.
 *
 * Deliberate limits: list entries with equal keys and equal leaf-list values are
 * not detected, min-elements and max-elements are not checked, leafrefs and
 * instance-identifiers are checked for their value and not for the instance
 * that they name, and the output of an rpc or action is never checked. Patterns
 * are matched by libxml2, which gives up on a value after a fixed amount of
 * backtracking; a message with many such values for a costly pattern takes its
 * time.
 */

QM_BEGIN_DECLS

/** One validation run. Opaque. */
typedef struct QmCheckAux QmCheckAux;

/** How the data of QM_CTX_ValidateRpcDataTree() is given. */
typedef enum QmInputKind {
  QM_INPUT_TEXT = 1,   /**< A NUL-terminated XML text. */
  QM_INPUT_ELEMENT = 2 /**< A libxml2 element, root of the caller's tree. */
} QmInputKind;

/**
 * Receives one default element that a run added and that is kept: the topmost
 * of each added subtree, the latest addition first. Its marks and bindings are
 * cleared before. With text input it lives during the call only.
 */
typedef void (*QmDefaultNodeFunc)(xmlNode *node, void *callbackArg);
/**
 * Receives the validated notification, serialised again: indented UTF-8 text,
 * valid during the call only. The result becomes that of the validation.
 */
typedef uint32_t (*QmNotifOutputFunc)(const char *dumpedText, void *callbackArg);

/**
 * @brief Checks that no mandatory node is missing below the start node of a run.
 *
 * A step of the validation, for programs that run one step by step with functions that
 * no public header declares; those make the run, a #QmCheckAux. A client validates with
 * QM_CTX_ValidateRpcDataTree(), which has this step, and never calls it.
 *
 * The element must be bound to its schema node. Action and rpc elements are
 * checked for their input; output is never checked. See
 * QM_PAS_CheckSubtreeMandatory() for the rules.
 *
 * @param[in,out] aux   The run. NULL is refused.
 * @param[in,out] node  Bound element. NULL and unbound elements are refused.
 *
 * @retval 0      Nothing is missing.
 * @retval 12     There was no memory for the levels of a deep schema.
 * @retval 22     An argument was refused, the run is neither one of a request
 *                nor of a notification, a node is missing (the run then holds
 *                the error record), there was no memory for a temporary
 *                element, or the schema nests more than 4096 levels deep.
 * @return Otherwise the status of a when condition that could not be evaluated
 *         (12, 22 or 28929 to 28941); the run then holds the error record.
 *
 * @par Thread safety
 * The run and its tree belong to the calling thread; the schema is only read.
 *
 * @see QM_PAS_CheckSubtreeMandatory()
 */
QM_API QM_NODISCARD uint32_t QM_PAS_CheckTreeMandatory(QmCheckAux *aux, xmlNode *node) QM_NOEXCEPT;

/**
 * @brief Checks that no mandatory node of a part of the schema is missing.
 *
 * A step of the validation; see QM_PAS_CheckTreeMandatory() for who calls it.
 *
 * A leaf, anyxml or anydata that is mandatory must have an element below
 * @p dataParent, unless its when is false there. Containers without presence
 * are followed even where they are missing, list entries and other containers
 * where they exist. A choice is followed into the case that has data, else into
 * its default case; with neither, a mandatory choice is missing. Nodes that an
 * if-feature switches off, leaf-lists, and the content of schema-mount points
 * are passed over.
 *
 * Elements are added to the tree to evaluate the when of missing nodes and are
 * taken away again before the function returns.
 *
 * @param[in,out] aux         The run. NULL is refused.
 * @param[in,out] dataParent  Bound element that holds, or should hold, the
 *                            node. NULL is refused.
 * @param[in]     schemaNode  Schema node to look for. NULL is refused.
 *
 * @retval 0      Nothing is missing.
 * @retval 12     There was no memory for the levels of a deep schema.
 * @retval 22     An argument is NULL, a node is missing (the run then holds the
 *                error record), there was no memory for a temporary element,
 *                or the schema nests more than 4096 levels deep.
 * @return Otherwise the status of a when condition that could not be evaluated
 *         (12, 22 or 28929 to 28941); the run then holds the error record.
 *
 * @par Thread safety
 * The run and its tree belong to the calling thread; the schema is only read.
 *
 * @see RFC 7950 sections 7.6.5 and 7.9.4
 */
QM_API QM_NODISCARD uint32_t QM_PAS_CheckSubtreeMandatory(QmCheckAux *aux, xmlNode *dataParent,
                                                          QmsNode *schemaNode) QM_NOEXCEPT;

/**
 * @brief Validates an rpc, or a data tree that holds an action.
 *
 * The phases: every element is bound and checked (unknown elements, second
 * instances, values, the order of input, data of several cases), defaults of
 * the input are added, when and must are evaluated, mandatory nodes are looked
 * for. Of a data tree that holds an action only the action's input is
 * completed and evaluated; what stands around it is bound and checked for
 * values. A data tree with an action and a schema-mount point is only bound.
 *
 * Default values of leaf-lists and containers with presence are never added.
 * An added element is placed where the schema has it, so that a completed tree
 * can be validated again. When the run fails, the tree is as it was given. A
 * schema that nests more than 4096 levels below the rpc or action is refused with
 * the general error record.
 *
 * Element input has three conditions:
 * - Its document must have neither an internal nor an external subset. What entities
 *   stand for would be expanded by the next reader and is checked by nobody.
 * - The element must have a parent, for example the document that it is the
 *   root of. Conditions are evaluated within that parent; without one, every
 *   when and must of the tree fails ("Failed to check must condition of …").
 * - The library marks added elements by the number 256 in libxml2's line field
 *   while it runs. An element of the caller that has this number reads as added:
 *   with a false when it is removed from the tree instead of being reported, and
 *   defaults added below it are neither handed to the callback nor removed after
 *   a failure. A client that wants no such surprise hands in elements with other
 *   line numbers, for example those of a text without line breaks, or of a
 *   parser that keeps no line numbers: `xmlParseMemory` keeps none unless the client
 *   has called `xmlLineNumbersDefault(1)`, while `xmlReadMemory` always keeps them.
 *
 * The `_private` pointers of the whole tree are overwritten, and NULL
 * afterwards.
 *
 * @param[in]     ctx              Context with the modules. NULL gives the
 *                                 general error record.
 * @param[in]     inputKind        #QM_INPUT_ELEMENT: @p data is an `xmlNode`;
 *                                 anything else: a NUL-terminated XML text.
 * @param[in,out] data             The message; it stays the caller's. NULL, an
 *                                 unparsable text, a node that is no element and
 *                                 a message with a document type declaration
 *                                 give the general error record.
 * @param[in]     defaultCallback  Called for each added element that is kept,
 *                                 after a successful run; may be NULL. Give one
 *                                 with element input: the elements added to a
 *                                 text live during the call only.
 * @param[in]     callbackArg      Handed to @p defaultCallback.
 *
 * @return NULL when the message is valid, else an error record that the caller
 *         frees with QM_FreeErrNode(). Failures that no check describes give the
 *         general record: error-type 4, severity 1, tag 18, error-path "/", no
 *         message. Deliberate: without memory for that record the result is
 *         NULL, which cannot be told from success.
 *
 * @par Thread safety
 * May run at the same time as other validations on @p ctx, not as a load, an
 * unload or a change on it. Nobody else may use the caller's tree during the call.
 *
 * @see QM_CTX_ValidateNotifDataTree(), QM_FreeErrNode(); RFC 6241 section 4.3,
 *      RFC 7950 sections 7.14 and 7.15
 */
QM_API QmErrNode *QM_CTX_ValidateRpcDataTree(QmCtx *ctx, uint32_t inputKind, void *data,
                                             QmDefaultNodeFunc defaultCallback,
                                             void *callbackArg) QM_NOEXCEPT;

/**
 * @brief Validates a notification and hands back what is left of it.
 *
 * Elements are bound; unknown elements and second instances are refused. Values
 * and the order of elements are not checked, and no defaults are added. Nodes
 * whose when or must is false are removed without an error, except that a false
 * must of the notification itself fails the run. Mandatory nodes are looked for
 * last, so one that was removed is missed.
 *
 * Deliberate: of a failure the caller learns the fact only.
 *
 * @param[in] ctx             Context with the modules. NULL is refused.
 * @param[in] xmlText         The notification as a NUL-terminated XML text.
 *                            NULL is refused.
 * @param[in] outputCallback  Receives the validated text; may be NULL. Not
 *                            called after a failure.
 * @param[in] callbackArg     Handed to @p outputCallback.
 *
 * @retval 0   The notification is valid, and the callback, if any, returned 0.
 * @retval 22  An argument is NULL, the text is not well-formed or has a document
 *             type declaration, the notification is invalid, or there was no memory.
 * @return Otherwise the result of @p outputCallback.
 *
 * @par Thread safety
 * May run at the same time as other validations on @p ctx, not as a load, an
 * unload or a change on it.
 *
 * @see QM_CTX_ValidateRpcDataTree(); RFC 7950 section 7.16
 */
QM_API QM_NODISCARD uint32_t QM_CTX_ValidateNotifDataTree(QmCtx *ctx, const char *xmlText,
                                                          QmNotifOutputFunc outputCallback,
                                                          void *callbackArg) QM_NOEXCEPT;

QM_END_DECLS

#endif
