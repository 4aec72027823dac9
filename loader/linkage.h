// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

uint32_t QMS_LOADER_LoadSubModule(QmCtx* ctx, QmsModule* module, const char* subName,
                                  QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseLinkageStmts(QmsModule* module, xmlNode* root, QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseImport(QmsModule* module, xmlNode* element);
uint32_t QMS_LOADER_ParseInclude(QmsModule* module, xmlNode* element, QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
