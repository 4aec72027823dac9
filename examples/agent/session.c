/* SPDX-License-Identifier: BSD-3-Clause */
#define _GNU_SOURCE
#include "session.h"

#include <inttypes.h>
#include <poll.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include "capabilities.h"
#include "fault.h"
#include "notify.h"
#include "operations.h"
#include "packages.h"
#include "schema.h"
#include "session_table.h"

enum { LOOK_MILLISECONDS = 1000 };

static int SendHello(Agent *agent) {
  Text hello = {NULL, 0, 0};
  agent->capabilities = Capabilities(agent);
  TextAdd(&hello, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<hello xmlns=\"" NETCONF_NS
                  "\"><capabilities>");
  for (size_t i = 0; i < agent->capabilities.count; i++) {
    TextAdd(&hello, "<capability>");
    TextAddEscaped(&hello, agent->capabilities.items[i]);
    TextAdd(&hello, "</capability>");
  }
  TextPrint(&hello, "</capabilities><session-id>%" PRIu32 "</session-id></hello>", agent->id);
  int result = TransportSend(&agent->transport, &hello);
  TextFree(&hello);
  return result;
}

static int HasCapability(const xmlNode *hello, const char *capability) {
  const xmlNode *list = ChildNamed(hello, NETCONF_NS, "capabilities");
  const xmlNode *item = list == NULL ? NULL : FirstElement(list);
  for (; item != NULL; item = NextElement(item)) {
    if (!xmlStrEqual(item->name, X("capability"))) continue;
    const char *text = item->children == NULL ? "" : C(item->children->content);
    size_t blanks = strspn(text, kBlanks);
    size_t length = strcspn(text + blanks, kBlanks);
    if (length == strlen(capability) && strncmp(text + blanks, capability, length) == 0) return 1;
  }
  return 0;
}

/* Reads the client's hello and chooses the framing; -1 when the session cannot go on. */
static int TakeHello(Agent *agent) {
  Text *message = &agent->transport.message;
  xmlDoc *doc = QM_AGENT_ParseMessage(message->data, message->length, NULL, NULL);
  const xmlNode *hello = xmlDocGetRootElement(doc);
  int fine = hello != NULL && xmlStrEqual(hello->name, X("hello")) &&
             strcmp(NamespaceOf(hello), NETCONF_NS) == 0 &&
             ChildNamed(hello, NETCONF_NS, "session-id") == NULL;
  int chunked = fine && HasCapability(hello, BASE_1_1);
  fine = fine && (chunked || HasCapability(hello, BASE_1_0));
  xmlFreeDoc(doc);
  agent->transport.chunked = chunked;
  return fine ? 0 : -1;
}

/* The answer has all attributes of the request, RFC 6241 section 4.2. */
static void AddAttributes(Text *reply, const xmlNode *rpc) {
  for (const xmlNs *ns = rpc->nsDef; ns != NULL; ns = ns->next) {
    if (ns->prefix == NULL) continue;
    TextPrint(reply, " xmlns:%s=\"", C(ns->prefix));
    TextAddAttribute(reply, C(ns->href));
    TextAdd(reply, "\"");
  }
  for (const xmlAttr *attribute = rpc->properties; attribute; attribute = attribute->next) {
    int prefixed = attribute->ns != NULL && attribute->ns->prefix != NULL;
    TextPrint(reply, " %s%s%s=\"", prefixed ? C(attribute->ns->prefix) : "", prefixed ? ":" : "",
              C(attribute->name));
    if (attribute->children != NULL) TextAddAttribute(reply, C(attribute->children->content));
    TextAdd(reply, "\"");
  }
}

static uint32_t AddPiece(const char *text, size_t length, void *arg) {
  TextAddBytes(arg, text, length);
  return 0;
}

/* Sends the answer: an error, the content, or "ok". The request's element may be NULL. */
static int Reply(Agent *agent, const xmlNode *rpc, const QmErrNode *fault, const Text *body) {
  Text reply = {NULL, 0, 0};
  TextAdd(&reply, "<rpc-reply xmlns=\"" NETCONF_NS "\"");
  if (rpc != NULL) AddAttributes(&reply, rpc);
  TextAdd(&reply, ">");
  if (fault != NULL) {
    Ignore(QM_AGENT_WriteRecord(fault, agent->ctx, 0, AddPiece, &reply));
  } else if (body->length == 0) {
    TextAdd(&reply, "<ok/>");
  } else {
    TextAddBytes(&reply, body->data, body->length);
  }
  TextAdd(&reply, "</rpc-reply>");
  int result = TransportSend(&agent->transport, &reply);
  TextFree(&reply);
  return result;
}

/* Makes of the beginning of a message an empty element with the attributes of its first one,
   so that the answer to what cannot be read as a whole says what it answers. */
