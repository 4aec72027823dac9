/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_TYPES_H
#define QMODEL_TYPES_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>

/**
 * @file
 * @brief Types of leaves: what they are, their restrictions, and the typedefs they come from.
 *
 * A type is what one type statement says: a built-in type or the name of a
 * typedef, and the restrictions of that statement. The restrictions of the
 * typedefs below it stay with them; QM_TYPE_IterRealTypeDerivedName() goes
 * there. QM_NODE_GetRealType() gives the type of a leaf or leaf-list and
 * QM_MOD_GetRealTypeByTypDefName() that of a typedef; QM_NODE_ValidateValue()
 * checks a value.
 *
 * The scans hand each item to a callback, in the order of the model, and stop
 * at the first result that is not 0. Texts that a callback receives, and
 * the types themselves, are borrowed: they hold until the next load or unload on
 * the context.
 *
 * Cost of patterns, for those who choose which models to install: a pattern is
 * compiled for every value that is checked against it, and matched by going
 * back and forth. The matcher gives up after a fixed amount of work, and the
 * value then counts as one that does not match; with a pattern such as
 * "(a|aa|aaa)*b" that can take a third of a second for each value. Nested
 * unions are tried member by member; a union that is nested more than 128 deep
 * accepts nothing, and neither does any other once a check has tried 65536
 * members. Both count as 28681.
 *
 * Thread safety: all functions only read the schema. They may run side by side
 * while nothing is loaded, unloaded or switched in the same context.
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

/** Receives the module and name of a typedef, or NULLs, and a type, NULL where it is not loaded. */
typedef uint32_t (*QmDerivedTypeScanFunc)(const char *moduleName, const char *typedefName,
                                          QmtType *type, void *arg);
/** Receives one enum or bit. @p description may be NULL. */
typedef uint32_t (*QmNameValueScanFunc)(const char *name, int64_t value, const char *description,
                                        void *arg);
/** Flags of a segment of a range or length. The first two tell the sign. */
typedef enum QmtSegFlag {
  QMT_SEG_SIGNED = 0x1,    /**< Start and end are signed numbers. */
  QMT_SEG_UNSIGNED = 0x2,  /**< Start and end are unsigned numbers. */
  QMT_SEG_START_MIN = 0x4, /**< The start is written "min", over a typedef. */
  QMT_SEG_START_MAX = 0x8, /**< The start is written "max", over a typedef. */
  QMT_SEG_END_MIN = 0x10,  /**< The end is written "min", over a typedef. */
  QMT_SEG_END_MAX = 0x20   /**< The end is written "max", over a typedef. */
} QmtSegFlag;

/**
 * @brief Receives one segment of a range or length, widened to 64 bits.
 *
 * @p segFlags holds #QmtSegFlag bits, which tell how to read the numbers.
 */
typedef uint32_t (*QmStartEndScanFunc)(uint64_t start, uint64_t end, uint32_t segFlags, void *arg);
/** Receives one pattern; @p invertMatch is 1 when it must not match. */
typedef uint32_t (*QmPatternScanFunc)(const char *pattern, uint32_t invertMatch, void *arg);
/** Receives the module and name of one base identity. */
typedef uint32_t (*QmIdentBaseScanFunc)(const char *moduleName, const char *identityName,
                                        void *arg);

/**
 * @brief Tells which built-in type a type statement names.
 *
 * Only the statement itself is looked at, not the typedef that it may name.
 *
 * @param[in] type  the type; may be NULL
 *
 * @return a QmtBaseType; QMT_BASE_TYPEDEF (0) when the statement names a
 *         typedef, QMT_BASE_NONE (20) when @p type is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_TYPE_IterRealTypeDerivedName(), RFC 7950 section 4.2.4
 */
QM_API uint32_t QM_TYPE_GetBuiltInBaseType(const QmtType *type) QM_NOEXCEPT;

/**
 * @brief Gives the number of fraction digits that a decimal64 type states.
 *
 * @param[in] type  the type; may be NULL
 *
 * @return 1 to 18, or 0 when the statement has no fraction-digits
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 9.3.4
 */
QM_API uint32_t QM_TYPE_GetDecimal64Fraction(const QmtType *type) QM_NOEXCEPT;

/**
 * @brief Gives the path of a leafref.
 *
 * Prefixes are replaced by the names of their modules, and predicates are left
 * out.
 *
 * @param[in] type  the type; may be NULL
 *
 * @return the path, owned by the type; NULL when the statement has no path
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_GetLeafrefTargetNode(), RFC 7950 section 9.9.2
 */
