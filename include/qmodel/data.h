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
 */

QM_BEGIN_DECLS

/** One validation run. Opaque. */
typedef struct QmCheckAux QmCheckAux;

/** How the data of QM_CTX_ValidateRpcDataTree() is given. */
typedef enum QmInputKind {
  QM_INPUT_TEXT = 1,   /**< A NUL-terminated XML text. */
  QM_INPUT_ELEMENT = 2 /**< A libxml2 element, root of the caller's tree. */
} QmInputKind;

/** Receives one default element that a run added and that is kept. */
typedef void (*QmDefaultNodeFunc)(xmlNode *node, void *callbackArg);
/** Receives the validated notification, serialised again; valid during the call only. */
typedef uint32_t (*QmNotifOutputFunc)(const char *dumpedText, void *callbackArg);

QM_API QM_NODISCARD uint32_t QM_PAS_CheckTreeMandatory(QmCheckAux *aux, xmlNode *node) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_PAS_CheckSubtreeMandatory(QmCheckAux *aux, xmlNode *dataParent,
                                                          QmsNode *schemaNode) QM_NOEXCEPT;

QM_API QmErrNode *QM_CTX_ValidateRpcDataTree(QmCtx *ctx, uint32_t inputKind, void *data,
                                             QmDefaultNodeFunc defaultCallback,
                                             void *callbackArg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_ValidateNotifDataTree(QmCtx *ctx, const char *xmlText,
                                                          QmNotifOutputFunc outputCallback,
                                                          void *callbackArg) QM_NOEXCEPT;

QM_END_DECLS

#endif
