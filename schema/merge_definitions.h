// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_MOD_MergeTwoModuleInSameCtx(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeGlobalDefData(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberImport(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberInclude(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberFeature(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberIdentity(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberExtension(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberDeviation(QmsModule* dst, QmsModule* src);
uint32_t QMS_MOD_MergeNonNodeMemberTypeDef(QmsModule* dst, QmsModule* src);

QM_END_INTERNAL_DECLS
