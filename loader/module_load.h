// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_LoadModuleByModName(QmCtx* ctx, const char* modName);

QM_END_INTERNAL_DECLS
