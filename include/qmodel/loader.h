/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_LOADER_H
#define QMODEL_LOADER_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>

/**
 * @file
 * @brief Loading and unloading of modules, and the load errors.
 */

QM_BEGIN_DECLS

/** Receives one recorded load error. @p yinFile is NULL when no file was being read. */
typedef uint32_t (*QmLoadFailScanFunc)(const char *modName, const char *yinFile,
                                       const char *message, void *userData);

QM_API QM_NODISCARD uint32_t QM_CTX_LoadModule(QmCtx *ctx, const char *modName) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_LoadMemory(QmCtx *ctx, const char *yinText) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_UnloadModule(QmCtx *ctx, const char *modName) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_CTX_ScanAllSchemaLoadFail(QmCtx *ctx, QmLoadFailScanFunc callback,
                                                          void *userData) QM_NOEXCEPT;

QM_END_DECLS

#endif
