/* SPDX-License-Identifier: BSD-3-Clause */
/* Notifications, RFC 5277. What all sessions are to hear is a line in a file that they share;
   each sends it to its client, when that has subscribed. */
#ifndef AGENT_NOTIFY_H
#define AGENT_NOTIFY_H

#include "agent.h"

/* Adds the list of streams as XML. */
void NotifyAddState(Text *text);
/* The operation create-subscription. */
QmErrNode *NotifySubscribe(Agent *agent, xmlNode *operation, Text *body);
/* Tells all sessions: the text is the notification's own element, without a line end. The shared
   lock is held. */
void NotifyAll(Agent *agent, const char *text);
/* Sends what was told to all since the last call; -1 when the client is gone. */
int NotifyPump(Agent *agent);
/* Tells the client which capabilities have come and gone, RFC 6470; -1 when it is gone. */
int NotifyCapabilities(Agent *agent, const List *before, const List *after);

#endif
