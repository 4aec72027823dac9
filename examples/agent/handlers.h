/* SPDX-License-Identifier: BSD-3-Clause */
/* The example router itself: what its rpcs and actions do, its state and its alarms. */
#ifndef AGENT_HANDLERS_H
#define AGENT_HANDLERS_H

#include "agent.h"

/* Runs an rpc of the example's models, or the action in a data tree; adds output to the answer.
   The request is valid and complete. */
QmErrNode *HandlersRun(Agent *agent, xmlNode *operation, Text *body);
/* Adds the state of the router to a copy of its configuration. */
void HandlersAddState(const Agent *agent, xmlNode *data);
/* Tells all sessions of the interfaces that a change of configuration has taken down or up. */
void HandlersRaiseAlarms(Agent *agent, xmlDoc *before, xmlDoc *after);

#endif
