/* SPDX-License-Identifier: BSD-3-Clause */
/* The files of the modules, listed and handed out as RFC 6022 has it. */
#ifndef AGENT_SCHEMAS_H
#define AGENT_SCHEMAS_H

#include "agent.h"

#define MONITORING_NS "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring"

/* Adds the list of schemas as XML. */
void SchemasAddState(const Agent *agent, Text *text);
/* The operation get-schema: adds the file to the answer. */
QmErrNode *SchemasGet(Agent *agent, xmlNode *operation, Text *body);

#endif
