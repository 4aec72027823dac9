/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "datastore.h"

#include <errno.h>
#include <sys/stat.h>

#include "fault.h"
#include "schema.h"

static const char kFile[] = "datastore.xml";
#define MAX_DATASTORE ((size_t)256 * 1024 * 1024)

xmlDoc *DatastoreNew(void) {
  xmlDoc *doc = Need(xmlNewDoc(X("1.0")));
  xmlNode *root = Need(xmlNewDocNode(doc, NULL, X("config"), NULL));
  xmlSetNs(root, Need(xmlNewNs(root, X(NETCONF_NS), NULL)));
  xmlDocSetRootElement(doc, root);
  return doc;
}

/* Top-level nodes first, then what stands below them. */
static void Bind(const Agent *agent, xmlDoc *doc) {
  SchemaBind(agent->ctx, xmlDocGetRootElement(doc), NULL);
}

xmlDoc *DatastoreCopy(const Agent *agent, xmlDoc *doc) {
  xmlDoc *copy = Need(xmlCopyDoc(doc, 1));
  Bind(agent, copy);
  return copy;
}

void DatastoreForget(Agent *agent) {
  xmlFreeDoc(agent->store.doc);
  agent->store.doc = NULL;
}

static void Remember(Agent *agent, const struct stat *file) {
  agent->store.inode = file->st_ino;
  agent->store.size = file->st_size;
  agent->store.changed = file->st_mtim;
}

static int IsSame(const Agent *agent, const struct stat *file) {
  const Datastore *store = &agent->store;
  return store->doc != NULL && store->inode == file->st_ino && store->size == file->st_size &&
         store->changed.tv_sec == file->st_mtim.tv_sec &&
         store->changed.tv_nsec == file->st_mtim.tv_nsec;
}

QmErrNode *DatastoreRead(Agent *agent) {
  struct stat file = {0};
  if (fstatat(agent->shared.folder, kFile, &file, 0) != 0) {
    if (errno != ENOENT) return Fault(QM_ERR_TAG_OPERATION_FAILED, "The datastore cannot be read.");
    /* Nothing was configured yet. */
    DatastoreForget(agent);
    agent->store.doc = DatastoreNew();
    Remember(agent, &(struct stat){0});
    return NULL;
  }
  if (IsSame(agent, &file)) return NULL;
  Text text = {NULL, 0, 0};
  const QmAgentLimits limits = {MAX_DATASTORE, 0};
  xmlDoc *doc = NULL;
  if (SharedRead(&agent->shared, kFile, &text) == 0)
    doc = QM_AGENT_ParseMessage(text.data, text.length, &limits, NULL);
  TextFree(&text);
  if (doc == NULL) return Fault(QM_ERR_TAG_OPERATION_FAILED, "The datastore cannot be read.");
  DatastoreForget(agent);
  agent->store.doc = doc;
  Bind(agent, doc);
  Remember(agent, &file);
  return NULL;
}

QmErrNode *DatastoreWrite(Agent *agent, xmlDoc *doc) {
  Text text = {NULL, 0, 0};
  TextAdd(&text, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
  TextAddNode(&text, xmlDocGetRootElement(doc));
  TextAdd(&text, "\n");
  struct stat file = {0};
  int failed = SharedReplace(&agent->shared, kFile, &text) != 0 ||
               fstatat(agent->shared.folder, kFile, &file, 0) != 0;
  TextFree(&text);
  DatastoreForget(agent);
  if (failed) {
    xmlFreeDoc(doc);
    return Fault(QM_ERR_TAG_OPERATION_FAILED, "The datastore cannot be written.");
  }
  agent->store.doc = doc;
  Remember(agent, &file);
  return NULL;
}
