// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// Makes the tree of relation tables, one for each target module, empty: 0, or 22 for
// NULL. Frees all tables of it.
uint32_t QM_CTX_InitModRelationTree(QmCtx* ctx);
void QM_CTX_DeInitModRelationTree(QmCtx* ctx);

// The table of a target, or NULL.
QmCtxModRelTbl* QM_CTX_FindModRelationTbl(QmCtx* ctx, const char* tgtModName);
// Adds an empty table; NULL without memory or when the target has one.
QmCtxModRelTbl* QM_CTX_AddModRelationTbl(QmCtx* ctx, const char* tgtModName);
// Frees a table with its items.
void QM_CTX_DeleteModRelationTbl(QmCtx* ctx, QmCtxModRelTbl* tbl);
// Adds an item at the head, unchecked; NULL without memory.
QmCtxModRelItem* QM_CTX_AddModRelationItem(QmCtxModRelTbl* tbl, uint32_t relType,
                                           const char* srcModName);

// Records that `srcModName`, an interned text, augments or deviates the target, and
// takes it back; a table exists while it has items. Add gives 0 (also when it is
// recorded already), 12 without memory or 22 for NULL.
uint32_t QM_CTX_AddTwoModRelation(QmCtx* ctx, const char* tgtModName, const char* srcModName,
                                  uint32_t relType);
void QM_CTX_DelTwoModRelation(QmCtx* ctx, const char* tgtModName, const char* srcModName,
                              uint32_t relType);

// All modules that augment (or deviate) `modName`, those that augment them, and so
// on, breadth first and each once. The array is the caller's, to be freed through
// the hooks; its texts are borrowed from the items. Without any, the outputs stay.
// 0, 12 without memory, 22 for a NULL argument or entry.
uint32_t QM_CTX_CollectDepModNamesRecursive(QmCtx* ctx, const char* modName, uint32_t relType,
                                            const char*** names, uint32_t* count);
// Appends a name unless it is there, by pointer: 0, or 12 when the array cannot grow.
uint32_t QM_CTX_WriteOneDepModIntoNameHolder(QmCtxNameHolder* holder, const char* modName);

// Orders tables by name; equal pointers are equal at once.
int32_t QM_CTX_CompareModRelationTbl(const void* keyA, const void* keyB);

QM_END_INTERNAL_DECLS
