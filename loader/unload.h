// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/pending.h"
#include "yin/records.h"

// The steps of QMS_LOADER_UnloadModuleProc, in their order.
// The first failure of a step before the reload is returned at once; modules
// that were removed until then stay removed. 0; 12 without memory for the table; 22 for
// the path of an augment or deviation that names no module.

QM_BEGIN_INTERNAL_DECLS

// Everything up to and with the destruction of the pending modules.
uint32_t QMS_LOADER_UnloadModUncoupleProc(QmCtx* ctx, QmsModPendTbl* tbl);

// Appends the modules that must go and come back because `name` goes; nothing
// for a module that is not loaded.
uint32_t QMS_LOADER_PropagateModuleRemove(QmCtx* ctx, const char* name, QmsModPendTbl* tbl);
// Appends the modules that augment `module` and share a deviating module with it.
uint32_t QMS_LOADER_UpdateIndirectDeviatedMod(QmCtx* ctx, QmsModule* module, QmsModPendTbl* tbl);
// 1 when one module deviates both.
uint32_t QMS_LOADER_IsAugAndRmvModShareSameDevaition(QmCtx* ctx, const char* augModName,
                                                     QmsModule* module);
// 0 when the table says that the module with this interned name deviates its target, else 1.
uint32_t QMS_LOADER_CheckRelTblHaveDevByWithSameName(const QmCtxModRelTbl* tbl,
                                                     const char* srcModName);
// Appends the modules that `module` deviates and forgets the relations to them.
uint32_t QMS_LOADER_UnloadModDeviation(QmCtx* ctx, QmsModule* module, QmsModPendTbl* tbl);

// Takes the augments of the module, and those of others in it, out of their
// targets; nothing for a module that is not loaded. The second is its first half: the
// module's own, with their relations. 22 for an augment whose path names no module.
uint32_t QMS_LOADER_ProcModuleAugAndRelationUncouple(QmCtx* ctx, const char* name);
uint32_t QMS_LOADER_UnloadSelfModAugmentAndRelation(QmCtx* ctx, QmsModule* module);

// Saves the enabled features of the pending modules and destroys them. 0, or 12 when a
// feature cannot be saved; its module and those after it are still there then.
uint32_t QMS_LOADER_UnloadModRemoveProc(QmCtx* ctx, QmsModPendTbl* tbl);

// Loads the pending modules again that are to come back. 0 only when every load
// and every feature succeeded; any other value means nothing but failure.
uint32_t QMS_LOADER_ReloadRelatedMod(QmCtx* ctx, QmsModPendTbl* tbl);
uint32_t QMS_LOADER_EnableReloadModFeature(QmCtx* ctx, QmsModPendNode* node);

// Unloads the named module, and loads those again that have to come back. For one that
// is not loaded only its load errors go. 0; 12 or 22 of a step before the reload; any
// other value when a module or a feature did not come back.
uint32_t QMS_LOADER_UnloadModuleProc(QmCtx* ctx, const char* modName);

QM_END_INTERNAL_DECLS
