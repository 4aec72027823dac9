// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

// Coupling of a whole module: what is left of it once more modules are there.

// Writes the name of the module that a target path leads into, that of its last
// qualified step. False for a path that cannot be split.
bool GetTargetModuleName(const char* path, char (&name)[kQmsNameSize]);

QM_BEGIN_INTERNAL_DECLS

// Tries every augment that is not coupled and every deviation that is not
// applied; those that fail go on waiting. 22 for NULL.
uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module);

// The same for the module with this name and for the modules of `tbl`, each
// followed by the couple event of the named module. 22 when it is not loaded.
uint32_t QMS_LOADER_CoupleModPendTblAndCurMod(QmCtx* ctx, const char* moduleName,
                                              QmsModPendTbl* tbl);

QM_END_INTERNAL_DECLS
