/* SPDX-License-Identifier: BSD-3-Clause */
/* A session, from the hello to its end: requests come in, answers and notifications go out. */
#ifndef AGENT_SESSION_H
#define AGENT_SESSION_H

#include "agent.h"

/* Serves the client until it is gone. The exit status: 0, or 1 when the client did what ends a
   session. */
int SessionServe(Agent *agent);

#endif
