// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "platform/file.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// The document of a file, to be freed with FreeParsedDocument(); NULL when the file cannot
// be read, is no XML, or memory ran out. The second reads a file that is open already.
xmlDoc* QMS_LOADER_ReadYinFileToXmlDoc(const char* path);
xmlDoc* QMS_LOADER_ReadFileContentAsDoc(RtkVfsFile* file);

// The module of a document whose root is "module" in whatever namespace: a new record, or
// NULL. The record is the caller's, who registers it or frees it with QMS_MOD_Free().
QmsModule* QMS_LOADER_ParseYinContent(QmCtx* ctx, xmlDoc* doc, QmsLoadAssister* assister);

// The same for a root that is known to be a module.
QmsModule* QMS_LOADER_ParseYinDocToQmMod(QmCtx* ctx, xmlNode* root, QmsLoadAssister* assister);

// 0 when a module of this name may be loaded: any, or the one the load asked for; else 22.
uint32_t QMS_LOADER_CheckParsedModNameMatched(const char* name, const QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
