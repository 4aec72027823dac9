// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// A new record for the "module" element `root`, or NULL. The record is the
// caller's, who registers it or frees it with QMS_MOD_Free().
QmsModule* QMS_LOADER_ParseYinDocToQmMod(QmCtx* ctx, xmlNode* root, QmsLoadAssister* assister);

// 0 when a module of this name may be loaded: any, or the one the load asked for.
uint32_t QMS_LOADER_CheckParsedModNameMatched(const char* name, const QmsLoadAssister* assister);

// Reads one file into a new record, or NULL after recording why.
QmsModule* QMS_LOADER_ReadFilePathToQmMod(QmCtx* ctx, const char* path, const char* modName,
                                          QmsLoadAssister* assister);

// Reads one file into *module: as the module itself when there is none yet, else
// merged into it.
uint32_t QMS_LOADER_LoadModuleByPath(QmCtx* ctx, const char* path, const char* modName,
                                     QmsLoadAssister* assister, QmsModule** module);

// The four steps of a module: header, linkage, counting of the body, body. A
// submodule has the last three, into the record of the module that includes it.
uint32_t QMS_LOADER_ParseModuleContent(QmsModule* module, xmlNode* root, QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseSubmoduleContent(QmsModule* module, xmlNode* root,
                                          QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseModuleHeadStmts(QmsModule* module, xmlNode* root);

// Counts the marked body statements of `root`, unmarks extension instances that
// are not to be parsed, and grows the body arrays of `module` by what it found.
// The counts in the record stay; `counter` gets the old counts plus the new.
uint32_t QMS_LOADER_CounterAndExpandBodyStmtArray(QmsModule* module, xmlNode* root,
                                                  QmsBodyStmtCounter* counter);

uint32_t QMS_LOADER_ParseYangVersion(QmsModule* module, xmlNode* element);
uint32_t QMS_LOADER_ParseNamespace(QmsModule* module, xmlNode* element);

QmsModule* QMS_LOADER_ParseYinContent(QmCtx* ctx, xmlDoc* doc, QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
