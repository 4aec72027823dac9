/* SPDX-License-Identifier: BSD-3-Clause */
/* A NETCONF agent for the example router. An SSH server starts one for each session, as the
   subsystem "netconf"; it reads requests from standard input and answers on standard output.
   Exit status: 0 the session ended, 1 the client ended it by a mistake, 2 wrong usage, 3 the
   agent cannot work. */
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "agent.h"
#include "datastore.h"
#include "packages.h"
#include "session.h"
#include "session_table.h"

static const char kUsage[] =
    "usage: netconf_agent STATE --models DIR... [--compiled DIR...] [--module NAME...]\n"
    "                     [--hello-timeout SECONDS]\n"
    "  STATE            folder that all sessions share\n"
    "  --models DIR     absolute path of a folder with models as their authors wrote them\n"
    "  --compiled DIR   absolute path of a folder with compiled models\n"
    "  --module NAME    a module that is always loaded, beside the agent's own\n"
    "  --hello-timeout SECONDS  how long the client's hello is waited for, 60 by default\n";

/* The modules whose operations and state the agent itself has. */
static const char *const kOwnModules[] = {
    "ietf-netconf",    "ietf-netconf-monitoring", "ietf-netconf-notifications",
    "notifications",   "nc-notifications",        "ietf-yang-library",
    "router-packages",
};

/* 0 for what is no number of seconds up to a day. */
static uint32_t TakeSeconds(const char *text) {
  char *end = NULL;
  long seconds = strtol(text, &end, 10);
  return *end == '\0' && seconds > 0 && seconds <= 86400 ? (uint32_t)seconds : 0;
}

static int TakeArguments(Agent *agent, int argc, char **argv) {
  if (argc < 2 || argc % 2 != 0) return -1;
  for (size_t i = 0; i < sizeof kOwnModules / sizeof *kOwnModules; i++)
    ListAdd(&agent->modules, kOwnModules[i]);
  for (int i = 2; i + 1 < argc; i += 2) {
    if (strcmp(argv[i], "--models") == 0) {
      ListAdd(&agent->folders, argv[i + 1]);
    } else if (strcmp(argv[i], "--compiled") == 0) {
      ListAdd(&agent->compiled, argv[i + 1]);
    } else if (strcmp(argv[i], "--module") == 0) {
      ListAdd(&agent->modules, argv[i + 1]);
    } else if (strcmp(argv[i], "--hello-timeout") == 0) {
      agent->helloSeconds = TakeSeconds(argv[i + 1]);
      if (agent->helloSeconds == 0) return -1;
    } else {
      return -1;
    }
  }
  return agent->folders.count > 0 ? 0 : -1;
}

/* Becomes readable when a file of the shared folder is replaced or grows. */
static int Watch(const char *folder) {
  int watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (watch >= 0) (void)inotify_add_watch(watch, folder, IN_MOVED_TO | IN_MODIFY);
  return watch;
}

static void Close(Agent *agent) {
  TableLeave(agent);
  DatastoreForget(agent);
  xmlFreeDoc(agent->subscription.filter);
  if (agent->subscription.file >= 0) close(agent->subscription.file);
  ListFree(&agent->capabilities);
  ListFree(&agent->packages);
  ListFree(&agent->modules);
  ListFree(&agent->compiled);
  ListFree(&agent->folders);
  TextFree(&agent->transport.message);
  QM_CTX_Delete(agent->ctx);
  xmlCleanupParser();
}

int main(int argc, char **argv) {
  static Agent agent = {.helloSeconds = 60, .store.file = -1, .subscription.file = -1};
  if (TakeArguments(&agent, argc, argv) != 0) {
    fputs(kUsage, stderr);
    return 2;
  }
  (void)signal(SIGPIPE, SIG_IGN);
  if (SharedOpen(&agent.shared, argv[1]) != 0) {
    perror(argv[1]);
    return 3;
  }
  agent.transport.in = STDIN_FILENO;
  agent.transport.out = STDOUT_FILENO;
  agent.watch = Watch(argv[1]);
  agent.ctx = PackagesNewContext(&agent);
  if (agent.ctx == NULL) return 3;
  (void)PackagesRefresh(&agent);
  TableEnter(&agent);
  int status = SessionServe(&agent);
  Close(&agent);
  return status;
}
