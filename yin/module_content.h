// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// The steps of a module: header, linkage, counting of the body, body. A submodule has the
// last three, into the record of the module that includes it. 0; 2 for an include without
// a file, 12 or 22 from counting, 12 for memory that the linkage lacked; else the code of
// the statement that failed (dispatch.h). After a failure the record holds what was read
// until then.
uint32_t QMS_LOADER_ParseModuleContent(QmsModule* module, xmlNode* root, QmsLoadAssister* assister);
uint32_t QMS_LOADER_ParseSubmoduleContent(QmsModule* module, xmlNode* root,
                                          QmsLoadAssister* assister);

// The header: the marked children of `root` that are yang-version, namespace and prefix. 0,
// or 22 or -1 of the first that fails, which is recorded.
uint32_t QMS_LOADER_ParseModuleHeadStmts(QmsModule* module, xmlNode* root);

// One statement of the header each. 0; 22 without an argument or when it cannot be
// interned; -1 for a version that is unknown.
uint32_t QMS_LOADER_ParseYangVersion(QmsModule* module, xmlNode* element);
uint32_t QMS_LOADER_ParseNamespace(QmsModule* module, xmlNode* element);

// Entries of the dispatch table (dispatch.h) that intern their argument into the const
// char* at `dest`, a revision only the first that comes. 22 without one or without memory.
uint32_t QMS_LOADER_ParsePrefix(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseRevision(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);

// Counts the marked body statements of `root`, unmarks extension instances that
// are not to be parsed, and grows the body arrays of `module` by what it found.
// The counts in the record stay; `counter` gets the old counts plus the new. 22 when an
// array would get too long, 12 without memory.
uint32_t QMS_LOADER_CounterAndExpandBodyStmtArray(QmsModule* module, xmlNode* root,
                                                  QmsBodyStmtCounter* counter);

QM_END_INTERNAL_DECLS