static xmlDoc *ParseFirstTag(const Text *message) {
  const char *at = message->data;
  while (at != NULL && (at = strchr(at, '<')) != NULL && (at[1] == '?' || at[1] == '!'))
    at = strchr(at, '>');
  if (at == NULL) return NULL;
  char quote = '\0';
  const char *end = at;
  for (; *end != '\0' && (quote != '\0' || *end != '>'); end++) {
    if (quote == *end) {
      quote = '\0';
    } else if (quote == '\0' && (*end == '"' || *end == '\'')) {
      quote = *end;
    }
  }
  if (*end == '\0' || end == at) return NULL;
  Text tag = {NULL, 0, 0};
  TextAddBytes(&tag, at, (size_t)(end - at) - (end[-1] == '/' ? 1 : 0));
  TextAdd(&tag, "/>");
  xmlDoc *doc = QM_AGENT_ParseMessage(tag.data, tag.length, NULL, NULL);
  TextFree(&tag);
  return doc;
}

static int ReplyUnread(Agent *agent, uint32_t reason) {
  xmlDoc *doc = ParseFirstTag(&agent->transport.message);
  QmErrNode *fault = Need(QM_AGENT_NewReasonRecord(reason));
  const Text none = {NULL, 0, 0};
  int result = Reply(agent, xmlDocGetRootElement(doc), fault, &none);
  QM_FreeErrNode(fault);
  xmlFreeDoc(doc);
  return result;
}

static int IsRpc(const xmlNode *element) {
  return xmlStrEqual(element->name, X("rpc")) && strcmp(NamespaceOf(element), NETCONF_NS) == 0;
}

/* Answers one message; -1 when the client is gone. */
static int Answer(Agent *agent) {
  const Text *message = &agent->transport.message;
  uint32_t reason = 0;
  xmlDoc *doc = QM_AGENT_ParseMessage(message->data, message->length, NULL, &reason);
  if (doc == NULL) return ReplyUnread(agent, reason);
  xmlNode *rpc = xmlDocGetRootElement(doc);
  QmErrNode *fault = NULL;
  Text body = {NULL, 0, 0};
  if (!IsRpc(rpc)) {
    fault = Need(QM_AGENT_NewReasonRecord(QM_AGENT_REASON_NOT_XML));
    With(fault, QM_AGENT_FIELD_MESSAGE, "The message is no rpc.");
  } else {
    uint32_t verdict = QM_AGENT_ValidateRequest(agent->ctx, rpc, NULL, NULL, &fault);
    if (verdict == QM_AGENT_VALID) {
      fault = OperationsRun(agent, QM_AGENT_GetOperation(rpc), &body);
    } else if (verdict != QM_AGENT_INVALID) {
      fault = Need(QM_AGENT_NewReasonRecord(QM_AGENT_REASON_NO_MEMORY));
    }
  }
  int result = Reply(agent, rpc, fault, &body);
  TextFree(&body);
  QM_FreeErrNode(fault);
  xmlFreeDoc(doc);
  return result;
}

/* Follows the list of packages and tells the client; -1 when it is gone. */
static int FollowPackages(Agent *agent) {
  if (!PackagesRefresh(agent)) return 0;
  List now = Capabilities(agent);
  int result = NotifyCapabilities(agent, &agent->capabilities, &now);
  ListFree(&agent->capabilities);
  agent->capabilities = now;
  return result;
}

/* Milliseconds of a clock that nobody sets. */
static int64_t Now(void) {
  struct timespec now;
  (void)clock_gettime(CLOCK_MONOTONIC, &now);
  return (int64_t)now.tv_sec * 1000 + now.tv_nsec / 1000000;
}

/* Waits for the client or for a change in the shared folder; -1 when the client is gone. A limit
   of -1 milliseconds is none. */
static int Wait(Agent *agent, int64_t limit) {
  struct pollfd sources[] = {{agent->transport.in, POLLIN, 0}, {agent->watch, POLLIN, 0}};
  /* The system watches folders for a limited number of sessions; the others look now and then. */
  if (agent->watch < 0 && (limit < 0 || limit > LOOK_MILLISECONDS)) limit = LOOK_MILLISECONDS;
  if (poll(sources, agent->watch < 0 ? 1 : 2, (int)limit) <= 0) return 0;
  char events[4096];
  if (sources[1].revents != 0 && read(agent->watch, events, sizeof events) < 0) return 0;
  if (sources[0].revents == 0) return 0;
  return TransportRead(&agent->transport) ? 0 : -1;
}

int SessionServe(Agent *agent) {
  int greeted = 0;
  int64_t helloUntil = Now() + INT64_C(1000) * agent->helloSeconds;
  int result = SendHello(agent);
  while (result == 0 && !agent->closing) {
    Arrival arrival = TransportTake(&agent->transport);
    if (greeted) result = FollowPackages(agent);
    if (greeted && result == 0) result = NotifyPump(agent);
    if (result != 0 || arrival == ARRIVAL_END) return 1;
    if (arrival == ARRIVAL_NONE) {
      int64_t left = helloUntil - Now();
      if (!greeted && left <= 0) return 1;
      if (Wait(agent, greeted ? -1 : left) != 0) return 0;
      continue;
    }
    if (!greeted) {
      result = arrival == ARRIVAL_MESSAGE ? TakeHello(agent) : -1;
      greeted = 1;
    } else {
      result =
          arrival == ARRIVAL_MESSAGE ? Answer(agent) : ReplyUnread(agent, QM_AGENT_REASON_TOO_BIG);
    }
    TextClear(&agent->transport.message);
  }
  return result == 0 ? 0 : 1;
}
