/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "packages.h"

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "datastore.h"
#include "fault.h"

static const char kFile[] = "packages";

typedef struct PackageList {
  uint64_t generation;
  List names;
} PackageList;

static PackageList ReadList(const Agent *agent) {
  PackageList list = {0, {NULL, 0}};
  Text text = {NULL, 0, 0};
  if (SharedRead(&agent->shared, kFile, &text) != 0) TextAdd(&text, "");
  char *rest = NULL;
  char *line = strtok_r(text.data, "\n", &rest);
  if (line != NULL) list.generation = strtoull(line, NULL, 10);
  while (line != NULL && (line = strtok_r(NULL, "\n", &rest)) != NULL) ListAdd(&list.names, line);
  TextFree(&text);
  return list;
}

static int WriteList(const Agent *agent, const PackageList *list) {
  Text text = {NULL, 0, 0};
  TextPrint(&text, "%" PRIu64 "\n", list->generation + 1);
  for (size_t i = 0; i < list->names.count; i++) TextPrint(&text, "%s\n", list->names.items[i]);
  int failed = SharedReplace(&agent->shared, kFile, &text);
  TextFree(&text);
  return failed;
}

/* All features of the example's modules are on. A module that an unload has loaded again has
   its features already. */
static void EnableFeatures(QmCtx *ctx, const QmAgentEvent *event, void *arg) {
  (void)ctx;
  (void)arg;
  if (event->kind == QM_AGENT_EVENT_MODULE_LOADED) Ignore(QM_MOD_EnableFeature(event->module, "*"));
}

static uint32_t PrintLoadError(const char *module, const char *file, const char *message,
                               void *arg) {
  (void)arg;
  fprintf(stderr, "netconf_agent: %s: %s: %s\n", module, file == NULL ? "no file" : file, message);
  return 0;
}

static int Load(QmCtx *ctx, const char *module) {
  if (QM_CTX_LoadModule(ctx, module) == 0) return 0;
  fprintf(stderr, "netconf_agent: %s cannot be loaded\n", module);
  Ignore(QM_CTX_ScanAllSchemaLoadFail(ctx, PrintLoadError, NULL));
  return -1;
}

static int AddFolders(QmCtx *ctx, const List *folders) {
  for (size_t i = 0; i < folders->count; i++) {
    if (QM_CTX_SetSearchDir(ctx, folders->items[i]) == 0) continue;
    fprintf(stderr, "netconf_agent: %s: not the absolute path of a folder\n", folders->items[i]);
    return -1;
  }
  return 0;
}

QmCtx *PackagesNewContext(const Agent *agent) {
  QmCtx *ctx = Need(QM_CTX_Create(QM_LOAD_IMPORTS));
  QM_AGENT_SetEvents(ctx, EnableFeatures, NULL);
  int failed = AddFolders(ctx, &agent->compiled) != 0 || AddFolders(ctx, &agent->folders) != 0;
  for (size_t i = 0; i < agent->modules.count && !failed; i++)
    failed = Load(ctx, agent->modules.items[i]) != 0;
  if (!failed) return ctx;
  QM_CTX_Delete(ctx);
  return NULL;
}

int PackagesRefresh(Agent *agent) {
  PackageList list = ReadList(agent);
  if (list.generation == agent->generation) {
    ListFree(&list.names);
    return 0;
  }
  DatastoreForget(agent);
  for (size_t i = 0; i < agent->packages.count; i++)
    if (!ListHas(&list.names, agent->packages.items[i]))
      Ignore(QM_CTX_UnloadModule(agent->ctx, agent->packages.items[i]));
  for (size_t i = 0; i < list.names.count; i++)
    if (!ListHas(&agent->packages, list.names.items[i]))
      (void)Load(agent->ctx, list.names.items[i]);
  ListFree(&agent->packages);
  agent->packages = list.names;
  agent->generation = list.generation;
  return 1;
}

/* Loads the package into a context of its own, with all others that are installed, so that no
   session is left with a half of it. */
static QmErrNode *TryPackage(const Agent *agent, const List *installed, const char *name) {
  QmCtx *ctx = PackagesNewContext(agent);
  int failed = ctx == NULL;
  for (size_t i = 0; i < installed->count && !failed; i++)
    failed = Load(ctx, installed->items[i]) != 0;
  failed = failed || Load(ctx, name) != 0;
  QM_CTX_Delete(ctx);
  return failed ? Fault(QM_ERR_TAG_OPERATION_FAILED, "The package cannot be loaded.") : NULL;
}

static QmErrNode *WriteFault(void) {
  return Fault(QM_ERR_TAG_OPERATION_FAILED, "The list of packages cannot be written.");
}

QmErrNode *PackagesInstall(Agent *agent, const char *name) {
  if (QM_CTX_GetModuleByModName(agent->ctx, name) != NULL)
    return Fault(QM_ERR_TAG_DATA_EXISTS, "The package is installed already.");
  SharedLock(&agent->shared);
  PackageList list = ReadList(agent);
  QmErrNode *fault = NULL;
  if (!ListHas(&list.names, name)) {
    fault = TryPackage(agent, &list.names, name);
    ListAdd(&list.names, name);
    if (fault == NULL && WriteList(agent, &list) != 0) fault = WriteFault();
  }
  ListFree(&list.names);
  SharedUnlock(&agent->shared);
  return fault;
}

QmErrNode *PackagesRemove(Agent *agent, const char *name) {
  SharedLock(&agent->shared);
  PackageList list = ReadList(agent);
  QmErrNode *fault = NULL;
  if (ListHas(&list.names, name)) {
    PackageList rest = {list.generation, {NULL, 0}};
    for (size_t i = 0; i < list.names.count; i++)
      if (strcmp(list.names.items[i], name) != 0) ListAdd(&rest.names, list.names.items[i]);
    if (WriteList(agent, &rest) != 0) fault = WriteFault();
    ListFree(&rest.names);
  } else {
    fault = Fault(QM_ERR_TAG_DATA_MISSING, "The package is not installed.");
  }
  ListFree(&list.names);
  SharedUnlock(&agent->shared);
  return fault;
}
