/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "shared.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <unistd.h>

int SharedOpen(Shared *shared, const char *path) {
  shared->folder = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (shared->folder < 0) return -1;
  shared->lock = openat(shared->folder, "lock", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  return shared->lock < 0 ? -1 : 0;
}

void SharedLock(const Shared *shared) {
  while (flock(shared->lock, LOCK_EX) != 0) {
    if (errno == EINTR) continue;
    perror("netconf_agent: lock");
    exit(3);
  }
}

void SharedUnlock(const Shared *shared) {
  (void)flock(shared->lock, LOCK_UN);
}

void SharedRead(const Shared *shared, const char *name, Text *text) {
  TextClear(text);
  TextAdd(text, "");
  int file = openat(shared->folder, name, O_RDONLY | O_CLOEXEC);
  if (file < 0 && errno == ENOENT) return;
  if (file < 0 || SharedReadFrom(file, 0, text) != 0) {
    fprintf(stderr, "netconf_agent: %s: %s\n", name, strerror(errno));
    exit(3);
  }
  close(file);
}

int SharedReadFrom(int file, off_t offset, Text *text) {
  char block[16384];
  ssize_t got = 0;
  TextAdd(text, "");
  while ((got = pread(file, block, sizeof block, offset)) != 0) {
    if (got < 0 && errno != EINTR) return -1;
    if (got < 0) continue;
    TextAddBytes(text, block, (size_t)got);
    offset += got;
  }
  return 0;
}

/* Writes the new file beside the old one and brings it to the disk. */
static int WriteBeside(const Shared *shared, const char *name, const Text *text) {
  int file = openat(shared->folder, name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (file < 0) return -1;
  size_t written = 0;
  int failed = 0;
  while (!failed && written < text->length) {
    ssize_t part = write(file, text->data + written, text->length - written);
    if (part > 0) written += (size_t)part;
    failed = part == 0 || (part < 0 && errno != EINTR);
  }
  failed = failed || fsync(file) != 0;
  int error = errno;
  failed = close(file) != 0 || failed;
  errno = error;
  return failed ? -1 : 0;
}

int SharedReplace(const Shared *shared, const char *name, const Text *text) {
  char *beside = PrintText("%s.new", name);
  int failed = WriteBeside(shared, beside, text) != 0 ||
               renameat(shared->folder, beside, shared->folder, name) != 0;
  if (failed) {
    int error = errno;
    (void)unlinkat(shared->folder, beside, 0);
    errno = error;
  }
  free(beside);
  /* The rename is on the disk only once the folder is. */
  return !failed && fsync(shared->folder) == 0 ? 0 : -1;
}
