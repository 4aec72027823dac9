/* SPDX-License-Identifier: BSD-3-Clause */
/* A module that was compiled is another text than the module it was made of, under the same
   name and revision. So files are looked for where the originals lie, and never in the folders
   of compiled ones. */
#include "schemas.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "fault.h"
#include "schema.h"

enum { MAX_FILE = 16 * 1024 * 1024 };

/* Reads a file; 0 when there is none. */
static int ReadFile(const char *path, Text *text) {
  FILE *file = fopen(path, "re");
  if (file == NULL) return 0;
  char block[16384];
  size_t got = 0;
  TextClear(text);
  TextAdd(text, "");
  while (text->length < MAX_FILE && (got = fread(block, 1, sizeof block, file)) > 0)
    TextAddBytes(text, block, got);
  int failed = ferror(file);
  fclose(file);
  return !failed;
}

/* The original file of a loaded module in one format, freed with free(); NULL when there is none.
 */
static char *FindFile(const Agent *agent, const QmsModule *module, const char *format) {
  const char *name = QM_MOD_GetModuleName(module);
  const char *revision = QM_MOD_GetRevision(module);
  for (size_t i = 0; i < agent->folders.count; i++) {
    const char *folder = agent->folders.items[i];
    /* Beside the file of the revision, the one without may have another. */
    char *path = PrintText("%s/%s@%s.%s", folder, name, revision == NULL ? "" : revision, format);
    if (access(path, R_OK) == 0) return path;
    free(path);
    path = PrintText("%s/%s.%s", folder, name, format);
    if (access(path, R_OK) == 0) return path;
    free(path);
  }
  return NULL;
}

typedef struct SchemaScan {
  const Agent *agent;
  Text *text;
} SchemaScan;

static uint32_t AddModule(QmsModule *module, void *arg) {
  static const char *const kFormats[] = {"yang", "yin"};
  const SchemaScan *scan = arg;
  const char *revision = QM_MOD_GetRevision(module);
  for (size_t i = 0; i < sizeof kFormats / sizeof *kFormats; i++) {
    char *path = FindFile(scan->agent, module, kFormats[i]);
    if (path == NULL) continue;
    free(path);
    TextPrint(scan->text,
              "<schema><identifier>%s</identifier><version>%s</version><format>ncm:%s</format>"
              "<namespace>",
              QM_MOD_GetModuleName(module), revision == NULL ? "" : revision, kFormats[i]);
    TextAddEscaped(scan->text, QM_MOD_GetModuleNs(module));
    TextAdd(scan->text, "</namespace><location>NETCONF</location></schema>");
  }
  return 0;
}

void SchemasAddState(const Agent *agent, Text *text) {
  SchemaScan scan = {agent, text};
  TextAdd(text,
          "<netconf-state xmlns=\"" MONITORING_NS "\" xmlns:ncm=\"" MONITORING_NS "\"><schemas>");
  Ignore(QM_CTX_ScanAllModule(agent->ctx, AddModule, &scan));
  TextAdd(text, "</schemas></netconf-state>");
}

/* The text of a parameter without the prefix of an identity; NULL when it is not given. */
static char *Parameter(const xmlNode *operation, const char *name) {
  xmlNode *element = ChildNamed(operation, NULL, name);
  if (element == NULL) return NULL;
  xmlChar *content = Need(xmlNodeGetContent(element));
  const char *colon = strchr(C(content), ':');
  char *copy = CopyText(colon == NULL ? C(content) : colon + 1);
  xmlFree(content);
  return copy;
}

QmErrNode *SchemasGet(Agent *agent, xmlNode *operation, Text *body) {
  char *name = Parameter(operation, "identifier");
  char *version = Parameter(operation, "version");
  char *format = Parameter(operation, "format");
  const QmsModule *module = QM_CTX_GetModuleByModName(agent->ctx, name);
  const char *revision = QM_MOD_GetRevision(module);
  Text file = {NULL, 0, 0};
  int found = module != NULL && (version == NULL || *version == '\0' ||
                                 (revision != NULL && strcmp(version, revision) == 0));
  char *path = found ? FindFile(agent, module, format == NULL ? "yang" : format) : NULL;
  if (found && format == NULL && path == NULL) path = FindFile(agent, module, "yin");
  found = path != NULL && ReadFile(path, &file);
  free(path);
  free(name);
  free(version);
  free(format);
  if (found) {
    TextAdd(body, "<data xmlns=\"" MONITORING_NS "\">");
    TextAddEscaped(body, file.data);
    TextAdd(body, "</data>");
  }
  TextFree(&file);
  return found ? NULL : Fault(QM_ERR_TAG_INVALID_VALUE, "There is no such schema in that format.");
}
