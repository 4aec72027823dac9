// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_MOD_CoupleAugmentFromDepMods(QmCtx* ctx, const char* changedModName,
                                          const char* dependentModName, uintptr_t arg);
uint32_t QMS_MOD_UnCoupleAugmentFromDepMods(QmCtx* ctx, const char* changedModName,
                                            const char* dependentModName, uintptr_t arg);
uint32_t QMS_MOD_CoupleDeviationFromDepMods(QmCtx* ctx, const char* changedModName,
                                            const char* dependentModName, uintptr_t arg);
uint32_t QMS_MOD_UnCoupleDeviationFromDepMods(QmCtx* ctx, const char* changedModName,
                                              const char* dependentModName, uintptr_t arg);
QmsCoupleEvtFunc QMS_MOD_GetCoupleEvtProcFunc(uint32_t relationKind, uint32_t event);

QM_END_INTERNAL_DECLS
