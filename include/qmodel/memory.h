/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_MEMORY_H
#define QMODEL_MEMORY_H

#include <stddef.h>
#include <stdint.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief The replaceable allocator of the library.
 *
 * By default the library uses malloc(), realloc() and free(). The library copes
 * with every refused allocation: the call gives a failure and leaks nothing.
 *
 * Thread rule: the registered functions must be safe to call from every thread
 * that uses the library.
 *
 * Hook rule: the registered functions must not call the library, not even to read.
 * They are called while records and lists are being changed, with locks held.
 */

QM_BEGIN_DECLS

/** Allocates @p size bytes, or gives NULL. Must not call the library. */
typedef void *(*QmMallocFunc)(size_t size);
/**
 * Changes a block's size as realloc() does, or gives NULL and leaves it. Must not
 * call the library.
 */
typedef void *(*QmReallocFunc)(void *block, size_t size);
/** Releases a block that the two others made. NULL is accepted. Must not call the library. */
typedef void (*QmFreeFunc)(void *block);

/**
 * @brief Registers the client's memory functions, once per process.
 *
 * All memory of the library comes from them afterwards, except what libxml2
 * allocates for itself. They are registered before the first context is created:
 * a block made by the C library's malloc() would otherwise be released by the new
 * function.
 *
 * @param[in] mallocFunc   Allocates. NULL is refused.
 * @param[in] reallocFunc  Changes a block's size. NULL is refused.
 * @param[in] freeFunc     Releases. NULL is refused.
 *
 * @retval 0   The functions are in use.
 * @retval 17  Functions were registered before; those stay in use. Deliberate: two
 *             clients in one process must not take each other's blocks over.
 * @retval 22  An argument is NULL; nothing changed.
 * @retval 37  The lock of the registration could not be taken; nothing changed.
 *
 * @par Thread safety
 * Registrations may compete: one succeeds, the others get 17. No other call of the
 * library may run at the same time.
 *
 * @see QM_CTX_Create()
 */
QM_API QM_NODISCARD uint32_t QM_MemRegisterCallBack(QmMallocFunc mallocFunc,
                                                    QmReallocFunc reallocFunc,
                                                    QmFreeFunc freeFunc) QM_NOEXCEPT;

QM_END_DECLS

#endif
