// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "schema/records.h"

// Merges one module read from two files. Both records belong to one context, and
// the source stays the caller's. Definitions are copied into the destination,
// schema nodes move to it. The first failure is recorded for the destination and
// ends the merge; what was merged until then stays.

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
