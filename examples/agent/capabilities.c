/* SPDX-License-Identifier: BSD-3-Clause */
#include "capabilities.h"

#include <inttypes.h>

/* A list of names in a text, with what stands before the first one and between them. */
typedef struct Names {
  Text *text;
  const char *first;
  const char *between;
  const char *after;
  int count;
} Names;

static uint32_t AddName(const char *name, void *arg) {
  Names *names = arg;
  TextAdd(names->text, names->count++ == 0 ? names->first : names->between);
  TextAdd(names->text, name);
  TextAdd(names->text, names->after);
  return 0;
}

static uint32_t AddFeature(const QmsFeature *feature, void *arg) {
  return QM_FEATURE_IsEnabled(feature) ? AddName(QM_FEATURE_GetName(feature), arg) : 0;
}

/* The capability of a module, RFC 6020 section 5.6.4, which RFC 7950 keeps for version 1. */
static uint32_t AddModule(QmsModule *module, void *arg) {
  Text text = {NULL, 0, 0};
  TextPrint(&text, "%s?module=%s", QM_MOD_GetModuleNs(module), QM_MOD_GetModuleName(module));
  if (QM_MOD_GetRevision(module) != NULL)
    TextPrint(&text, "&revision=%s", QM_MOD_GetRevision(module));
  Names features = {&text, "&features=", ",", "", 0};
  Ignore(QM_MOD_ScanAllFeature(module, AddFeature, &features));
  Names deviations = {&text, "&deviations=", ",", "", 0};
  Ignore(QM_MOD_ScanDeviatingModule(module, AddName, &deviations));
  ListAdd(arg, text.data);
  TextFree(&text);
  return 0;
}

static uint32_t AddLibraryModule(QmsModule *module, void *arg) {
  Text *text = arg;
  TextPrint(text, "<module><name>%s</name>", QM_MOD_GetModuleName(module));
  if (QM_MOD_GetRevision(module) != NULL)
    TextPrint(text, "<revision>%s</revision>", QM_MOD_GetRevision(module));
  TextAdd(text, "<namespace>");
  TextAddEscaped(text, QM_MOD_GetModuleNs(module));
  TextAdd(text, "</namespace>");
  Names features = {text, "<feature>", "<feature>", "</feature>", 0};
  Ignore(QM_MOD_ScanAllFeature(module, AddFeature, &features));
  Names deviations = {text, "<deviation>", "<deviation>", "</deviation>", 0};
  Ignore(QM_MOD_ScanDeviatingModule(module, AddName, &deviations));
  TextAdd(text, "</module>");
  return 0;
}

/* Two lists of modules that differ have two numbers, also when the agent was started with
   other modules in between: the hash FNV-1a of what the library tells. */
static uint64_t ContentId(const Agent *agent) {
  Text text = {NULL, 0, 0};
  Ignore(QM_CTX_ScanAllModule(agent->ctx, AddLibraryModule, &text));
  uint64_t hash = UINT64_C(14695981039346656037);
  for (size_t i = 0; i < text.length; i++)
    hash = (hash ^ (unsigned char)text.data[i]) * UINT64_C(1099511628211);
  TextFree(&text);
  return hash;
}

List Capabilities(const Agent *agent) {
  static const char *const kOwn[] = {
      BASE_1_0,
      BASE_1_1,
      "urn:ietf:params:netconf:capability:writable-running:1.0",
      "urn:ietf:params:netconf:capability:rollback-on-error:1.0",
      "urn:ietf:params:netconf:capability:validate:1.1",
      "urn:ietf:params:netconf:capability:notification:1.0",
      "urn:ietf:params:netconf:capability:interleave:1.0",
  };
  List list = {NULL, 0};
  for (size_t i = 0; i < sizeof kOwn / sizeof *kOwn; i++) ListAdd(&list, kOwn[i]);
  char *library = PrintText(
      "urn:ietf:params:netconf:capability:yang-library:1.1?revision=2019-01-04&content-id=%"
      "016" PRIx64,
      ContentId(agent));
  ListAdd(&list, library);
  free(library);
  Ignore(QM_CTX_ScanAllModule(agent->ctx, AddModule, &list));
  return list;
}

void CapabilitiesAddLibrary(const Agent *agent, Text *text) {
  TextAdd(text,
          "<yang-library xmlns=\"urn:ietf:params:xml:ns:yang:ietf-yang-library\""
          " xmlns:ds=\"urn:ietf:params:xml:ns:yang:ietf-datastores\">"
          "<module-set><name>all</name>");
  Ignore(QM_CTX_ScanAllModule(agent->ctx, AddLibraryModule, text));
  TextPrint(text,
            "</module-set><schema><name>all</name><module-set>all</module-set></schema>"
            "<datastore><name>ds:running</name><schema>all</schema></datastore>"
            "<datastore><name>ds:operational</name><schema>all</schema></datastore>"
            "<content-id>%016" PRIx64 "</content-id></yang-library>",
            ContentId(agent));
}
