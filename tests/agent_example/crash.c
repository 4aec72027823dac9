/* SPDX-License-Identifier: BSD-3-Clause */
/* Preloaded into the agent: counts the calls that change files, and kills the process at one of
   them. CRASH_AT is the number of the call, from 1 on; CRASH_WHEN is "before", "half" (of what
   a write has) or "after"; with "fail" the call fails instead, as on a disk that is full.
   CRASH_COUNT names a file that holds the number of the last call. CRASH_NO_WATCH=yes: folders
   cannot be watched, as where too many are already. CRASH_NO_KILL=yes: processes cannot be
   signalled, as those of another user. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

typedef ssize_t (*WriteFunc)(int file, const void* bytes, size_t length);
typedef int (*SyncFunc)(int file);
typedef int (*RenameFunc)(int from, const char* name, int to, const char* newName);
typedef int (*UnlinkFunc)(int folder, const char* name, int flags);
typedef int (*WatchFunc)(int flags);
typedef int (*SignalFunc)(int process, int number, siginfo_t* info, unsigned flags);

/* The function that this one stands before. POSIX has it that the pointer can be one. */
#define NEXT(type, name, function)             \
  type name = NULL;                            \
  do {                                         \
    void* found = dlsym(RTLD_NEXT, #function); \
    memcpy(&(name), &found, sizeof found);     \
  } while (0)

static int Is(const char* variable, const char* value) {
  const char* text = getenv(variable);
  return text != NULL && strcmp(text, value) == 0;
}

static void Die(void) {
  kill(getpid(), SIGKILL);
  pause();
}

/* Begins a call; tells whether it is the one to die at. */
static int Begin(void) {
  static long count;
  const char* at = getenv("CRASH_AT");
  const char* told = getenv("CRASH_COUNT");
  count++;
  if (told != NULL) {
    NEXT(WriteFunc, next, write);
    char number[32];
    int length = snprintf(number, sizeof number, "%ld", count);
    int file = open(told, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (next(file, number, (size_t)length) != length) abort();
    close(file);
  }
  int here = at != NULL && strtol(at, NULL, 10) == count;
  if (here && Is("CRASH_WHEN", "before")) Die();
  return here;
}

static void End(int here) {
  if (here) Die();
}

/* Fails the call that was begun, when it is the one and that is wanted. */
static int Fails(int here) {
  if (!here || !Is("CRASH_WHEN", "fail")) return 0;
  errno = ENOSPC;
  return 1;
}

int inotify_init1(int flags) {
  NEXT(WatchFunc, next, inotify_init1);
  if (!Is("CRASH_NO_WATCH", "yes")) return next(flags);
  errno = EMFILE;
  return -1;
}

int pidfd_send_signal(int process, int number, siginfo_t* info, unsigned flags) {
  NEXT(SignalFunc, next, pidfd_send_signal);
  if (!Is("CRASH_NO_KILL", "yes")) return next(process, number, info, flags);
  errno = EPERM;
  return -1;
}

ssize_t write(int file, const void* bytes, size_t length) {
  NEXT(WriteFunc, next, write);
  int here = Begin();
  if (Fails(here)) return -1;
  ssize_t result = next(file, bytes, here && Is("CRASH_WHEN", "half") ? length / 2 : length);
  End(here);
  return result;
}

int fsync(int file) {
  NEXT(SyncFunc, next, fsync);
  int here = Begin();
  if (Fails(here)) return -1;
  int result = next(file);
  End(here);
  return result;
}

int renameat(int from, const char* name, int to, const char* newName) {
  NEXT(RenameFunc, next, renameat);
  int here = Begin();
  if (Fails(here)) return -1;
  int result = next(from, name, to, newName);
  End(here);
  return result;
}

int unlinkat(int folder, const char* name, int flags) {
  NEXT(UnlinkFunc, next, unlinkat);
  int here = Begin();
  if (Fails(here)) return -1;
  int result = next(folder, name, flags);
  End(here);
  return result;
}
