// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "context/internal.h"
#include "context/records.h"

QM_BEGIN_INTERNAL_DECLS

// Takes all augments of a context apart and destroys its modules in the order of their
// names.
void QM_CTX_DeInitModuleTree(QmCtx* ctx);
// Takes a module out of the trees, if it is in them, and frees it with its load
// errors; no other module keeps nodes of it, nor it nodes of another.
void QM_CTX_DestroyModuleNode(QmCtx* ctx, QmsModule* module);

QM_END_INTERNAL_DECLS
