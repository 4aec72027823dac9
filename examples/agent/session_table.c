/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "session_table.h"

#include <errno.h>
#include <inttypes.h>
#include <poll.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/pidfd.h>
#include <unistd.h>

#include "fault.h"

static const char kFile[] = "sessions";
enum { MAX_SESSIONS = 1024, KILL_MILLISECONDS = 5000 };

typedef struct Row {
  uint32_t id;
  pid_t pid;
  uint64_t start; /* When the process started, in ticks since the machine did. */
  int locks;      /* It holds the lock of the datastore. */
} Row;

typedef struct Table {
  uint32_t last; /* The number that was given last. */
  size_t count;
  Row rows[MAX_SESSIONS];
} Table;

/* When a process started; 0 when there is none, or only what is left of one. */
static uint64_t StartOf(pid_t pid) {
  char *path = PrintText("/proc/%d/stat", (int)pid);
  FILE *file = fopen(path, "re");
  free(path);
  if (file == NULL) return 0;
  char line[1024];
  size_t length = fread(line, 1, sizeof line - 1, file);
  fclose(file);
  line[length] = '\0';
  /* The name stands in parentheses and may have any of them itself. */
  const char *at = strrchr(line, ')');
  char state = '\0';
  uint64_t start = 0;
  if (at == NULL ||
      sscanf(at + 1,
             " %c %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %" SCNu64,
             &state, &start) != 2)
    return 0;
  return state == 'Z' || state == 'X' ? 0 : start;
}

/* Reads the rows of the sessions that live. */
static Table *ReadTable(const Agent *agent) {
  Table *table = Need(calloc(1, sizeof *table));
  Text text = {NULL, 0, 0};
  SharedRead(&agent->shared, kFile, &text);
  char *rest = NULL;
  char *line = strtok_r(text.data, "\n", &rest);
  if (line != NULL) table->last = (uint32_t)strtoul(line, NULL, 10);
  while (line != NULL && (line = strtok_r(NULL, "\n", &rest)) != NULL) {
    Row row = {0, 0, 0, 0};
    if (table->count < MAX_SESSIONS &&
        sscanf(line, "%" SCNu32 " %d %" SCNu64 " %d", &row.id, &row.pid, &row.start, &row.locks) ==
            4 &&
        row.start != 0 && StartOf(row.pid) == row.start)
      table->rows[table->count++] = row;
  }
  TextFree(&text);
  return table;
}

static int WriteTable(const Agent *agent, const Table *table) {
  Text text = {NULL, 0, 0};
  TextPrint(&text, "%" PRIu32 "\n", table->last);
  for (size_t i = 0; i < table->count; i++) {
    const Row *row = &table->rows[i];
    TextPrint(&text, "%" PRIu32 " %d %" PRIu64 " %d\n", row->id, (int)row->pid, row->start,
              row->locks);
  }
  int failed = SharedReplace(&agent->shared, kFile, &text);
  TextFree(&text);
  return failed;
}

static Row *FindRow(Table *table, uint32_t id) {
  for (size_t i = 0; i < table->count; i++)
    if (table->rows[i].id == id) return &table->rows[i];
  return NULL;
}

static const Row *Holder(const Table *table) {
  for (size_t i = 0; i < table->count; i++)
    if (table->rows[i].locks) return &table->rows[i];
  return NULL;
}

static QmErrNode *WriteFault(void) {
  return Fault(QM_ERR_TAG_OPERATION_FAILED, "The table of sessions cannot be written.");
}

void TableEnter(Agent *agent) {
  SharedLock(&agent->shared);
  Table *table = ReadTable(agent);
  int failed = table->count == MAX_SESSIONS;
  if (!failed) {
    agent->id = ++table->last == 0 ? ++table->last : table->last;
    table->rows[table->count++] = (Row){agent->id, getpid(), StartOf(getpid()), 0};
    failed = WriteTable(agent, table) != 0;
  }
  free(table);
  SharedUnlock(&agent->shared);
  if (!failed) return;
  fputs("netconf_agent: the table of sessions is full or cannot be written\n", stderr);
  exit(3);
}

