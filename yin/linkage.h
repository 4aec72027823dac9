// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Finds the file of a submodule and parses it into `module`. A NULL assister is
// a load from memory: the first file found is taken and nothing is remembered.
// 0; 2 when there is no file, 12 without memory for its suffix, 22 when it cannot be read,
// holds no submodule, or includes nest too deep; else the code of parsing its content
// (module_content.h).
uint32_t QMS_LOADER_LoadSubModule(QmCtx* ctx, QmsModule* module, const char* subName,
                                  QmsLoadAssister* assister);

// The import and include statements among the marked children of `root`. 0, or the code of
// the first that fails, which is recorded: 22 or 12 of an import, any of an include.
uint32_t QMS_LOADER_ParseLinkageStmts(QmsModule* module, xmlNode* root, QmsLoadAssister* assister);

// Remembers an import, each prefix of a module once. The imported module is not loaded
// here. 0; 22 without a module name or prefix, when they cannot be interned, and for more
// imports than a module can have; 12 without memory for the array.
uint32_t QMS_LOADER_ParseImport(QmsModule* module, xmlNode* element);

// Loads a submodule unless it is included already. 0; 22 without its name, and for more
// includes than a module can have; 12 when it cannot be noted; else the code of loading
// it. A failure is recorded.
uint32_t QMS_LOADER_ParseInclude(QmsModule* module, xmlNode* element, QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
