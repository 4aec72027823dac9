// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_AppendQmModImportsAsPending(QmCtx* ctx, QmsModPendTbl* tbl,
                                                const char* modName);

QM_END_INTERNAL_DECLS
