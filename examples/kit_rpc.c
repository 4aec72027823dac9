/* SPDX-License-Identifier: BSD-3-Clause */
/* Answers one NETCONF request from standard input as an agent would, for example
     kit_rpc "$PWD/models" router-system < request.xml
   What was loaded is told on standard error, the <rpc-reply> on standard output.
   Exit status: 0 the request was valid, 1 it was not, 2 wrong usage, 3 something failed. */
#include <libxml/tree.h>
#include <stdio.h>
#include <stdlib.h>

#include <qmodel/qmodel.h>

#define NETCONF "urn:ietf:params:xml:ns:netconf:base:1.0"
enum { kBufferSize = 1 << 20 };

static uint32_t Print(const char *text, size_t length, void *file) {
  return fwrite(text, 1, length, file) == length ? 0 : 1;
}

/* An agent announces a capability for each module; here its name is enough. */
static void TellEvent(QmCtx *ctx, const QmAgentEvent *event, void *file) {
  (void)ctx;
  if (event->kind == QM_AGENT_EVENT_MODULE_LOADED) {
    fprintf(file, "loaded %s, %s\n", event->moduleName, QM_MOD_GetModuleNs(event->module));
  }
}

/* The attributes of the request come back in the reply (RFC 6241 section 4.2). */
static void PrintReplyStart(xmlDoc *doc) {
  xmlNode *rpc = doc == NULL ? NULL : xmlDocGetRootElement(doc);
  xmlDoc *replyDoc = xmlNewDoc(BAD_CAST "1.0");
  xmlNode *reply = xmlNewDocNode(replyDoc, NULL, BAD_CAST "rpc-reply", NULL);
  xmlBuffer *buffer = xmlBufferCreate();
  xmlDocSetRootElement(replyDoc, reply);
  xmlSetNs(reply, xmlNewNs(reply, BAD_CAST NETCONF, NULL));
  if (rpc != NULL && xmlStrcmp(rpc->name, BAD_CAST "rpc") == 0) {
    reply->properties = xmlCopyPropList(reply, rpc->properties);
  }
  xmlAddChild(reply, xmlNewText(BAD_CAST ""));
  xmlNodeDump(buffer, replyDoc, reply, 0, 0);
  /* Up to the end of the start tag; the end tag follows the answer. */
  printf("%.*s\n", (int)(xmlBufferLength(buffer) - (int)sizeof "</rpc-reply>" + 1),
         (const char *)xmlBufferContent(buffer));
  xmlBufferFree(buffer);
  xmlFreeDoc(replyDoc);
}

static int Refuse(QmCtx *ctx, xmlDoc *doc, QmErrNode *error) {
  PrintReplyStart(doc);
  if (error == NULL || QM_AGENT_WriteRecord(error, ctx, QM_AGENT_RECORD_INDENTED, Print, stdout)) {
    fputs("kit_rpc: the error could not be told\n", stderr);
  }
  puts("</rpc-reply>");
  QM_FreeErrNode(error);
  return 1;
}

/* Could not tell: not the sender's fault, and never "valid". */
static int Fail(QmCtx *ctx, xmlDoc *doc, uint32_t verdict) {
  const uint32_t tag =
      verdict == QM_AGENT_NO_MEMORY ? QM_ERR_TAG_RESOURCE_DENIED : QM_ERR_TAG_OPERATION_FAILED;
  Refuse(ctx, doc, QM_AGENT_NewRecord(QM_ERR_TYPE_RPC, tag));
  return 3;
}

static int Answer(QmCtx *ctx, const char *text, size_t length) {
  uint32_t reason = QM_AGENT_REASON_NONE;
  xmlDoc *doc = QM_AGENT_ParseMessage(text, length, NULL, &reason);
  if (doc == NULL) return Refuse(ctx, NULL, QM_AGENT_NewReasonRecord(reason));
  QmErrNode *error = NULL;
  xmlNode *request = xmlDocGetRootElement(doc);
  const uint32_t verdict = QM_AGENT_ValidateRequest(ctx, request, NULL, NULL, &error);
  int status = 0;
  if (verdict == QM_AGENT_INVALID) {
    status = Refuse(ctx, doc, error);
  } else if (verdict != QM_AGENT_VALID) {
    status = Fail(ctx, doc, verdict);
  } else {
    /* Here an agent does what is asked; the tree has the defaults by now. */
    fprintf(stderr, "do %s\n", (const char *)QM_AGENT_GetOperation(request)->name);
    PrintReplyStart(doc);
    puts("  <ok/>\n</rpc-reply>");
  }
  xmlFreeDoc(doc);
  return status;
}

static int Load(QmCtx *ctx, const char *dir, const char *module) {
  uint32_t status = QM_CTX_SetSearchDir(ctx, dir);
  if (status == 0) status = QM_CTX_LoadModule(ctx, module);
  if (status == 0) return 0;
  fprintf(stderr, "kit_rpc: %s: %s\n", module, QM_AGENT_GetStatusText(status));
  return 3;
}

int main(int argc, char **argv) {
  if (argc != 3) {
    fputs("usage: kit_rpc DIR MODULE < REQUEST\n", stderr);
    return 2;
  }
  char *text = malloc(kBufferSize);
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  int status = 3;
  if (text != NULL && ctx != NULL) {
    QM_AGENT_SetEvents(ctx, TellEvent, stderr);
    status = Load(ctx, argv[1], argv[2]);
    if (status == 0) status = Answer(ctx, text, fread(text, 1, kBufferSize, stdin));
  }
  QM_CTX_Delete(ctx);
  free(text);
  return status;
}