QM_API const char *QM_TYPE_GetTypeConsDataLeafrefPath(const QmtType *type) QM_NOEXCEPT;

/**
 * @brief Hands the bits and enums of a type to a callback, each with its number.
 *
 * An enum's description is its first sentence, and is kept only in a context
 * with the load flag QM_LOAD_DESCRIPTIONS; it is NULL otherwise, and for bits.
 *
 * @param[in]     type  the type; NULL is refused
 * @param[in]     cb    receives the name, the value of the enum or the
 *                      position of the bit, the description and @p arg; NULL
 *                      is refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All items were handed over, or there are none.
 * @retval 22  @p type or @p cb is NULL.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 sections 9.6.4 and 9.7.4
 */
QM_API QM_NODISCARD uint32_t QM_TYPE_ScanNameValuePair(QmtType *type, QmNameValueScanFunc cb,
                                                       void *arg) QM_NOEXCEPT;

/**
 * @brief Hands the segments of a type's range and length to a callback.
 *
 * Bounds are widened to 64 bits. Bit 0x1 of the flags tells that they are
 * signed, bit 0x2 that they are unsigned. Over a typedef a bound may stand for
 * a limit of that typedef; its number then means nothing: 0x4 the start is
 * "min", 0x8 the start is "max", 0x10 the end is "min", 0x20 the end is "max".
 * Bounds of a decimal64 are scaled by ten to the power of its fraction digits.
 *
 * @param[in]     type  the type; NULL is refused
 * @param[in]     cb    receives start, end, flags and @p arg; NULL is refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All segments were handed over, or there are none.
 * @retval 22  @p type or @p cb is NULL, or the segments do not suit the type.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 sections 9.2.4 and 9.4.4
 */
QM_API QM_NODISCARD uint32_t QM_TYPE_ScanStartEndPair(QmtType *type, QmStartEndScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

/**
 * @brief Hands the member types of a union to a callback.
 *
 * @param[in]     type  the type; NULL is refused
 * @param[in]     cb    receives NULL, NULL, the member type and @p arg; NULL is
 *                      refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All members were handed over, or there are none.
 * @retval 22  @p type or @p cb is NULL.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 9.12
 */
QM_API QM_NODISCARD uint32_t QM_TYPE_ScanUnionSubType(QmtType *type, QmDerivedTypeScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

/**
 * @brief Hands the bases of an identityref to a callback.
 *
 * @param[in]     type  the type; NULL is refused
 * @param[in]     cb    receives the name of the module that defines the base,
 *                      the name of the identity and @p arg; NULL is refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All bases were handed over, or there are none.
 * @retval 22  @p type or @p cb is NULL.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 9.10.2
 */
QM_API QM_NODISCARD uint32_t QM_TYPE_ScanIdentRefBase(QmtType *type, QmIdentBaseScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

/**
 * @brief Hands the patterns of a type to a callback.
 *
 * @param[in]     type  the type; NULL is refused
 * @param[in]     cb    receives the pattern, 1 when a value must not match it
 *                      (else 0), and @p arg; NULL is refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All patterns were handed over, or there are none.
 * @retval 22  @p type or @p cb is NULL.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 sections 9.4.5 and 9.4.6
 */
QM_API QM_NODISCARD uint32_t QM_TYPE_ScanPatternInvertMatch(QmtType *type, QmPatternScanFunc cb,
                                                            void *arg) QM_NOEXCEPT;

/**
 * @brief Walks the typedefs from which a type derives, down to the built-in type.
 *
 * For a built-in type the callback is called once, with NULL, NULL and the
 * type. Otherwise it is called for each typedef of the chain, nearest first,
 * with the type of that typedef. Where a typedef is not loaded, the callback
 * gets its names with a NULL type, and the walk ends with 0.
 *
 * @param[in]     type  the type; NULL is refused
 * @param[in]     ctx   the context in which typedefs are looked up; with NULL
 *                      none is found
 * @param[in]     cb    receives the name of the module, the name of the
 *                      typedef, its type and @p arg; NULL is refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   The chain was walked to its end, or to a typedef that is not loaded.
 * @retval 22  @p type or @p cb is NULL, a type of the chain has neither a
 *             built-in type nor a typedef, or the chain has more than 128 links.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.3
 */
QM_API QM_NODISCARD uint32_t QM_TYPE_IterRealTypeDerivedName(QmtType *type, QmCtx *ctx,
                                                             QmDerivedTypeScanFunc cb,
                                                             void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
