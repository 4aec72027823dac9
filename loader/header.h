// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "context/upcalls.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

QmsModule* QMS_LOADER_ParseYinDocToQmMod(QmCtx* ctx, xmlNode* root, QmsLoadAssister* assister);
uint32_t QMS_LOADER_CheckParsedModNameMatched(const char* name, const QmsLoadAssister* assister);
QmsModule* QMS_LOADER_ReadFilePathToQmMod(QmCtx* ctx, const char* path, const char* modName,
                                          QmsLoadAssister* assister);
uint32_t QMS_LOADER_LoadModuleByPath(QmCtx* ctx, const char* path, const char* modName,
                                     QmsLoadAssister* assister, QmsModule** module);
uint32_t QMS_LOADER_ParseModuleContent(QmsModule* module, xmlNode* root, QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseSubmoduleContent(QmsModule* module, xmlNode* root,
                                          QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseModuleHeadStmts(QmsModule* module, xmlNode* root);
uint32_t QMS_LOADER_CounterAndExpandBodyStmtArray(QmsModule* module, xmlNode* root,
                                                  QmsBodyStmtCounter* counter);
uint32_t QMS_LOADER_ParseYangVersion(QmsModule* module, xmlNode* element);
uint32_t QMS_LOADER_ParseNamespace(QmsModule* module, xmlNode* element);

QM_END_INTERNAL_DECLS
