// SPDX-License-Identifier: BSD-3-Clause
// The function that a client is told events by. The context keeps it; the folders below
// raise the events where the moments are (context/event.h).
#include <qmodel/agent.h>

#include "context/records.h"

void QM_AGENT_SetEvents(QmCtx* ctx, QmAgentEventFunc func, void* arg) noexcept {
  if (ctx == nullptr) return;
  ctx->eventFunc = func;
  ctx->eventArg = arg;
}
