/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "notify.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fault.h"
#include "filter.h"
#include "schema.h"

static const char kFile[] = "events";
/* A file of events that is larger makes place for the next one. */
enum { MAX_EVENTS = 1024 * 1024 };
#define CHANGE_NS "urn:ietf:params:xml:ns:yang:ietf-netconf-notifications"

static void Now(char *buffer, size_t size) {
  time_t now = time(NULL);
  struct tm parts;
  (void)gmtime_r(&now, &parts);
  (void)strftime(buffer, size, "%Y-%m-%dT%H:%M:%SZ", &parts);
}

/* What the library finds wrong is the agent's own mistake, or the module is not there any
   more; the client is not told. */
static void PrintRefused(const Agent *agent, const QmErrNode *error) {
  char record[2048];
  (void)QM_AGENT_PrintRecord(error, agent->ctx, 0, record, sizeof record);
  fprintf(stderr, "netconf_agent: notification not sent: %s\n", record);
}

static int IsSelected(Agent *agent, const xmlNode *event) {
  if (agent->subscription.filter == NULL) return 1;
  xmlDoc *doc = Need(xmlNewDoc(X("1.0")));
  xmlNode *root = Need(xmlNewDocNode(doc, NULL, X("events"), NULL));
  xmlDocSetRootElement(doc, root);
  xmlNode *shown = NULL;
  for (xmlNode *child = FirstElement(event); child != NULL; child = NextElement(child))
    if (!xmlStrEqual(child->name, X("eventTime"))) shown = child;
  if (shown != NULL) xmlAddChild(root, Need(xmlDocCopyNode(shown, doc, 1)));
  int selected = FilterApply(agent->ctx, root, xmlDocGetRootElement(agent->subscription.filter));
  xmlFreeDoc(doc);
  return selected;
}

/* Validates a notification and sends what is left of it. */
static int Send(Agent *agent, const char *time, const char *text) {
  char *message = PrintText("<notification xmlns=\"" NOTIFICATION_NS
                            "\"><eventTime>%s</eventTime>%s</notification>",
                            time, text);
  xmlDoc *doc = QM_AGENT_ParseMessage(message, strlen(message), NULL, NULL);
  free(message);
  if (doc == NULL) return 0;
  xmlNode *root = xmlDocGetRootElement(doc);
  QmErrNode *error = NULL;
  uint32_t verdict = QM_AGENT_ValidateNotification(agent->ctx, root, &error);
  int result = 0;
  if (verdict != QM_AGENT_VALID) {
    PrintRefused(agent, error);
  } else if (IsSelected(agent, root)) {
    Text out = {NULL, 0, 0};
    TextAddNode(&out, root);
    result = TransportSend(&agent->transport, &out);
    TextFree(&out);
  }
  QM_FreeErrNode(error);
  xmlFreeDoc(doc);
  return result;
}

static int OpenEvents(const Agent *agent, int flags) {
  return openat(agent->shared.folder, kFile, flags | O_CLOEXEC, 0600);
}

/* A line begins anew, so that one that was not written to its end spoils no other. */
void NotifyAll(Agent *agent, const char *text) {
  char time[32];
  Now(time, sizeof time);
  int file = OpenEvents(agent, O_WRONLY | O_APPEND | O_CREAT);
  struct stat is;
  if (file >= 0 && fstat(file, &is) == 0 && is.st_size > MAX_EVENTS) {
    /* Sessions have the file open and find in it what they have not sent yet. */
    close(file);
    (void)unlinkat(agent->shared.folder, kFile, 0);
    file = OpenEvents(agent, O_WRONLY | O_APPEND | O_CREAT);
  }
  if (file < 0) return;
  char *line = PrintText("\n%s %s\n", time, text);
  if (write(file, line, strlen(line)) < 0) perror("netconf_agent: events");
  free(line);
  close(file);
}

/* Adds what is new in the file that the session has open, and then in the one that has replaced
   it. A session that is so late that two have, has missed what only the first of them had. */
static void ReadNews(Agent *agent, Text *text) {
  Subscription *subscription = &agent->subscription;
  struct stat mine;
  struct stat now;
  SharedLock(&agent->shared);
  (void)SharedReadFrom(subscription->file, subscription->offset, text);
  int file = OpenEvents(agent, O_RDONLY);
  if (file >= 0 && fstat(file, &now) == 0 && fstat(subscription->file, &mine) == 0 &&
      now.st_ino != mine.st_ino) {
    (void)SharedReadFrom(file, 0, text);
    int old = subscription->file;
    subscription->file = file;
    file = old;
  }
  if (file >= 0) close(file);
  subscription->offset = lseek(subscription->file, 0, SEEK_END);
  SharedUnlock(&agent->shared);
}

