// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "types/records.h"

// What the checks of values ask of the schema above them, beside its public functions.

QM_BEGIN_INTERNAL_DECLS

QmtType* QMS_NODE_GetLeafSchemaRealType(QmsNode* node);

QmsTypedef* QMS_MOD_FindQmsTypDefByName(QmsModule* mod, const char* name);
QmsIdentity* QM_CTX_FindIdentityByModNameAndIdentName(QmCtx* ctx, const char* modName,
                                                      const char* identName);
QmsTypedef* QM_CTX_FindTdefObjByModAndTdefName(QmCtx* ctx, const char* modName,
                                               const char* tdefName);

QM_END_INTERNAL_DECLS
