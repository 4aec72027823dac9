/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_MEMORY_H
#define QMODEL_MEMORY_H

#include <stddef.h>
#include <stdint.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief The replaceable allocator of the library.
 */

QM_BEGIN_DECLS

/** Allocates @p size bytes, or gives NULL. */
typedef void *(*QmMallocFunc)(size_t size);
/** Changes a block's size as realloc() does, or gives NULL and leaves it. */
typedef void *(*QmReallocFunc)(void *block, size_t size);
/** Releases a block that the two others made. NULL is accepted. */
typedef void (*QmFreeFunc)(void *block);

QM_API QM_NODISCARD uint32_t QM_MemRegisterCallBack(QmMallocFunc mallocFunc,
                                                    QmReallocFunc reallocFunc,
                                                    QmFreeFunc freeFunc) QM_NOEXCEPT;

QM_END_DECLS

#endif
