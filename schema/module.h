// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "context/upcalls.h"
#include "schema/records.h"
#include "xpath/upcalls.h"

// The dictionary that holds the texts of a module.
inline QmDict* ModuleDict(const QmsModule* module) {
  return &module->ctx->dict;
}

QM_BEGIN_INTERNAL_DECLS

const char* QMS_MOD_GetImportModNameByPrefix(const QmsModule* mod, const char* prefix);
uint32_t QMS_MOD_AddTopNodeToSchemaTree(QmsModule* mod, QmsNode* node);
QmsNode* QMS_MOD_FindTopLevelSchemaNode(QmsModule* mod, const char* name);
void QMS_MOD_DestroyNonNodeMember(QmsModule* mod);
void QMS_MOD_DestroyNodeMember(QmsModule* mod);

QM_END_INTERNAL_DECLS
