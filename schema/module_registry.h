// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

// Makes the two trees of a context, both empty. 0; 22 without context.
uint32_t QM_CTX_InitModuleTree(QmCtx* ctx);
// 0, or 1 with nothing changed: a NULL argument, or a module of the same name or
// namespace is there.
uint32_t QM_CTX_AddModuleNode(QmCtx* ctx, QmsModule* module);
// Orders modules by text; 0 when either key is NULL.
int32_t QM_CTX_ModTreeKeyCompare(const void* keyA, const void* keyB);

// Find a definition by the names of its module and its own; NULL when either is
// not there.
QmsFeature* QM_CTX_FindFeatureByModNameAndFeatName(QmCtx* ctx, const char* modName,
                                                   const char* featName);
QmsIdentity* QM_CTX_FindIdentityByModNameAndIdentName(QmCtx* ctx, const char* modName,
                                                      const char* identName);
QmsTypedef* QM_CTX_FindTdefObjByModAndTdefName(QmCtx* ctx, const char* modName,
                                               const char* tdefName);

QM_END_INTERNAL_DECLS
