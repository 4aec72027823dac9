/* SPDX-License-Identifier: BSD-3-Clause */
/* Validates a request that the program has as a libxml2 tree, and prints which defaults the
   library added to it.
     complete_tree DIR MODULE FILE
   Exit status: 0 valid, 1 not valid, 2 wrong usage, 3 something cannot be read, 4 no memory. */
#include <stdio.h>
#include <stdlib.h>

#include <libxml/parser.h>
#include <qmodel/agent.h>
#include <qmodel/qmodel.h>

static char *ReadFile(const char *path, size_t *length) {
  FILE *file = fopen(path, "rb");
  char *text = malloc(65536);
  *length = 0;
  if (file != NULL && text != NULL) *length = fread(text, 1, 65536, file);
  const int whole = file != NULL && text != NULL && feof(file);
  if (file != NULL) fclose(file);
  if (whole) return text;
  free(text);
  return NULL;
}

/* The topmost element of each subtree that was added. It is part of the tree, and stays. */
static void PrintAdded(xmlNode *node, void *arg) {
  xmlChar *content = xmlNodeGetContent(node);
  const int inside = xmlFirstElementChild(node) != NULL;
  fprintf(arg, "added %s%s%s\n", (const char *)node->name, inside ? "" : " = ",
          inside || content == NULL ? "" : (const char *)content);
  xmlFree(content);
}

static uint32_t Print(const char *text, size_t length, void *file) {
  return fwrite(text, 1, length, file) == length ? 0 : 1;
}

static int Validate(QmCtx *ctx, xmlDoc *doc) {
  QmErrNode *error = NULL;
  const uint32_t verdict =
      QM_AGENT_ValidateRequest(ctx, xmlDocGetRootElement(doc), PrintAdded, stdout, &error);
  if (verdict == QM_AGENT_INVALID) {
    const uint32_t ret = QM_AGENT_WriteRecord(error, ctx, QM_AGENT_RECORD_INDENTED, Print, stdout);
    QM_FreeErrNode(error);
    return ret == 0 ? 1 : 4;
  }
  /* Never taken for valid: the library could not tell. */
  if (verdict != QM_AGENT_VALID) return 4;
  xmlDocFormatDump(stdout, doc, 1);
  return 0;
}

static int ValidateFile(QmCtx *ctx, const char *path) {
  size_t length = 0;
  char *text = ReadFile(path, &length);
  if (text == NULL) {
    fprintf(stderr, "%s cannot be read, or is larger than 64 KiB\n", path);
    return 3;
  }
  uint32_t reason = 0;
  xmlDoc *doc = QM_AGENT_ParseMessage(text, length, NULL, &reason);
  free(text);
  if (doc == NULL) {
    fprintf(stderr, "%s: %s\n", path, QM_AGENT_GetReasonText(reason));
    return reason == QM_AGENT_REASON_NO_MEMORY ? 4 : 1;
  }
  const int status = Validate(ctx, doc);
  xmlFreeDoc(doc);
  return status;
}

int main(int argc, char **argv) {
  if (argc != 4) {
    fputs("usage: complete_tree DIR MODULE FILE\n", stderr);
    return 2;
  }
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  if (ctx == NULL || QM_CTX_SetSearchDir(ctx, argv[1]) != 0 ||
      QM_CTX_LoadModule(ctx, argv[2]) != 0) {
    fprintf(stderr, "%s cannot be loaded from %s\n", argv[2], argv[1]);
    QM_CTX_Delete(ctx);
    return 3;
  }
  const int status = ValidateFile(ctx, argv[3]);
  QM_CTX_Delete(ctx);
  xmlCleanupParser();
  return status;
}
