// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// Fills a record that the caller has zeroed; its default list is empty, its callback may
// be NULL.
void QMD_PAS_InitCheckAux(QmCheckAux* aux, QmCtx* ctx, uint32_t flags, QmDefaultNodeFunc callback,
                          void* callbackArg);
// One run over a tree. 0 when it is valid, and at once after binding for a data tree with
// a schema-mount point where an action was to be found; else the status of the first
// failure, most of which leave a record in `aux`; 22 for a NULL argument. Added defaults
// stay in the tree and in the list for the caller to settle.
uint32_t QMD_PAS_ValidateDataTree(QmCheckAux* aux, xmlNode* root);

QM_END_INTERNAL_DECLS
