// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Finds the file of a submodule and parses it into `module`. A NULL assister is
// a load from memory: the first file found is taken and nothing is remembered.
// 2 when there is no file, 22 when it is refused or includes nest too deep.
uint32_t QMS_LOADER_LoadSubModule(QmCtx* ctx, QmsModule* module, const char* subName,
                                  QmsLoadAssister* assister);

// The import and include statements among the marked children of `root`. The code of the
// first that fails, which is recorded.
uint32_t QMS_LOADER_ParseLinkageStmts(QmsModule* module, xmlNode* root, QmsLoadAssister* assister);

// Remembers an import, each prefix of a module once. The imported module is not loaded
// here. 22 without a module name, or for a prefix statement without argument; else the code
// of appending it.
uint32_t QMS_LOADER_ParseImport(QmsModule* module, xmlNode* element);

// Loads a submodule unless it is included already. 22 without its name; else the code of
// loading it, which is recorded.
uint32_t QMS_LOADER_ParseInclude(QmsModule* module, xmlNode* element, QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
