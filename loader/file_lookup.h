// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "loader/records.h"

QM_BEGIN_INTERNAL_DECLS

QmsPathCollection* QMS_LOADER_CollectFilePathMatchedInAllDir(QmCtx* ctx, const char* name);
uint32_t QMS_LOADER_FillFullNameWithNoRevision(QmsPathCollection* collection, const char* dir,
                                               const char* name);
uint32_t QMS_LOADER_FillFullNameWithRevision(QmsPathCollection* collection, const char* dir,
                                             const char* name);
uint32_t QMS_LOADER_AppendOnePathObj(QmsPathCollection* collection, const char* path);
uint32_t QMS_LOADER_PreFillLoadAssisterFromExisting(QmsLoadAssister* assister,
                                                    const QmsModule* existing,
                                                    const QmsPathCollection* collection);
uint32_t QMS_LOADER_AddPathObjToLoadAssister(QmsLoadAssister* assister,
                                             const QmsPathCollection* collection);
QmsPathObj* QMS_LOADER_GetNextPathObjToProc(QmsPathCollection* collection,
                                            QmsLoadAssister* assister);
void QMS_LOADER_ResetCurrentLoadingSuffix(QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
