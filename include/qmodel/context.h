/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_CONTEXT_H
#define QMODEL_CONTEXT_H

#include <stdint.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief The schema context: its life, lookups, features, search directories and hooks.
 */

QM_BEGIN_DECLS

/** The schema context. Opaque. */
typedef struct QmCtx QmCtx;
/** One module. Opaque; owned by its context. */
typedef struct QmsModule QmsModule;
/** One schema node. Opaque; owned by its module. */
typedef struct QmsNode QmsNode;

/** Bits of the load flags of QM_CTX_Create(). */
typedef enum QmLoadFlag {
  QM_LOAD_IMPORTS = 0x1,      /**< Loading a module also loads all its imports, transitively. */
  QM_LOAD_DESCRIPTIONS = 0x2, /**< Keep description texts. */
  QM_LOAD_UNITS = 0x8         /**< Keep units texts. */
} QmLoadFlag;

/** Gives a node's private data back to the client when the node is destroyed. */
typedef void (*QmPridataFreeFunc)(QmsNode *node, void *privateData);
/** Tells that an augment's first child was attached to, or is about to leave, its target. */
typedef void (*QmFirstAugChildRelinkFunc)(QmCtx *ctx, QmsNode *node);
/** Tells that a deviation is about to remove a node. */
typedef uint32_t (*QmBeforeDeviateNotSupportFunc)(QmCtx *ctx, QmsNode *node,
                                                  const char *deviatingModName,
                                                  const char *deviationPath);
/** Tells that a deviation is about to change a node's extension instances. */
typedef uint32_t (*QmBeforeDeviateExtInstFunc)(QmCtx *ctx, QmsNode *node);
/** Tells that an unload is about to destroy a module. */
typedef void (*QmReloadModuleCbFunc)(QmCtx *ctx, const char *modName);
/** Decides whether an extension instance is kept: 0 keeps it, anything else skips it. */
typedef uint32_t (*QmExtInstFilterCbFunc)(const char *modName, const char *keyword);

QM_API QmCtx *QM_CTX_Create(uint32_t loadFlags) QM_NOEXCEPT;

QM_API void QM_CTX_Delete(QmCtx *ctx) QM_NOEXCEPT;

QM_API QmsModule *QM_CTX_GetModuleByModName(QmCtx *ctx, const char *name) QM_NOEXCEPT;

QM_API QmsModule *QM_CTX_GetModuleByModNs(QmCtx *ctx, const char *ns) QM_NOEXCEPT;

QM_API QmsNode *QM_CTX_GetTargetNode(QmCtx *ctx, const char *path, QmsNode **augment) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_DisableModFeature(QmCtx *ctx, const char *modName,
                                                      const char *featName) QM_NOEXCEPT;

QM_API uint32_t QM_CTX_IsModFeatureEnable(QmCtx *ctx, const char *modName,
                                          const char *featName) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_SetSearchDir(QmCtx *ctx, const char *dir) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_UnSetSearchDir(QmCtx *ctx, const char *dir) QM_NOEXCEPT;

QM_API void QM_CTX_SetPridataFreeFunc(QmCtx *ctx, QmPridataFreeFunc func) QM_NOEXCEPT;

QM_API void QM_CTX_SetFirstAugChildRelinkFunc(QmCtx *ctx,
                                              QmFirstAugChildRelinkFunc func) QM_NOEXCEPT;

QM_API void QM_CTX_SetBeforeDeviateNotSupportFunc(QmCtx *ctx,
                                                  QmBeforeDeviateNotSupportFunc func) QM_NOEXCEPT;

QM_API void QM_CTX_SetBeforeDeviateExtInstFunc(QmCtx *ctx,
                                               QmBeforeDeviateExtInstFunc func) QM_NOEXCEPT;

QM_API void QM_CTX_SetReloadModuleCbFunc(QmCtx *ctx, QmReloadModuleCbFunc func) QM_NOEXCEPT;

QM_API void QM_CTX_SetExtInstFilterCbFunc(QmCtx *ctx, QmExtInstFilterCbFunc func) QM_NOEXCEPT;

QM_END_DECLS

#endif
