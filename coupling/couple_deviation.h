// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// Applying the deviations of a module to their targets.

QM_BEGIN_INTERNAL_DECLS

// Tells the client that `target` is about to be removed. `augment`, whose run
// contains it, may be NULL and is not handed on. Gives the client's answer, 0
// without a hook.
uint32_t QMS_NODE_NotifyBeforeDeviateNotSupport(QmsNode* target, QmsNode* augment,
                                                const char* deviatingModName,
                                                const char* deviationPath);

// Applies the deviates in order and marks the deviation as applied when all
// succeed. 0, with nothing done, when it is applied already or its target is not
// there; 22 for a NULL argument, 1 for a kind that there is not. The first failure is
// returned; the deviates before it stay in effect.
uint32_t QMS_MOD_CoupleDeviation(QmsModule* module, QmsDeviation* deviation);

// Removes `target` with its subtree, and the augments that lose their target, whatever
// the client's answer is. `deviatingModName` is the interned name of the deviating
// module. 22, with nothing done, for a target that is NULL or in no context; else the
// status of the removal of the augments, and the target is gone in any case.
uint32_t QMS_MOD_CoupleDevNotSup(QmsNode* target, QmsNode* augment, const char* deviatingModName,
                                 const char* deviationPath);

// Remove the coupled augments whose target path begins with the deviation path:
// those of all modules that augment `targetModule`, directly or not, or those of
// one module. Each module that loses one is recorded as deviated. 0; 22 for a NULL
// argument or a module in no context; 12 without memory for the list of modules, or for
// a relation: that augment is taken out of its target, the ones after it stay as they are.
uint32_t QMS_MOD_RemoveAllModAugmentStartsWithDeviationPath(QmsModule* targetModule,
                                                            const char* deviatingModName,
                                                            const char* deviationPath);
uint32_t QMS_MOD_RemoveOneModAugmentStartsWithDeviationPath(QmsModule* module,
                                                            const char* deviatingModName,
                                                            const char* deviationPath);

// Applies the deviations of a module that was added to the context and records
// the modules that they act on. 22 for a path that cannot be split, 12 without
// memory for a relation; a deviation that fails or waits is no failure.
uint32_t QMS_LOADER_CoupleDeviationAndGenRelation(QmCtx* ctx, QmsModule* module);

QM_END_INTERNAL_DECLS
