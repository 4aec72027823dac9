/* SPDX-License-Identifier: BSD-3-Clause */
/* The running configuration: one file, replaced whole. All functions want the shared lock. */
#ifndef AGENT_DATASTORE_H
#define AGENT_DATASTORE_H

#include "agent.h"

/* Brings agent->store.doc to what the file holds. */
QmErrNode *DatastoreRead(Agent *agent);
/* Writes the document and takes it over as what the file holds; it is freed on failure. */
QmErrNode *DatastoreWrite(Agent *agent, xmlDoc *doc);
/* A new document without data; a copy of one, bound like it. */
xmlDoc *DatastoreNew(void);
xmlDoc *DatastoreCopy(const Agent *agent, xmlDoc *doc);
/* Lets go of what was read; the schema is about to change. */
void DatastoreForget(Agent *agent);

#endif
