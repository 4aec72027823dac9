// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include "context/records.h"

// Walks over all that is registered, as a client's hook may make them. Whatever a
// load or an unload is about to do at that moment, each walk ends and shows exactly
// the nodes that lie below its root.
namespace every_walk {

// Walks every module of the context in every way. A walk that takes more steps than
// there can be is cut short. All findings are failures of the running test.
void Check(QmCtx* ctx);

// The same without the walks and lookups that start at each single node.
void CheckQuickly(QmCtx* ctx);

}  // namespace every_walk
