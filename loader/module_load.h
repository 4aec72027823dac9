// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// Finds the files of a module and registers what they hold. 0 also for a module that is
// loaded whole already, and for a split one of which a part cannot be read: the cause
// stands in its load errors. 2 when no file is found, 22 for NULL or when no file can be
// read, 1 when a module of the same namespace is loaded, 12 without memory for the
// suffixes of the files.
uint32_t QMS_LOADER_LoadModuleByModName(QmCtx* ctx, const char* modName);

QM_END_INTERNAL_DECLS
