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

QM_END_INTERNAL_DECLS
