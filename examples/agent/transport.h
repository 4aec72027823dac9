/* SPDX-License-Identifier: BSD-3-Clause */
/* Messages over a pair of streams, with both framings of RFC 6242. A message beyond the
   limit is read to its end and told as too big, so that the next one is found. */
#ifndef AGENT_TRANSPORT_H
#define AGENT_TRANSPORT_H

#include <stddef.h>
#include <stdint.h>

#include "text.h"

/* The largest message that the agent takes. */
#define MAX_MESSAGE ((size_t)4 * 1024 * 1024)

typedef enum Arrival {
  ARRIVAL_NONE = 0,    /* No whole message yet; wait for more. */
  ARRIVAL_MESSAGE = 1, /* A message lies in Transport.message. */
  ARRIVAL_TOO_BIG = 2, /* A message was too big; its beginning lies in Transport.message. */
  ARRIVAL_END = 3      /* The client is gone, or has broken the framing. */
} Arrival;

typedef struct Transport {
  int in;
  int out;
  int chunked;    /* The framing of base:1.1 is in use, for both directions. */
  int tooBig;     /* The message at hand is beyond the limit. */
  int state;      /* Where in the framing the next byte stands. */
  uint64_t chunk; /* Bytes of the chunk that are still to come, or its size so far. */
  size_t matched; /* Bytes of the end mark that were seen. */
  char buffer[65536];
  size_t begin; /* What was read and not looked at yet. */
  size_t end;
  Text message;
} Transport;

/* Makes a message of what was read already. */
Arrival TransportTake(Transport *transport);
/* Reads once from the stream; waits for it. 0 at its end. */
int TransportRead(Transport *transport);
/* Sends a message; -1 when the client is gone. */
int TransportSend(Transport *transport, const Text *message);

#endif
