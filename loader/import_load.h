// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/pending.h"
#include "yin/records.h"

// Loading what a loaded module imports, and the steps of it.

QM_BEGIN_INTERNAL_DECLS

// Appends the imports of the module that are neither loaded nor pending, in
// their order: 0, 2 when the module is not loaded, 12 when one cannot be appended.
uint32_t QMS_LOADER_AppendQmModImportsAsPending(QmCtx* ctx, QmsModPendTbl* tbl,
                                                const char* modName);

// Couples what remains of the module with this name and of the modules of `tbl`, each
// followed by the couple event of the named module. 22 when it is not loaded.
uint32_t QMS_LOADER_CoupleModPendTblAndCurMod(QmCtx* ctx, const char* moduleName,
                                              QmsModPendTbl* tbl);

// Loads every module that the named one imports, directly or not, and couples what was
// loaded, also after a failure. 0, or the status of the first step that fails: 2 when the
// module is not loaded, 12 when an import cannot be kept pending, what
// QMS_LOADER_LoadModuleByModName answers for an import. What was loaded stays.
uint32_t QMS_LOADER_LoadModuleImportedNames(QmCtx* ctx, const char* modName);

QM_END_INTERNAL_DECLS
