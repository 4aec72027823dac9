// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The module whose instances mark nodes for access control (RFC 8341 section 3.3).
constexpr char kQmsNacmModule[] = "ietf-netconf-acm";

// Arrays of extension instances. Filling gives 22 without a module or a name and
// 12 when memory runs out, and leaves the element clear then; appending raises
// the count last and gives 22 when the counter is full.

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_EXT_FillExtInst(QmDict* dict, QmsExtInst* rec, const char* module, const char* name,
                             const char* argument);
uint32_t QMS_EXT_AppendOneExtInstToArray(QmDict* dict, QmsExtInst** array, uint16_t* count,
                                         const char* module, const char* name,
                                         const char* argument);
uint32_t QMS_EXT_CheckTwoExtInstSame(const QmsExtInst* a, const QmsExtInst* b);
QmsExtInst* QMS_EXT_FindSameExtInstInArray(QmsExtInst* array, uint32_t count,
                                           const QmsExtInst* inst);
QmsExtInst* QMS_EXT_CopyExtInsts(QmDict* dict, const QmsExtInst* array, uint32_t count);
uint32_t QMS_EXT_UpdateExtInstChildInsts(QmDict* dict, QmsExtInst* dst, const QmsExtInst* src);
uint32_t QMS_EXT_MergeOneExtInstToArray(QmDict* dict, QmsExtInst** array, uint16_t* count,
                                        const QmsExtInst* inst);
uint32_t QMS_EXT_MergeExtInsts(QmDict* dict, QmsExtInst** array, uint16_t* count,
                               const QmsExtInst* src, uint32_t srcCount);
// Keeps the `newCount` instances that are still set; the caller has cleared the
// others, and sets the count afterwards. On failure *array is freed and NULL.
uint32_t QMS_EXT_SubtractExtInstArray(QmDict* dict, QmsExtInst** array, uint32_t oldCount,
                                      uint32_t newCount);
void QMS_EXT_ClearExtInst(QmDict* dict, QmsExtInst* rec);
void QMS_EXT_FreeExtInsts(QmDict* dict, QmsExtInst* array, uint32_t count);
// Nothing happens when the node has the same instance already. One of
// ietf-netconf-acm sets the mark it names, for the whole subtree.
uint32_t QMS_NODE_AppendOneExtInst(QmDict* dict, QmsNode* node, const char* module,
                                   const char* name, const char* argument);

QM_END_INTERNAL_DECLS
