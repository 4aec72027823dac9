/* SPDX-License-Identifier: BSD-3-Clause */
/* Modules of the agent's context: those that are always there, and feature packages, which come
   and go while sessions are open. The list of installed packages is a file with a generation in
   its first line; a session that sees a new generation loads and unloads what has changed. */
#ifndef AGENT_PACKAGES_H
#define AGENT_PACKAGES_H

#include "agent.h"

/* Makes a context with the modules that are always there; NULL after telling why not. */
QmCtx *PackagesNewContext(const Agent *agent);
/* Brings the context to the list's generation. Tells whether anything has changed. */
int PackagesRefresh(Agent *agent);
/* The operations of the module router-packages. */
QmErrNode *PackagesInstall(Agent *agent, const char *name);
QmErrNode *PackagesRemove(Agent *agent, const char *name);

#endif
