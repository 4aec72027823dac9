// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/pending.h"
#include "yin/records.h"

// The walk over the imports is QMS_LOADER_LoadModuleImportedNames.

QM_BEGIN_INTERNAL_DECLS

// Appends the imports of the module that are neither loaded nor pending, in
// their order: 0, 2 when the module is not loaded, 12 when one cannot be appended.
uint32_t QMS_LOADER_AppendQmModImportsAsPending(QmCtx* ctx, QmsModPendTbl* tbl,
                                                const char* modName);

// Couples what remains of the module with this name and of the modules of `tbl`, each
// followed by the couple event of the named module. 22 when it is not loaded.
uint32_t QMS_LOADER_CoupleModPendTblAndCurMod(QmCtx* ctx, const char* moduleName,
                                              QmsModPendTbl* tbl);

uint32_t QMS_LOADER_LoadModuleImportedNames(QmCtx* ctx, const char* modName);

QM_END_INTERNAL_DECLS