static int HasNews(const Agent *agent) {
  const Subscription *subscription = &agent->subscription;
  struct stat mine;
  struct stat now;
  if (!subscription->active || fstat(subscription->file, &mine) != 0) return 0;
  return mine.st_size > subscription->offset ||
         (fstatat(agent->shared.folder, kFile, &now, 0) == 0 && now.st_ino != mine.st_ino);
}

int NotifyPump(Agent *agent) {
  if (!HasNews(agent)) return 0;
  Text text = {NULL, 0, 0};
  ReadNews(agent, &text);
  int result = 0;
  char *rest = NULL;
  char *line = strtok_r(text.data, "\n", &rest);
  for (; line != NULL && result == 0; line = strtok_r(NULL, "\n", &rest)) {
    char *blank = strchr(line, ' ');
    if (blank == NULL) continue;
    *blank = '\0';
    result = Send(agent, line, blank + 1);
  }
  TextFree(&text);
  return result;
}

/* The part of a capability that stays when its module gets another revision or features. */
static size_t StemLength(const char *capability) {
  return strcspn(capability, "?");
}

static int HasStem(const List *list, const char *capability) {
  size_t length = StemLength(capability);
  for (size_t i = 0; i < list->count; i++)
    if (StemLength(list->items[i]) == length && strncmp(list->items[i], capability, length) == 0)
      return 1;
  return 0;
}

/* Adds those of a list that the other has not; with or without another form there. */
static void AddChanges(Text *text, const List *of, const List *other, int modified,
                       const char *name) {
  for (size_t i = 0; i < of->count; i++) {
    if (ListHas(other, of->items[i]) || HasStem(other, of->items[i]) != modified) continue;
    TextPrint(text, "<%s>", name);
    TextAddEscaped(text, of->items[i]);
    TextPrint(text, "</%s>", name);
  }
}

int NotifyCapabilities(Agent *agent, const List *before, const List *after) {
  if (!agent->subscription.active) return 0;
  char time[32];
  Now(time, sizeof time);
  Text text = {NULL, 0, 0};
  TextAdd(&text,
          "<netconf-capability-change xmlns=\"" CHANGE_NS "\"><changed-by><server/></changed-by>");
  AddChanges(&text, after, before, 0, "added-capability");
  AddChanges(&text, before, after, 0, "deleted-capability");
  AddChanges(&text, after, before, 1, "modified-capability");
  TextAdd(&text, "</netconf-capability-change>");
  int result = Send(agent, time, text.data);
  TextFree(&text);
  return result;
}

void NotifyAddState(Text *text) {
  TextAdd(text,
          "<netconf xmlns=\"urn:ietf:params:xml:ns:netmod:notification\"><streams><stream>"
          "<name>NETCONF</name><description>All events of the router.</description>"
          "<replaySupport>false</replaySupport></stream></streams></netconf>");
}

static QmErrNode *CheckSubscription(const Agent *agent, const xmlNode *operation) {
  if (ChildNamed(operation, NULL, "startTime") != NULL ||
      ChildNamed(operation, NULL, "stopTime") != NULL)
    return ProtocolFault(QM_ERR_TAG_OPERATION_NOT_SUPPORTED, "There is no replay.");
  if (agent->subscription.active)
    return ProtocolFault(QM_ERR_TAG_OPERATION_FAILED, "The session has a subscription.");
  xmlNode *stream = ChildNamed(operation, NULL, "stream");
  if (stream != NULL &&
      (stream->children == NULL || !xmlStrEqual(stream->children->content, X("NETCONF")))) {
    QmErrNode *fault = ProtocolFault(QM_ERR_TAG_BAD_ELEMENT, "There is the stream NETCONF only.");
    return With(fault, QM_AGENT_FIELD_BAD_ELEMENT, "stream");
  }
  return FilterCheck(ChildNamed(operation, NULL, "filter"));
}

QmErrNode *NotifySubscribe(Agent *agent, xmlNode *operation, Text *body) {
  (void)body;
  QmErrNode *fault = CheckSubscription(agent, operation);
  if (fault != NULL) return fault;
  agent->subscription.file = OpenEvents(agent, O_RDONLY | O_CREAT);
  if (agent->subscription.file < 0)
    return Fault(QM_ERR_TAG_OPERATION_FAILED, "The events cannot be read.");
  xmlNode *filter = ChildNamed(operation, NULL, "filter");
  if (filter != NULL) {
    agent->subscription.filter = Need(xmlNewDoc(X("1.0")));
    xmlDocSetRootElement(agent->subscription.filter,
                         Need(xmlDocCopyNode(filter, agent->subscription.filter, 1)));
  }
  agent->subscription.offset = lseek(agent->subscription.file, 0, SEEK_END);
  agent->subscription.active = 1;
  return NULL;
}
