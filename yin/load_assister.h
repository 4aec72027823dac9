// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// Whether the assister holds a suffix whose file was not loaded yet.
bool HasUnloadedSuffix(const QmsLoadAssister* assister);

// Frees the suffixes of an assister.
void ClearLoadAssister(QmsLoadAssister* assister);

QM_BEGIN_INTERNAL_DECLS

// Enters the suffixes that the loaded module (NULL: not loaded) came from as
// loaded, then those of the candidates as not loaded, each once. Nothing for a
// module that is loaded and was not merged from split files. 12 without memory.
uint32_t QMS_LOADER_PreFillLoadAssisterFromExisting(QmsLoadAssister* assister,
                                                    const QmsModule* existing,
                                                    const QmsPathCollection* collection);

// Enters the suffixes of the candidates that the assister does not have yet; 12 without
// memory.
uint32_t QMS_LOADER_AddPathObjToLoadAssister(QmsLoadAssister* assister,
                                             const QmsPathCollection* collection);

// The next file to read, or NULL. While a suffix is not loaded, the candidate
// with the first such suffix, which becomes the current one; else the first
// candidate, once.
QmsPathObj* QMS_LOADER_GetNextPathObjToProc(QmsPathCollection* collection,
                                            QmsLoadAssister* assister);

// Marks the current suffix as loaded.
void QMS_LOADER_ResetCurrentLoadingSuffix(QmsLoadAssister* assister);

QM_END_INTERNAL_DECLS
