/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "packages.h"

#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "datastore.h"
#include "fault.h"
#include "schema.h"

static const char kFile[] = "packages";

typedef struct PackageList {
  uint64_t generation;
  List names;
} PackageList;

static PackageList ReadList(const Agent *agent) {
  PackageList list = {0, {NULL, 0}};
  Text text = {NULL, 0, 0};
  SharedRead(&agent->shared, kFile, &text);
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

/* What is configured must stay valid; data of a module that is not there counts as absent. */
static QmErrNode *CheckRunning(Agent *agent, QmCtx *ctx) {
  QmErrNode *fault = DatastoreRead(agent);
  if (fault != NULL) return fault;
  xmlDoc *copy = Need(xmlCopyDoc(agent->store.doc, 1));
  SchemaBind(ctx, xmlDocGetRootElement(copy), NULL);
  fault = CheckConfig(ctx, xmlDocGetRootElement(copy));
  xmlFreeDoc(copy);
  return fault;
}

/* A context of its own with the packages, so that no session is left with a half of one. */
static QmCtx *TryPackages(const Agent *agent, const List *packages) {
  QmCtx *ctx = PackagesNewContext(agent);
  for (size_t i = 0; i < packages->count && ctx != NULL; i++) {
    if (Load(ctx, packages->items[i]) == 0) continue;
    QM_CTX_Delete(ctx);
    ctx = NULL;
  }
  return ctx;
}

static uint32_t AddName(QmsModule *module, void *arg) {
  ListAdd(arg, QM_MOD_GetModuleName(module));
  return 0;
}

/* A package brings one module. What it imports has to be there, or removing the package would
   leave that behind in the sessions that are open, and nowhere else. */
static QmErrNode *TryInstall(Agent *agent, const List *installed, const char *name) {
  QmCtx *ctx = TryPackages(agent, installed);
  List before = {NULL, 0};
  List after = {NULL, 0};
  Ignore(QM_CTX_ScanAllModule(ctx, AddName, &before));
  QmErrNode *fault = NULL;
  if (ctx == NULL || Load(ctx, name) != 0)
    fault = Fault(QM_ERR_TAG_OPERATION_FAILED, "The package cannot be loaded.");
  Ignore(QM_CTX_ScanAllModule(ctx, AddName, &after));
  for (size_t i = 0; i < after.count && fault == NULL; i++) {
    if (ListHas(&before, after.items[i]) || strcmp(after.items[i], name) == 0) continue;
    char *why = PrintText("The package needs %s, which is not installed.", after.items[i]);
    fault = Fault(QM_ERR_TAG_OPERATION_FAILED, why);
    free(why);
  }
  if (fault == NULL) fault = CheckRunning(agent, ctx);
  ListFree(&before);
  ListFree(&after);
  QM_CTX_Delete(ctx);
  return fault;
}

static QmErrNode *TryRemove(Agent *agent, const List *rest, const char *name) {
  QmCtx *ctx = TryPackages(agent, rest);
  QmErrNode *fault = NULL;
  if (ctx == NULL) {
    fault = Fault(QM_ERR_TAG_OPERATION_FAILED, "The other packages cannot be loaded.");
  } else if (QM_CTX_GetModuleByModName(ctx, name) != NULL) {
    fault = Fault(QM_ERR_TAG_IN_USE, "Another package needs this one.");
  } else {
    fault = CheckRunning(agent, ctx);
  }
  QM_CTX_Delete(ctx);
  return fault;
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
    fault = TryInstall(agent, &list.names, name);
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
    fault = TryRemove(agent, &rest.names, name);
    if (fault == NULL && WriteList(agent, &rest) != 0) fault = WriteFault();
    ListFree(&rest.names);
  } else {
    fault = Fault(QM_ERR_TAG_DATA_MISSING, "The package is not installed.");
  }
  ListFree(&list.names);
  SharedUnlock(&agent->shared);
  return fault;
}
