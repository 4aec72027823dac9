// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "context/upcalls.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QM_CTX_InitModuleTree(QmCtx* ctx);
void QM_CTX_DeInitModuleTree(QmCtx* ctx);
void QM_CTX_DestroyModuleNode(QmCtx* ctx, QmsModule* module);
uint32_t QM_CTX_AddModuleNode(QmCtx* ctx, QmsModule* module);
QmsIdentity* QM_CTX_FindIdentityByModNameAndIdentName(QmCtx* ctx, const char* modName,
                                                      const char* identName);
QmsFeature* QM_CTX_FindFeatureByModNameAndFeatName(QmCtx* ctx, const char* modName,
                                                   const char* featName);
QmsTypedef* QM_CTX_FindTdefObjByModAndTdefName(QmCtx* ctx, const char* modName,
                                               const char* tdefName);
int32_t QM_CTX_ModTreeKeyCompare(const void* keyA, const void* keyB);

QM_END_INTERNAL_DECLS
