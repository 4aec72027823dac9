/* SPDX-License-Identifier: BSD-3-Clause */
/* The operations of NETCONF. */
#ifndef AGENT_OPERATIONS_H
#define AGENT_OPERATIONS_H

#include "agent.h"

/* Runs the operation of a valid request. What it adds to the body is the content of the answer;
   nothing stands for "ok". */
QmErrNode *OperationsRun(Agent *agent, xmlNode *operation, Text *body);

#endif
