/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "datastore.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
  if (agent->store.file >= 0) close(agent->store.file);
  agent->store.file = -1;
}

static void Remember(Agent *agent, int file, const struct stat *is) {
  agent->store.file = file;
  agent->store.inode = is->st_ino;
  agent->store.size = is->st_size;
  agent->store.changed = is->st_mtim;
}

static int IsSame(const Agent *agent, const struct stat *file) {
  const Datastore *store = &agent->store;
  return store->doc != NULL && store->inode == file->st_ino && store->size == file->st_size &&
         store->changed.tv_sec == file->st_mtim.tv_sec &&
         store->changed.tv_nsec == file->st_mtim.tv_nsec;
}

static int Open(const Agent *agent, struct stat *is) {
  int file = openat(agent->shared.folder, kFile, O_RDONLY | O_CLOEXEC);
  if (file < 0 || fstat(file, is) == 0) return file;
  close(file);
  return -1;
}

static xmlDoc *Parse(int file) {
  Text text = {NULL, 0, 0};
  const QmAgentLimits limits = {MAX_DATASTORE, 0};
  xmlDoc *doc = NULL;
  if (SharedReadFrom(file, 0, &text) == 0)
    doc = QM_AGENT_ParseMessage(text.data, text.length, &limits, NULL);
  TextFree(&text);
  return doc;
}

QmErrNode *DatastoreRead(Agent *agent) {
  struct stat is = {0};
  int file = Open(agent, &is);
  /* Without a file nothing was configured yet. */
  int none = file < 0 && errno == ENOENT;
  if (file >= 0 && IsSame(agent, &is)) {
    close(file);
    return NULL;
  }
  xmlDoc *doc = none ? DatastoreNew() : file < 0 ? NULL : Parse(file);
  if (doc == NULL) {
    if (file >= 0) close(file);
    return Fault(QM_ERR_TAG_OPERATION_FAILED, "The datastore cannot be read.");
  }
  DatastoreForget(agent);
  agent->store.doc = doc;
  Bind(agent, doc);
  Remember(agent, file, &is);
  return NULL;
}

QmErrNode *DatastoreWrite(Agent *agent, xmlDoc *doc) {
  Text text = {NULL, 0, 0};
  TextAdd(&text, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
  TextAddNode(&text, xmlDocGetRootElement(doc));
  TextAdd(&text, "\n");
  struct stat is = {0};
  int file = SharedReplace(&agent->shared, kFile, &text) == 0 ? Open(agent, &is) : -1;
  TextFree(&text);
  DatastoreForget(agent);
  if (file < 0) {
    xmlFreeDoc(doc);
    return Fault(QM_ERR_TAG_OPERATION_FAILED, "The datastore cannot be written.");
  }
  agent->store.doc = doc;
  Remember(agent, file, &is);
  return NULL;
}
