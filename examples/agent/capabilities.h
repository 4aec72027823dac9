/* SPDX-License-Identifier: BSD-3-Clause */
/* What the agent can do: the capabilities of its hello, and the YANG library of RFC 8525. */
#ifndef AGENT_CAPABILITIES_H
#define AGENT_CAPABILITIES_H

#include "agent.h"

#define BASE_1_0 "urn:ietf:params:netconf:base:1.0"
#define BASE_1_1 "urn:ietf:params:netconf:base:1.1"

/* All capabilities of this moment, one for each loaded module among them. */
List Capabilities(const Agent *agent);
/* Adds the YANG library as XML. */
void CapabilitiesAddLibrary(const Agent *agent, Text *text);

#endif
