// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_NODE_NotifyBeforeDeviateNotSupport(QmsNode* target, QmsNode* augment,
                                                const char* deviatingModName,
                                                const char* deviationPath);
uint32_t QMS_MOD_CoupleDeviation(QmsModule* module, QmsDeviation* deviation);
uint32_t QMS_MOD_CoupleDevNotSup(QmsNode* target, QmsNode* augment, const char* deviatingModName,
                                 const char* deviationPath);
uint32_t QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(QmsModule* targetModule,
                                                            const char* deviatingModName,
                                                            const char* deviationPath);
uint32_t QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(QmsModule* module,
                                                            const char* deviatingModName,
                                                            const char* deviationPath);
uint32_t QMS_LOADER_CoupleDeviationAndGenRelation(QmCtx* ctx, QmsModule* module);

QM_END_INTERNAL_DECLS
