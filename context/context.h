// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/internal.h"
#include "context/records.h"

// Tells the client's event function, if there is one.
void RaiseEvent(QmCtx* ctx, const QmAgentEvent& event);

QM_BEGIN_INTERNAL_DECLS

// The base name of the file being read, which load errors carry. Set keeps what
// follows the last "/" of `path`, or nothing when it has 256 characters or more.
void QM_CTX_SetCurYinFile(QmCtx* ctx, const char* path);
void QM_CTX_ClearCurYinFile(QmCtx* ctx);
const char* QM_CTX_GetCurYinFile(QmCtx* ctx);

QM_END_INTERNAL_DECLS
