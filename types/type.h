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

uint32_t QMT_TYPE_ExpandConstraintArray(QmtType* type, uint32_t n);
uint32_t QMT_TYPE_CopyQmtRealTypeInner(QmDict* dict, QmtType* dst, const QmtType* src);
QmtType* QMT_TYPE_CopyQmtRealType(QmDict* dict, const QmtType* src);
void QMT_TYPE_DestroyTypeConstraintArray(QmDict* dict, QmtType* type);
void QMT_TYPE_DestroyQmtRealTypeInner(QmDict* dict, QmtType* type);
void QMT_TYPE_DestroyQmtRealType(QmDict* dict, QmtType* type);
void* QMT_TYPE_GetTypeConsDataByConsType(const QmtType* type, uint32_t kind);
QmtConsDerived* QMT_TYPE_GetTypeConsDataDerived(const QmtType* type);
uint32_t QMT_TYPE_GetTypeConsDataFractionVal(const QmtType* type);
const char* QMT_TYPE_GetInheritedTypDefName(const QmtType* type, const char** moduleName);
uint32_t QMT_TYPE_IsTypeWithIdentref(const QmtType* type);
uint32_t QMT_TYPE_IsInvalidType(const QmtType* type);
uint32_t QMT_TYPE_UpdateRealTypeDerivedFrom(QmtType* type, QmsModule* module);
uint32_t QMT_TYPE_ValidateValueNodeAgainstRealType(QmtType* type, uint32_t inputKind,
                                                   const void* input, QmtCheckCtx* checkCtx);
const char* QMT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void* input);

QM_END_INTERNAL_DECLS
