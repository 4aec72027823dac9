// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// Forgets the resolved pointers of `type` and of its union members that lead to
// typedefs of the module with this interned name.
void ClearResolvedInType(QmtType* type, const char* moduleName);

QM_BEGIN_INTERNAL_DECLS

// Life of a record. Destroying ignores NULL.
//
// Room for `n` entries, made once: 0; 22 when there is room already, 12 without memory.
uint32_t QMT_TYPE_ExpandConstraintArray(QmtType* type, uint32_t n);
// A deep copy into a zero-filled record: 0, or 12 and a zero-filled record again. Its
// derived entries are not resolved, since the copy may belong to another module.
uint32_t QMT_TYPE_CopyQmtRealTypeInner(QmDict* dict, QmtType* dst, const QmtType* src);
// The same as a block of its own, or NULL; freed by QMT_TYPE_DestroyQmtRealType().
QmtType* QMT_TYPE_CopyQmtRealType(QmDict* dict, const QmtType* src);
// Frees the entries; all else stays.
void QMT_TYPE_DestroyTypeConstraintArray(QmDict* dict, QmtType* type);
// Frees what the record holds, and makes it one without base type; the flags stay.
void QMT_TYPE_DestroyQmtRealTypeInner(QmDict* dict, QmtType* type);
// The same, and the record's block.
void QMT_TYPE_DestroyQmtRealType(QmDict* dict, QmtType* type);
// Releases what a typedef record holds; the record is zero afterwards.
void QMS_TYPE_DestroyTypDefInner(QmDict* dict, QmsTypedef* td);

// Look-ups in the record itself; none follows the chain of typedefs. A NULL type is one
// without entries.
//
// The body of the first entry of a QmtConsKind, or NULL.
void* QMT_TYPE_GetTypeConsDataByConsType(const QmtType* type, uint32_t kind);
// The derived entry, which is the first; NULL for a built-in type.
QmtConsDerived* QMT_TYPE_GetTypeConsDataDerived(const QmtType* type);
// The fraction digits that the statement states; 0 without.
uint32_t QMT_TYPE_GetTypeConsDataFractionVal(const QmtType* type);
// The name of the typedef that the type names, and its module's when asked for; both NULL
// for a built-in type.
const char* QMT_TYPE_GetInheritedTypDefName(const QmtType* type, const char** moduleName);
// 1 for the built-in type identityref, else 0.
uint32_t QMT_TYPE_IsTypeWithIdentref(const QmtType* type);
// 1 when no type statement has been read into it: NULL, QMT_BASE_NONE, or a typedef
// without entries; else 0.
uint32_t QMT_TYPE_IsInvalidType(const QmtType* type);

QM_END_INTERNAL_DECLS
