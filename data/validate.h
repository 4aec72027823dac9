// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

// Prepares a zero-filled record for one run.
void QMD_PAS_InitCheckAux(QmCheckAux* aux, QmCtx* ctx, uint32_t flags, QmDefaultNodeFunc callback,
                          void* callbackArg);
// One run over a message: 0, or the status of the first failure, with a record in `aux`
// where a check made one. Added defaults are still listed.
uint32_t QMD_PAS_ValidateDataTree(QmCheckAux* aux, xmlNode* root);

QM_END_INTERNAL_DECLS
