/* SPDX-License-Identifier: BSD-3-Clause */
/* The table of sessions, a file that they share. A session is known by its process and the
   time at which that started, so that a number that the system has given to another process
   is not taken for it. What stands in the table for a process that is gone counts no more:
   so its lock is released, however it died. */
#ifndef AGENT_SESSION_TABLE_H
#define AGENT_SESSION_TABLE_H

#include "agent.h"

/* Enters the session and gives it its number. */
void TableEnter(Agent *agent);
void TableLeave(Agent *agent);
/* The operations lock, unlock and kill-session of RFC 6241. */
QmErrNode *TableLock(Agent *agent);
QmErrNode *TableUnlock(Agent *agent);
QmErrNode *TableKill(Agent *agent, uint32_t id);
/* An error when another session has locked the datastore. The shared lock is held. */
QmErrNode *TableMayWrite(Agent *agent);

#endif
