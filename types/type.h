// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "types/records.h"

// Forgets the resolved pointers of `type` and of its union members that lead to
// typedefs of the module with this interned name.
void ClearResolvedInType(QmtType* type, const char* moduleName);

// The YANG name of a built-in type, "int8"; NULL for 0 and for ids above 19.
const char* BuiltInTypeName(uint32_t baseType);

QM_BEGIN_INTERNAL_DECLS

// Life of a record. A record holds its entries in a block that is made once, with
// as many slots as will be used. A copy's derived entries are not resolved: the
// copy may belong to another module. After a failed copy the destination is zero.
uint32_t QMT_TYPE_ExpandConstraintArray(QmtType* type, uint32_t n);
uint32_t QMT_TYPE_CopyQmtRealTypeInner(QmDict* dict, QmtType* dst, const QmtType* src);
QmtType* QMT_TYPE_CopyQmtRealType(QmDict* dict, const QmtType* src);
void QMT_TYPE_DestroyTypeConstraintArray(QmDict* dict, QmtType* type);
void QMT_TYPE_DestroyQmtRealTypeInner(QmDict* dict, QmtType* type);
void QMT_TYPE_DestroyQmtRealType(QmDict* dict, QmtType* type);
// Releases what a typedef record holds; the record is zero afterwards.
void QMS_TYPE_DestroyTypDefInner(QmDict* dict, QmsTypedef* td);

// Look-ups in the record itself; none follows the chain of typedefs.
void* QMT_TYPE_GetTypeConsDataByConsType(const QmtType* type, uint32_t kind);
QmtConsDerived* QMT_TYPE_GetTypeConsDataDerived(const QmtType* type);
uint32_t QMT_TYPE_GetTypeConsDataFractionVal(const QmtType* type);
const char* QMT_TYPE_GetInheritedTypDefName(const QmtType* type, const char** moduleName);
uint32_t QMT_TYPE_IsTypeWithIdentref(const QmtType* type);
uint32_t QMT_TYPE_IsInvalidType(const QmtType* type);

// Sets `resolved` of the derived entries that name typedefs of `module`; 22 when one
// does not exist there. The pointers lead into the typedef array of the module:
// whoever moves or frees that array calls ClearResolvedInType() first.
uint32_t QMT_TYPE_UpdateRealTypeDerivedFrom(QmtType* type, QmsModule* module);

// The value check. `input` is a text or an element, see QmtInputKind; the second
// function gives its value text, NULL when there is none. A check context serves
// one top-level check; nothing but the context is written.
uint32_t QMT_TYPE_ValidateValueNodeAgainstRealType(QmtType* type, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
const char* QMT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void* input);

QM_END_INTERNAL_DECLS
