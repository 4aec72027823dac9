// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// How modules hear that a module they act on came or is about to go. The event
// is raised with QMS_MOD_NotifyModuleChangeEvent.

using QmsCoupleEvtFunc = uint32_t (*)(QmCtx* ctx, const char* changedModName,
                                      const char* dependentModName, uintptr_t arg);

enum QmsModuleEvent : uint32_t { QMS_EVENT_COUPLE = 0, QMS_EVENT_UNCOUPLE = 1 };

QM_BEGIN_INTERNAL_DECLS

// The handlers: `changedModName` came or goes, `dependentModName` augments or
// deviates it. 1 when the dependent module is not loaded, else 0; what cannot
// be coupled goes on waiting.
uint32_t QMS_MOD_CoupleAugmentFromDepMods(QmCtx* ctx, const char* changedModName,
                                          const char* dependentModName, uintptr_t arg);
uint32_t QMS_MOD_UnCoupleAugmentFromDepMods(QmCtx* ctx, const char* changedModName,
                                            const char* dependentModName, uintptr_t arg);
uint32_t QMS_MOD_CoupleDeviationFromDepMods(QmCtx* ctx, const char* changedModName,
                                            const char* dependentModName, uintptr_t arg);
// Undoes nothing: the changed module is being rebuilt. The deviations are only
// marked as not applied.
uint32_t QMS_MOD_UnCoupleDeviationFromDepMods(QmCtx* ctx, const char* changedModName,
                                              const char* dependentModName, uintptr_t arg);

// The handler for a QmRelationKind and a QmsModuleEvent; NULL for any other numbers.
QmsCoupleEvtFunc QMS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event);

// Calls the handler of every relation of the module, the one recorded last first,
// whatever they answer. Always 0; nothing is done for NULL or a name without relations.
uint32_t QMS_MOD_NotifyModuleChangeEvent(QmCtx* ctx, const char* moduleName, uint32_t event,
                                         uintptr_t arg);

// Tries every augment that is not coupled and every deviation that is not
// applied; those that fail go on waiting. 22 for NULL.
uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module);

QM_END_INTERNAL_DECLS
