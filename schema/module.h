// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "schema/records.h"

// The dictionary that holds the texts of a module.
inline QmDict* ModuleDict(const QmsModule* module) {
  return &module->ctx->dict;
}

// The same for any module: NULL for one without a context.
inline QmDict* ModuleDictOrNull(const QmsModule* module) {
  return module->ctx == nullptr ? nullptr : ModuleDict(module);
}

// How the registry reads module records; owned by the module record.
extern const RtkAvl3TreeInfo g_qmsModuleNameTreeInfo;
extern const RtkAvl3TreeInfo g_qmsModuleNsTreeInfo;
// The enabled bit of a feature record.
bool IsFeatureEnabled(const QmsFeature* feature);
void SetFeatureEnabled(QmsFeature* feature, bool enabled);

QM_BEGIN_INTERNAL_DECLS

// The name of the module behind a prefix, borrowed, or NULL: among the imports only, or
// that of the module itself first.
const char* QMS_MOD_GetImportModNameByPrefix(const QmsModule* mod, const char* prefix);
const char* QMS_MOD_GetModuleNameByPrefix(const QmsModule* mod, const char* prefix);

// Release parts of a record, which stays valid and empty of them: its texts and
// definitions, unless it has lost its context; its nodes.
void QMS_MOD_DestroyNonNodeMember(QmsModule* mod);
void QMS_MOD_DestroyNodeMember(QmsModule* mod);
// Does both and frees the record.
void QMS_MOD_Free(QmsModule* mod);

QM_END_INTERNAL_DECLS
