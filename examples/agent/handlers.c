/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "handlers.h"

#include <stdlib.h>
#include <string.h>

#include "datastore.h"
#include "fault.h"
#include "instances.h"
#include "notify.h"
#include "packages.h"
#include "schema.h"

#define SYSTEM_NS "urn:example:router-system"
#define INTERFACES_NS "urn:example:router-interfaces"
#define VLANS_NS "urn:example:router-vlans"
#define PACKAGES_NS "urn:example:router-packages"

/* The text of a child; empty when there is none. Freed with free(). */
static char *ChildText(const xmlNode *parent, const char *name) {
  xmlNode *child = ChildNamed(parent, NULL, name);
  xmlChar *content = child == NULL ? NULL : Need(xmlNodeGetContent(child));
  char *text = CopyText(content == NULL ? "" : C(content));
  xmlFree(content);
  return text;
}

/* The augments of router-vlans have an output for it. */
static QmErrNode *Restart(Agent *agent, xmlNode *operation, Text *body) {
  (void)operation;
  if (QM_CTX_GetModuleByModName(agent->ctx, "router-vlans") != NULL)
    TextAdd(body, "<vlans-down xmlns=\"" VLANS_NS "\">0</vlans-down>");
  return NULL;
}

static QmErrNode *InstallImage(Agent *agent, xmlNode *operation, Text *body) {
  (void)agent;
  (void)operation;
  TextAdd(body, "<version xmlns=\"" SYSTEM_NS "\">2.1</version>");
  return NULL;
}

/* Every probe comes back. */
static QmErrNode *Ping(Agent *agent, xmlNode *operation, Text *body) {
  (void)agent;
  xmlNode *probe = ChildNamed(operation, NULL, "probe");
  char *count = probe == NULL ? CopyText("0") : ChildText(probe, "count");
  TextPrint(body, "<received xmlns=\"" SYSTEM_NS "\">%s</received>", count);
  free(count);
  return NULL;
}

static QmErrNode *InstallPackage(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  char *name = ChildText(operation, "name");
  QmErrNode *fault = PackagesInstall(agent, name);
  free(name);
  return fault;
}

static QmErrNode *RemovePackage(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  char *name = ChildText(operation, "name");
  QmErrNode *fault = PackagesRemove(agent, name);
  free(name);
  return fault;
}

/* The one child that is no key; an element that leads nowhere is an error. */
static QmErrNode *NextOfPath(xmlNode *element, xmlNode **next) {
  *next = NULL;
  for (xmlNode *child = FirstElement(element); child != NULL; child = NextElement(child)) {
    if (QM_NODE_IsKey(SchemaOf(child))) continue;
    if (*next != NULL || QM_NODE_GetRealType(SchemaOf(child)) != NULL)
      return FaultAt(QM_ERR_TAG_BAD_ELEMENT, child, "%s does not lead to the action.", NULL);
    *next = child;
  }
  return NULL;
}

/* Entries on the way to an action must be there: the library has validated the message, not the
   datastore. The action itself is no data and so has no node in a bound tree. */
static QmErrNode *CheckPath(Agent *agent, Instances *index, xmlNode *tree) {
  xmlNode *there = xmlDocGetRootElement(agent->store.doc);
  xmlNode *element = tree;
  QmErrNode *fault = NULL;
  while (fault == NULL && element != NULL && SchemaOf(element) != NULL) {
    const char *missing = NULL;
    char *instance = SchemaInstance(agent->ctx, element, SchemaOf(element), &missing);
    if (instance == NULL)
      return FaultAt(QM_ERR_TAG_MISSING_ELEMENT, element, "The key %s is missing.", missing);
    free(instance);
    there = there == NULL ? NULL : InstancesFind(index, there, element);
    if (there == NULL && SchemaKind(element) == QMS_NODE_LIST)
      return FaultAt(QM_ERR_TAG_DATA_MISSING, element, "The %s does not exist.", NULL);
    fault = NextOfPath(element, &element);
  }
  return fault;
}

static QmErrNode *ResetCounters(Agent *agent, xmlNode *interfaces, Text *body) {
  SchemaBind(agent->ctx, interfaces, SchemaChild(agent->ctx, NULL, interfaces));
  SharedLock(&agent->shared);
  QmErrNode *fault = DatastoreRead(agent);
  SharedUnlock(&agent->shared);
  if (fault != NULL) return fault;
  Instances index;
  InstancesOpen(&index, agent->ctx);
  fault = CheckPath(agent, &index, interfaces);
  InstancesClose(&index);
  if (fault == NULL) TextAdd(body, "<reset-at xmlns=\"" INTERFACES_NS "\">now</reset-at>");
  return fault;
}

