// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <functional>

#include "context/records.h"

// Changes of a context that are taken back again, without the client's hooks.
namespace context_change {

// Calls `visit(change)` with each feature of each module switched to the other side, one
// after the other, and with a module loaded that augments what the message calls. The
// context is as before when it returns.
void ForEach(QmCtx* ctx, const xmlNode* root, const std::function<void(const char*)>& visit);

// How many schema nodes lie below what the message calls, `most` at the most; 1 where it
// calls nothing.
size_t SizeOfSchema(QmCtx* ctx, const xmlNode* root, size_t most);

}  // namespace context_change
