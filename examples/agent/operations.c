/* SPDX-License-Identifier: BSD-3-Clause */
#include "operations.h"

#include <stdlib.h>
#include <string.h>

#include "capabilities.h"
#include "check.h"
#include "datastore.h"
#include "edit.h"
#include "fault.h"
#include "filter.h"
#include "handlers.h"
#include "notify.h"
#include "schema.h"
#include "schemas.h"
#include "session_table.h"

/* The configuration as a tree of its own, without the data of packages that are not there. */
static QmErrNode *CopyRunning(Agent *agent, xmlDoc **copy) {
  SharedLock(&agent->shared);
  QmErrNode *fault = DatastoreRead(agent);
  SharedUnlock(&agent->shared);
  if (fault == NULL) *copy = DatastoreCopy(agent, agent->store.doc);
  return fault;
}

static void DropUnknown(xmlNode *element) {
  uint32_t kind = SchemaKind(element);
  if (kind == QMS_NODE_ANYXML || kind == QMS_NODE_ANYDATA) return;
  xmlNode *next = NULL;
  for (xmlNode *child = FirstElement(element); child != NULL; child = next) {
    next = NextElement(child);
    if (SchemaOf(child) != NULL) {
      DropUnknown(child);
      continue;
    }
    xmlUnlinkNode(child);
    xmlFreeNode(child);
  }
}

static void AddState(Agent *agent, xmlNode *data) {
  HandlersAddState(agent, data);
  Text text = {NULL, 0, 0};
  TextAdd(&text, "<state>");
  CapabilitiesAddLibrary(agent, &text);
  SchemasAddState(agent, &text);
  NotifyAddState(&text);
  TextAdd(&text, "</state>");
  xmlDoc *state = QM_AGENT_ParseMessage(text.data, text.length, NULL, NULL);
  xmlNode *part = state == NULL ? NULL : FirstElement(xmlDocGetRootElement(state));
  for (; part != NULL; part = NextElement(part))
    xmlAddChild(data, Need(xmlDocCopyNode(part, data->doc, 1)));
  xmlFreeDoc(state);
  TextFree(&text);
}

static QmErrNode *Read(Agent *agent, xmlNode *operation, Text *body, int withState) {
  const xmlNode *filter = ChildNamed(operation, NULL, "filter");
  xmlDoc *doc = NULL;
  QmErrNode *fault = FilterCheck(filter);
  if (fault == NULL) fault = CopyRunning(agent, &doc);
  if (fault != NULL) return fault;
  xmlNode *data = xmlDocGetRootElement(doc);
  DropUnknown(data);
  if (withState) {
    AddState(agent, data);
    SchemaBind(agent->ctx, data, NULL);
  }
  if (filter != NULL) (void)FilterApply(agent->ctx, data, filter);
  TextAdd(body, "<data>");
  for (xmlNode *child = FirstElement(data); child != NULL; child = NextElement(child))
    TextAddNode(body, child);
  TextAdd(body, "</data>");
  xmlFreeDoc(doc);
  return NULL;
}

static QmErrNode *Get(Agent *agent, xmlNode *operation, Text *body) {
  return Read(agent, operation, body, 1);
}

static QmErrNode *GetConfig(Agent *agent, xmlNode *operation, Text *body) {
  return Read(agent, operation, body, 0);
}

/* Changes the datastore by what stands below a checked "config", or tries whether that is
   possible. All or nothing: what the client meant is not half done, whatever the error-option. */
static QmErrNode *Change(Agent *agent, xmlNode *config, EditOperation operation, int testOnly) {
  QmErrNode *fault = NULL;
  SharedLock(&agent->shared);
  xmlDoc *doc = NULL;
  if (!testOnly) fault = TableMayWrite(agent);
  if (fault == NULL) fault = DatastoreRead(agent);
  if (fault == NULL) {
    doc = DatastoreCopy(agent, agent->store.doc);
    fault = EditApply(agent->ctx, doc, config, operation);
  }
  if (fault == NULL) fault = CheckConfig(agent->ctx, xmlDocGetRootElement(doc));
  if (fault == NULL && !testOnly) {
    xmlDoc *before = agent->store.doc;
    agent->store.doc = NULL;
    fault = DatastoreWrite(agent, doc);
    doc = NULL;
    if (fault == NULL) HandlersRaiseAlarms(agent, before, agent->store.doc);
    xmlFreeDoc(before);
  }
  SharedUnlock(&agent->shared);
  xmlFreeDoc(doc);
  return fault;
}

