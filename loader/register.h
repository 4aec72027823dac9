// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// The steps of QMS_LOADER_AppendModuleToCtx, which enters a
// finished module into its context and brings the other modules in line.

// Tells the client's event function of a module; `kind` is a QmAgentEventKind.
void RaiseModuleEvent(QmCtx* ctx, QmsModule* module, uint32_t kind);

QM_BEGIN_INTERNAL_DECLS

// Points the types of the module that name typedefs of their own module at
// them. The first typedef that does not exist ends the walk with 22. The second is the
// step of the walk for one node, which a leaf and a leaf-list have something to do in.
uint32_t QMS_LOADER_UpdateGlobalTypDefDerivedFrom(QmsModule* module);
uint32_t QMS_LOADER_ImplUpdateNodeLeafDerivedCb(QmsNode* node, uint32_t travType, void* arg);

// Remembers in the module the suffixes of the files that it may be merged from,
// so that none of them is read twice. 12 without memory.
uint32_t QMS_LOADER_SaveSuccLoadingSuffix(QmsModule* module, const QmsLoadAssister* assister);
// 1 when the module has the suffix.
uint32_t QMS_LOADER_FindSuffixInModMrgSource(const QmsModule* module, const char* suffix);
// Appends an interned copy of the suffix: 0, or 12 with nothing changed.
uint32_t QMS_LOADER_AddSuffixToModMrgSource(QmsModule* module, const char* suffix);

// Enters the module, or one that was extended by another file, and couples it. `assister`
// says which files it was read from; NULL for a module from memory. 22 when the context
// or the module is NULL, 1 when another module has its name or namespace; then the
// module stays the caller's. Else 0: what could not be coupled is a load error.
uint32_t QMS_LOADER_AppendModuleToCtx(QmCtx* ctx, QmsModule* module, QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
