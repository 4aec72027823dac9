// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "context/records.h"

// The same as QM_UTL_MatchStrWithPattern(), with the compiled form kept in the context
// while it keeps patterns; `pattern` is a text of its dictionary, or nothing is kept.
// Without a context nothing is either. May run in many threads at a time.
uint32_t MatchStrKeepingPattern(QmCtx* ctx, const char* str, const char* pattern);

// Frees the compiled forms that are kept, and gives their texts back. Serialised with
// everything else on the context.
void DropKeptPatterns(QmCtx* ctx);
