// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Entries of the dispatch table (dispatch.h); `dest` is the QmsDeviation and the
// QmsDeviate, zeroed again when the parsing of what is inside fails. The first gives 22
// without an absolute path or for one that leads into no module; the second -1 for a
// kind that is missing or unknown. Else the code of what failed inside.
uint32_t QMS_LOADER_ParseDeviation(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseDeviate(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);

// The kind (QmsDeviateKind) of a deviate argument, 0 for an unknown one.
uint32_t QMS_LOADER_GetDeviateType(const char* value);

// The bodies of the kinds that have one, read into `deviate`. 12 when the type of a
// replace cannot be made; else the code of the sub-statement that failed, after which
// `deviate` is still to be cleared.
uint32_t QMS_LOADER_ParseDeviateAdd(QmsModule* module, xmlNode* element, QmsDeviate* deviate);
uint32_t QMS_LOADER_ParseDeviateDelete(QmsModule* module, xmlNode* element, QmsDeviate* deviate);
uint32_t QMS_LOADER_ParseDeviateReplace(QmsModule* module, xmlNode* element, QmsDeviate* deviate);

QM_END_INTERNAL_DECLS
