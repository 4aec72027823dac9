// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Reads one file into a new record, or NULL after recording why.
QmsModule* QMS_LOADER_ReadFilePathToQmMod(QmCtx* ctx, const char* path, const char* modName,
                                          QmsLoadAssister* assister);

// Reads one file into *module: as the module itself when there is none yet, else
// merged into it. 22 when the file cannot be read or parsed; else the code of the merge.
uint32_t QMS_LOADER_LoadModuleByPath(QmCtx* ctx, const char* path, const char* modName,
                                     QmsLoadAssister* assister, QmsModule** module);

// Finds the files of a module and registers what they hold. 0 also for a module that is
// loaded whole already, and for a split one of which a part cannot be read: the cause
// stands in its load errors. 2 when no file is found, 22 for NULL or when no file can be
// read, 1 when a module of the same namespace is loaded, 12 without memory for the
// suffixes of the files.
uint32_t QMS_LOADER_LoadModuleByModName(QmCtx* ctx, const char* modName);

QM_END_INTERNAL_DECLS