/* The text of a parameter; the library has added those that have a default. */
static const char *Option(const xmlNode *operation, const char *name) {
  const xmlNode *option = ChildNamed(operation, NULL, name);
  return option == NULL || option->children == NULL ? "" : C(option->children->content);
}

static QmErrNode *EditConfig(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  int kind = EditOperationOf(Option(operation, "default-operation"));
  int testOnly = strcmp(Option(operation, "test-option"), "test-only") == 0;
  xmlNode *config = ChildNamed(operation, NULL, "config");
  if (config == NULL) return ProtocolFault(QM_ERR_TAG_MISSING_ELEMENT, "There is no config.");
  QmErrNode *fault = CheckInput(agent->ctx, config);
  if (fault != NULL) return fault;
  return Change(agent, config, kind < 0 ? EDIT_MERGE : (EditOperation)kind, testOnly);
}

/* Replaces everything by a configuration, or tries it. */
static QmErrNode *ReplaceAll(Agent *agent, xmlNode *config, int testOnly) {
  QmErrNode *fault = CheckInput(agent->ctx, config);
  if (fault == NULL) fault = EditCheckNoAttributes(config);
  return fault == NULL ? Change(agent, config, EDIT_REPLACE, testOnly) : fault;
}

static QmErrNode *CopyConfig(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  xmlNode *config = ChildNamed(ChildNamed(operation, NULL, "source"), NULL, "config");
  if (config == NULL)
    return ProtocolFault(QM_ERR_TAG_INVALID_VALUE, "Source and target are the same.");
  return ReplaceAll(agent, config, 0);
}

static QmErrNode *Validate(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  xmlNode *config = ChildNamed(ChildNamed(operation, NULL, "source"), NULL, "config");
  if (config != NULL) return ReplaceAll(agent, config, 1);
  xmlDoc *doc = NULL;
  QmErrNode *fault = CopyRunning(agent, &doc);
  if (fault == NULL) fault = CheckConfig(agent->ctx, xmlDocGetRootElement(doc));
  xmlFreeDoc(doc);
  return fault;
}

static QmErrNode *DeleteConfig(Agent *agent, xmlNode *operation, Text *body) {
  (void)agent;
  (void)operation;
  (void)body;
  return ProtocolFault(QM_ERR_TAG_OPERATION_NOT_SUPPORTED,
                       "The running configuration is not deleted, and there is no other.");
}

static QmErrNode *Lock(Agent *agent, xmlNode *operation, Text *body) {
  (void)operation;
  (void)body;
  return TableLock(agent);
}

static QmErrNode *Unlock(Agent *agent, xmlNode *operation, Text *body) {
  (void)operation;
  (void)body;
  return TableUnlock(agent);
}

static QmErrNode *CloseSession(Agent *agent, xmlNode *operation, Text *body) {
  (void)operation;
  (void)body;
  agent->closing = 1;
  return NULL;
}

static QmErrNode *KillSession(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  return TableKill(agent, (uint32_t)strtoul(Option(operation, "session-id"), NULL, 10));
}

QmErrNode *OperationsRun(Agent *agent, xmlNode *operation, Text *body) {
  static const struct {
    const char *ns;
    const char *name;
    QmErrNode *(*run)(Agent *agent, xmlNode *operation, Text *body);
  } kOperations[] = {
      {NETCONF_NS, "get", Get},
      {NETCONF_NS, "get-config", GetConfig},
      {NETCONF_NS, "edit-config", EditConfig},
      {NETCONF_NS, "copy-config", CopyConfig},
      {NETCONF_NS, "delete-config", DeleteConfig},
      {NETCONF_NS, "validate", Validate},
      {NETCONF_NS, "lock", Lock},
      {NETCONF_NS, "unlock", Unlock},
      {NETCONF_NS, "close-session", CloseSession},
      {NETCONF_NS, "kill-session", KillSession},
      {MONITORING_NS, "get-schema", SchemasGet},
      {NOTIFICATION_NS, "create-subscription", NotifySubscribe},
  };
  for (size_t i = 0; i < sizeof kOperations / sizeof *kOperations; i++)
    if (xmlStrEqual(operation->name, X(kOperations[i].name)) &&
        strcmp(NamespaceOf(operation), kOperations[i].ns) == 0)
      return kOperations[i].run(agent, operation, body);
  return HandlersRun(agent, operation, body);
}
