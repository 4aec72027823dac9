// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// Attaching an augment's children to its target, and detaching them with
// QMS_NODE_UnCoupleAugmentNode. Statuses: 0 and 22.

// Tells the client that the run of an augment was attached, or is about to be detached:
// by the hook, and by an event of that kind.
void TellOfRun(QmsNode* augment, uint32_t eventKind);

QM_BEGIN_INTERNAL_DECLS

// Looks the target up and moves the children there. 0 at once for a coupled
// augment; 22 while the target is not there, which leaves the augment pending.
uint32_t QMS_NODE_CoupleAugmentNode(QmsNode* augment);

// The two moves. Neither looks at the coupled mark first; the move back clears it. 0,
// also without children; 22 for a NULL argument, for a target inside the augment, and on
// the way back for children that are not the target's.
uint32_t QMS_NODE_CoupleAugmentNodeAndTargetNode(QmsNode* augment, QmsNode* target);
uint32_t QMS_NODE_UnCoupleAugmentNodeAndTargetNode(QmsNode* augment, QmsNode* target);

// The hook alone, with the first node of the run.
void QMS_NODE_NotifyAugmentFirstChildNodeRelink(QmsNode* firstChild);

// Makes the input or output that an rpc or action does not declare, when that
// is what the last step of `path` names; one that is there is given as it is.
// NULL when the step names something else, or without memory.
QmsNode* QMS_NODE_UpdateTargetPathWithInputOutput(QmCtx* ctx, const char* path);
QmsNode* QMS_NODE_ConstructInputOutputNodeIfMatch(QmCtx* ctx, const char* parentPath,
                                                  const char* lastStep);
// The rpc or action that `parentPath` names and the node kind that `lastStep`
// names; NULL unless it is "input" or "output" below an rpc or action.
QmsNode* QMS_NODE_GetAugRpcParentNodeAndChildType(QmCtx* ctx, const char* parentPath,
                                                  const char* lastStep, uint32_t* kind);

// Takes `node`, which is about to be removed, off the ends of the run.
void QMS_NODE_RemoveCoupledAugmentNodeChildLink(QmsNode* augment, QmsNode* node);

// Couples the augments of a module that was added to the context and records
// the modules that they act on. 22 for a path that cannot be split, 12 without
// memory for a relation or for the target of an augment of the module itself,
// which stays pending; a target that is not there is no failure.
uint32_t QMS_LOADER_CoupleAugmentAndGenRelation(QmCtx* ctx, QmsModule* module);

// Moves the children of augments of the module itself to their targets. For
// tools that prepare a module which is in no context yet; a load does not need it. 0,
// also for a target that the module does not have; 22 for a NULL argument, a path that
// names no module, and a target inside the augment.
uint32_t QMS_LOADER_CoupleSelfAugmentNode(QmCtx* ctx, QmsModule* module);

// Ends an augment of its own module: coupled, its children belong to the target
// alone; not coupled, they are freed with it, since nothing could find them.
void QMS_LOADER_DestroySelfAugNode(QmsNode* augment);

// Looks the target up and moves the children back; the augment is pending again. 22
// when it is not coupled or in no context, or when the target is not found or does not
// hold the children.
uint32_t QMS_NODE_UnCoupleAugmentNode(QmsNode* augment);

QM_END_INTERNAL_DECLS
