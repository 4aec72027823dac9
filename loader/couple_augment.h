// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_NODE_CoupleAugmentNode(QmsNode* augment);
uint32_t QMS_NODE_CoupleAugmentNodeAndTargetNode(QmsNode* augment, QmsNode* target);
uint32_t QMS_NODE_UnCoupleAugmentNodeAndTargetNode(QmsNode* augment, QmsNode* target);
void QMS_NODE_NotifyAugmentFirstChildNodeRelink(QmsNode* firstChild);
QmsNode* QMS_NODE_UpdateTargetPathWithInputOutput(QmCtx* ctx, const char* path);
QmsNode* QMS_NODE_ConstructInputOutputNodeIfMatch(QmCtx* ctx, const char* parentPath,
                                                  const char* lastStep);
QmsNode* QMS_NODE_GetAugRpcParentNodeAndChildType(QmCtx* ctx, const char* parentPath,
                                                  const char* lastStep, uint32_t* kind);
void QMS_NODE_RemoveCoupledAugmentNodeChildLink(QmsNode* augment, QmsNode* node);
uint32_t QMS_LOADER_CoupleAugmentAndGenRelation(QmCtx* ctx, QmsModule* module);
uint32_t QMS_LOADER_CoupleSelfAugmentNode(QmCtx* ctx, QmsModule* module);
void QMS_LOADER_DestroySelfAugNode(QmsNode* augment);

QM_END_INTERNAL_DECLS