void TableLeave(Agent *agent) {
  SharedLock(&agent->shared);
  Table *table = ReadTable(agent);
  Row *row = FindRow(table, agent->id);
  if (row != NULL) {
    *row = table->rows[--table->count];
    (void)WriteTable(agent, table);
  }
  free(table);
  SharedUnlock(&agent->shared);
}

/* An error that says who holds the lock. */
static QmErrNode *Denied(uint32_t tag, uint32_t type, const char *message, uint32_t holder) {
  QmErrNode *fault = With(Need(QM_AGENT_NewRecord(type, tag)), QM_AGENT_FIELD_MESSAGE, message);
  if (tag != QM_ERR_TAG_LOCK_DENIED) return fault;
  char *number = PrintText("%" PRIu32, holder);
  With(fault, QM_AGENT_FIELD_SESSION_ID, number);
  free(number);
  return fault;
}

/* Sets or takes away the mark of the session's own row. */
static QmErrNode *SetLock(const Agent *agent, Table *table, int locks) {
  Row *row = FindRow(table, agent->id);
  if (row == NULL) return WriteFault();
  row->locks = locks;
  return WriteTable(agent, table) == 0 ? NULL : WriteFault();
}

QmErrNode *TableLock(Agent *agent) {
  SharedLock(&agent->shared);
  Table *table = ReadTable(agent);
  const Row *holder = Holder(table);
  QmErrNode *fault = holder == NULL ? SetLock(agent, table, 1)
                                    : Denied(QM_ERR_TAG_LOCK_DENIED, QM_ERR_TYPE_PROTOCOL,
                                             "The datastore is locked.", holder->id);
  free(table);
  SharedUnlock(&agent->shared);
  return fault;
}

QmErrNode *TableUnlock(Agent *agent) {
  SharedLock(&agent->shared);
  Table *table = ReadTable(agent);
  const Row *holder = Holder(table);
  QmErrNode *fault =
      holder != NULL && holder->id == agent->id
          ? SetLock(agent, table, 0)
          : ProtocolFault(QM_ERR_TAG_OPERATION_FAILED, "This session does not hold the lock.");
  free(table);
  SharedUnlock(&agent->shared);
  return fault;
}

QmErrNode *TableMayWrite(Agent *agent) {
  Table *table = ReadTable(agent);
  const Row *holder = Holder(table);
  QmErrNode *fault = holder == NULL || holder->id == agent->id
                         ? NULL
                         : Denied(QM_ERR_TAG_IN_USE, QM_ERR_TYPE_APPLICATION,
                                  "The datastore is locked by another session.", holder->id);
  free(table);
  return fault;
}

/* Ends the process of a row; -1 when it lives on. The descriptor stands for the process that has
   the number now; when its start time is that of the row, it is the session, and stays so. */
static int EndProcess(const Row *row) {
  int process = pidfd_open(row->pid, 0);
  if (process < 0) return errno == ESRCH ? 0 : -1;
  int ended = StartOf(row->pid) != row->start;
  if (!ended && pidfd_send_signal(process, SIGKILL, NULL, 0) == 0) {
    struct pollfd end = {process, POLLIN, 0};
    ended = poll(&end, 1, KILL_MILLISECONDS) == 1;
  }
  close(process);
  return ended ? 0 : -1;
}

QmErrNode *TableKill(Agent *agent, uint32_t id) {
  if (id == agent->id)
    return ProtocolFault(QM_ERR_TAG_INVALID_VALUE, "A session does not kill itself.");
  /* The shared lock keeps the other session from being in the middle of an operation on the
     shared folder. */
  SharedLock(&agent->shared);
  Table *table = ReadTable(agent);
  Row *row = FindRow(table, id);
  QmErrNode *fault = NULL;
  if (row == NULL) {
    fault = ProtocolFault(QM_ERR_TAG_INVALID_VALUE, "There is no such session.");
  } else if (EndProcess(row) != 0) {
    fault = Fault(QM_ERR_TAG_OPERATION_FAILED, "The session cannot be ended.");
  } else {
    *row = table->rows[--table->count];
    if (WriteTable(agent, table) != 0) fault = WriteFault();
  }
  free(table);
  SharedUnlock(&agent->shared);
  return fault;
}
