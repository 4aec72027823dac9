/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_TYPES_H
#define QMODEL_TYPES_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>

/**
 * @file
 * @brief Types of leaves: what they are, their restrictions, and the typedefs they come from.
 */

QM_BEGIN_DECLS

/** A resolved type. Opaque; owned by its leaf, leaf-list, typedef or union. */
typedef struct QmtType QmtType;

/** Built-in types, RFC 7950 section 9. */
typedef enum QmtBaseType {
  QMT_BASE_TYPEDEF = 0, /**< The type names a typedef. */
  QMT_BASE_BINARY = 1,
  QMT_BASE_BITS = 2,
  QMT_BASE_BOOLEAN = 3,
  QMT_BASE_DECIMAL64 = 4,
  QMT_BASE_EMPTY = 5,
  QMT_BASE_ENUMERATION = 6,
  QMT_BASE_IDENTITYREF = 7,
  QMT_BASE_INSTANCE_IDENTIFIER = 8,
  QMT_BASE_INT8 = 9,
  QMT_BASE_INT16 = 10,
  QMT_BASE_INT32 = 11,
  QMT_BASE_INT64 = 12,
  QMT_BASE_LEAFREF = 13,
  QMT_BASE_STRING = 14,
  QMT_BASE_UINT8 = 15,
  QMT_BASE_UINT16 = 16,
  QMT_BASE_UINT32 = 17,
  QMT_BASE_UINT64 = 18,
  QMT_BASE_UNION = 19,
  QMT_BASE_NONE = 20, /**< No type. */
  QMT_BASE_COUNT = 20
} QmtBaseType;

/** Receives the module and name of a typedef, or NULLs, and a type. */
typedef uint32_t (*QmDerivedTypeScanFunc)(const char *moduleName, const char *typedefName,
                                          QmtType *type, void *arg);
/** Receives one enum or bit. @p description may be NULL. */
typedef uint32_t (*QmNameValueScanFunc)(const char *name, int64_t value, const char *description,
                                        void *arg);
/** Receives one segment of a range or length, widened to 64 bits; @p segFlags tells the sign. */
typedef uint32_t (*QmStartEndScanFunc)(uint64_t start, uint64_t end, uint32_t segFlags, void *arg);
/** Receives one pattern; @p invertMatch is 1 when it must not match. */
typedef uint32_t (*QmPatternScanFunc)(const char *pattern, uint32_t invertMatch, void *arg);
/** Receives the module and name of one base identity. */
typedef uint32_t (*QmIdentBaseScanFunc)(const char *moduleName, const char *identityName,
                                        void *arg);

QM_API uint32_t QM_TYPE_GetBuiltInBaseType(const QmtType *type) QM_NOEXCEPT;

QM_API uint32_t QM_TYPE_GetDecimal64Fraction(const QmtType *type) QM_NOEXCEPT;

QM_API const char *QM_TYPE_GetTypeConsDataLeafrefPath(const QmtType *type) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_TYPE_ScanNameValuePair(QmtType *type, QmNameValueScanFunc cb,
                                                       void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_TYPE_ScanStartEndPair(QmtType *type, QmStartEndScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_TYPE_ScanUnionSubType(QmtType *type, QmDerivedTypeScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_TYPE_ScanIdentRefBase(QmtType *type, QmIdentBaseScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_TYPE_ScanPatternInvertMatch(QmtType *type, QmPatternScanFunc cb,
                                                            void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_TYPE_IterRealTypeDerivedName(QmtType *type, QmCtx *ctx,
                                                             QmDerivedTypeScanFunc cb,
                                                             void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
