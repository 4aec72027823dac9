// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Entries of the dispatch table (dispatch.h): intern a condition into the const char* or
// the QmsMust at `dest`, with module names for the prefixes in its literals; one that
// cannot be rewritten is kept as it is written. 22 without an argument, which is recorded,
// and when it cannot be interned; else the code of what failed inside of must.
uint32_t QMS_LOADER_ParseWhen(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseMust(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);

QM_END_INTERNAL_DECLS