QmErrNode *HandlersRun(Agent *agent, xmlNode *operation, Text *body) {
  static const struct {
    const char *ns;
    const char *name;
    QmErrNode *(*run)(Agent *agent, xmlNode *operation, Text *body);
  } kHandlers[] = {
      {SYSTEM_NS, "restart", Restart},
      {SYSTEM_NS, "install-image", InstallImage},
      {SYSTEM_NS, "ping", Ping},
      {PACKAGES_NS, "install-package", InstallPackage},
      {PACKAGES_NS, "remove-package", RemovePackage},
      /* The one action below this container. */
      {INTERFACES_NS, "interfaces", ResetCounters},
  };
  for (size_t i = 0; i < sizeof kHandlers / sizeof *kHandlers; i++)
    if (xmlStrEqual(operation->name, X(kHandlers[i].name)) &&
        strcmp(NamespaceOf(operation), kHandlers[i].ns) == 0)
      return kHandlers[i].run(agent, operation, body);
  return ProtocolFault(QM_ERR_TAG_OPERATION_NOT_SUPPORTED, "Nothing is known to be done.");
}

/* The child of that name, made when it is not there. */
static xmlNode *ChildOrNew(xmlNode *parent, const char *ns, const char *name) {
  xmlNode *child = ChildNamed(parent, ns, name);
  if (child != NULL) return child;
  child = Need(xmlNewChild(parent, NULL, X(name), NULL));
  int same = strcmp(NamespaceOf(parent), ns) == 0;
  xmlSetNs(child, same ? parent->ns : Need(xmlNewNs(child, X(ns), NULL)));
  return child;
}

static void AddLeaf(xmlNode *parent, const char *name, const char *value) {
  xmlNode *leaf = ChildOrNew(parent, NamespaceOf(parent), name);
  xmlNodeAddContent(leaf, X(value));
}

void HandlersAddState(const Agent *agent, xmlNode *data) {
  /* A package may have taken a node away by a deviation. */
  double load = 0;
  if (QM_CTX_FindDataNode(agent->ctx, "/router-system:system/cpu/load") != NULL &&
      getloadavg(&load, 1) == 1) {
    char *percent = PrintText("%d", load < 1 ? (int)(100 * load) : 100);
    xmlNode *system = ChildOrNew(data, SYSTEM_NS, "system");
    AddLeaf(ChildOrNew(system, SYSTEM_NS, "cpu"), "load", percent);
    free(percent);
  }
  xmlNode *interfaces = ChildNamed(data, INTERFACES_NS, "interfaces");
  xmlNode *entry = interfaces == NULL ? NULL : FirstElement(interfaces);
  for (; entry != NULL; entry = NextElement(entry)) {
    xmlNode *counters = ChildOrNew(entry, INTERFACES_NS, "counters");
    AddLeaf(counters, "in-octets", "0");
    AddLeaf(counters, "out-octets", "0");
  }
  if (agent->packages.count == 0) return;
  xmlNode *packages = ChildOrNew(data, PACKAGES_NS, "packages");
  for (size_t i = 0; i < agent->packages.count; i++) {
    xmlNode *leaf = Need(xmlNewTextChild(packages, packages->ns, X("package"), NULL));
    xmlNodeAddContent(leaf, X(agent->packages.items[i]));
  }
}

static int IsDown(const xmlNode *entry) {
  char *enabled = ChildText(entry, "enabled");
  int down = strcmp(enabled, "false") == 0;
  free(enabled);
  return down;
}

static void RaiseAlarm(Agent *agent, const xmlNode *entry, int down) {
  Text text = {NULL, 0, 0};
  TextPrint(&text, "<%s xmlns=\"urn:example:router-alarms\"><kind>link-down</kind>",
            down ? "alarm" : "alarm-cleared");
  if (down) {
    char *name = ChildText(entry, "name");
    TextAdd(&text, "<severity>major</severity><interface>");
    TextAddAttribute(&text, name); /* Its line ends, too: an event is a line. */
    TextAdd(&text, "</interface>");
    free(name);
  }
  TextPrint(&text, "</%s>", down ? "alarm" : "alarm-cleared");
  NotifyAll(agent, text.data);
  TextFree(&text);
}

void HandlersRaiseAlarms(Agent *agent, xmlDoc *before, xmlDoc *after) {
  xmlNode *old = ChildNamed(xmlDocGetRootElement(before), INTERFACES_NS, "interfaces");
  xmlNode *new = ChildNamed(xmlDocGetRootElement(after), INTERFACES_NS, "interfaces");
  Instances index;
  InstancesOpen(&index, agent->ctx);
  xmlNode *entry = new == NULL ? NULL : FirstElement(new);
  for (; entry != NULL; entry = NextElement(entry)) {
    xmlNode *was = old == NULL ? NULL : InstancesFind(&index, old, entry);
    int down = IsDown(entry);
    if (down != (was != NULL && IsDown(was))) RaiseAlarm(agent, entry, down);
  }
  /* An interface that is gone is not down any more. */
  for (entry = old == NULL ? NULL : FirstElement(old); entry != NULL; entry = NextElement(entry))
    if (IsDown(entry) && (new == NULL || InstancesFind(&index, new, entry) == NULL))
      RaiseAlarm(agent, entry, 0);
  InstancesClose(&index);
}
