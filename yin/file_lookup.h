// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// Frees a candidate list; NULL is ignored.
void FreePathCollection(QmsPathCollection* collection);

QM_BEGIN_INTERNAL_DECLS

// All files of a module or submodule: a new list, freed by the caller with
// FreePathCollection(), or NULL when there is none or memory ran out. The plain
// file "name.yin" of a directory ends the search; files "name@….yin" let it go on
// to the next one.
QmsPathCollection* QMS_LOADER_CollectFilePathMatchedInAllDir(QmCtx* ctx, const char* name);

// Adds the plain file; 0 when the directory has it, 2 when it has not, 12 without memory.
uint32_t QMS_LOADER_FillFullNameWithNoRevision(QmsPathCollection* collection, const char* dir,
                                               const char* name);

// Adds the revision files and split files of a directory in the order of its
// listing. Split files and others are not meant to be mixed: the listing stops
// with 22 after the first file that makes the list a mix, and with the code of a file that
// cannot be added.
uint32_t QMS_LOADER_FillFullNameWithRevision(QmsPathCollection* collection, const char* dir,
                                             const char* name);

// Adds one file. A path too long for its field is left out without complaint; a
// split file without a suffix of at most nine characters before a "." gives 22; 12 without
// memory.
uint32_t QMS_LOADER_AppendOnePathObj(QmsPathCollection* collection, const char* path);

QM_END_INTERNAL_DECLS
