/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_EXPORT_H
#define QMODEL_EXPORT_H

/**
 * @file
 * @brief Macros that every public header uses: C linkage, export, attributes.
 *
 * Nothing here is meant for clients; the macros expand to nothing with a
 * compiler that does not know them.
 */

/** @def QM_BEGIN_DECLS
 * Opens a block of functions with C linkage. */
/** @def QM_END_DECLS
 * Closes such a block. */
/** @def QM_NOEXCEPT
 * A function throws nothing; empty in C. */
/** @def QM_API
 * Marks a function as part of the library's interface. */
/** @def QM_NODISCARD
 * The result is a status that must not be dropped. */
/** @def QM_PRINTF
 * A printf-like function: @p f is the format's position, @p a the first argument's. */

#ifdef __cplusplus
#define QM_BEGIN_DECLS extern "C" {
#define QM_END_DECLS }
#define QM_NOEXCEPT noexcept
#else
#define QM_BEGIN_DECLS
#define QM_END_DECLS
#define QM_NOEXCEPT
#endif

#if defined(__GNUC__) && defined(__cplusplus)
#define QM_API [[gnu::visibility("default")]]
#define QM_NODISCARD [[nodiscard]]
#elif defined(__GNUC__)
#define QM_API __attribute__((visibility("default")))
#define QM_NODISCARD __attribute__((warn_unused_result))
#else
#define QM_API
#define QM_NODISCARD
#endif

#if defined(__GNUC__)
#define QM_PRINTF(f, a) __attribute__((format(printf, f, a)))
#else
#define QM_PRINTF(f, a)
#endif

#endif
