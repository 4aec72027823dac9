/* SPDX-License-Identifier: BSD-3-Clause */
/* The folder that all sessions share, the lock on it, and files that are read and replaced
   whole. */
#ifndef AGENT_SHARED_H
#define AGENT_SHARED_H

#include <sys/types.h>

#include "text.h"

typedef struct Shared {
  int folder; /* The open folder. */
  int lock;   /* The open lock file. */
} Shared;

/* Opens the folder and makes its lock file; -1 with errno. */
int SharedOpen(Shared *shared, const char *path);
/* One session at a time holds the lock, for the length of one operation. A process that ends
   has released it. */
void SharedLock(const Shared *shared);
void SharedUnlock(const Shared *shared);

/* Reads a whole file; one that is not there is empty. Ends the process when it cannot be read,
   since an empty table would take the locks of others away. */
void SharedRead(const Shared *shared, const char *name, Text *text);
/* Adds what an open file has from an offset on; -1 with errno. */
int SharedReadFrom(int file, off_t offset, Text *text);
/* Replaces a file: whoever reads it, also after the machine has lost its power at any moment,
   finds the old or the new one whole. -1 with errno; the old one is there then, unless it was
   the last step that failed, the sync of the folder. */
int SharedReplace(const Shared *shared, const char *name, const Text *text);

#endif
