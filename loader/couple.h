// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_CoupleModRemainNodesToTgt(QmsModule* module);
uint32_t QMS_LOADER_CoupleModPendTblAndCurMod(QmCtx* ctx, const char* moduleName,
                                              QmsModPendTbl* tbl);

QM_END_INTERNAL_DECLS
