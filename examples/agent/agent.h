/* SPDX-License-Identifier: BSD-3-Clause */
/* What one session has: a process with a context of its own. */
#ifndef AGENT_AGENT_H
#define AGENT_AGENT_H

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>
#include <time.h>

#include <libxml/tree.h>

#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

#include "shared.h"
#include "text.h"
#include "transport.h"

#define NETCONF_NS "urn:ietf:params:xml:ns:netconf:base:1.0"
#define NOTIFICATION_NS "urn:ietf:params:xml:ns:netconf:notification:1.0"

/* A list of texts, each of its own. */
typedef struct List {
  char **items;
  size_t count;
} List;

/* The configuration as this session saw it last, and by what it knows that it still is so. */
typedef struct Datastore {
  xmlDoc *doc; /* An element "config" with the data, bound to the schema; NULL: not read. */
  int file;    /* The open file: as long as it is, no other has its number. -1: there is none. */
  ino_t inode;
  off_t size;
  struct timespec changed;
} Datastore;

/* What the client has subscribed to. */
typedef struct Subscription {
  int active;
  xmlDoc *filter; /* NULL: everything. */
  int file;       /* The open file of events, which another one may have replaced; -1: none. */
  off_t offset;   /* What of it was sent. */
} Subscription;

typedef struct Agent {
  QmCtx *ctx;
  List folders;  /* Where models lie as their authors wrote them. */
  List compiled; /* Where models lie that were compiled from them. */
  List modules;  /* The modules that are always there. */
  List packages; /* The feature packages that are loaded now. */
  uint64_t generation;
  List capabilities; /* What the client was told last. */
  Shared shared;
  Datastore store;
  Subscription subscription;
  uint32_t id;           /* Of the session. */
  uint32_t helloSeconds; /* How long the client's hello is waited for. */
  int closing;           /* The client has asked for the end. */
  int watch;             /* Becomes readable when something in the shared folder changes. */
  Transport transport;
} Agent;

/* Adds a copy of a text; tells whether a text is in the list; empties the list. */
void ListAdd(List *list, const char *item);
int ListHas(const List *list, const char *item);
void ListFree(List *list);

#endif
