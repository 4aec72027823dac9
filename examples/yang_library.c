/* SPDX-License-Identifier: BSD-3-Clause */
/* Prints the YANG library (RFC 8525) of the modules that are loaded. Revisions of submodules
   are not kept by the library, and left out.
     yang_library DIR MODULE...
   Exit status: 0 done, 2 wrong usage, 3 a module cannot be loaded. */
#include <stdio.h>

#include <libxml/parser.h>
#include <libxml/xmlwriter.h>
#include <qmodel/qmodel.h>

static void Element(xmlTextWriter *writer, const char *name, const char *content) {
  xmlTextWriterWriteElement(writer, (const xmlChar *)name, (const xmlChar *)content);
}

static uint32_t WriteSubmodule(const char *name, void *writer) {
  xmlTextWriterStartElement(writer, BAD_CAST "submodule");
  Element(writer, "name", name);
  xmlTextWriterEndElement(writer);
  return 0;
}

static uint32_t WriteFeature(const QmsFeature *feature, void *writer) {
  if (QM_FEATURE_IsEnabled(feature)) Element(writer, "feature", QM_FEATURE_GetName(feature));
  return 0;
}

static uint32_t WriteDeviation(const char *module, void *writer) {
  Element(writer, "deviation", module);
  return 0;
}

static uint32_t WriteModule(QmsModule *module, void *arg) {
  xmlTextWriter *writer = arg;
  const char *revision = QM_MOD_GetRevision(module);
  xmlTextWriterStartElement(writer, BAD_CAST "module");
  Element(writer, "name", QM_MOD_GetModuleName(module));
  if (revision != NULL) Element(writer, "revision", revision);
  Element(writer, "namespace", QM_MOD_GetModuleNs(module));
  uint32_t ret = QM_MOD_ScanInclude(module, WriteSubmodule, writer);
  if (ret == 0) ret = QM_MOD_ScanAllFeature(module, WriteFeature, writer);
  if (ret == 0) ret = QM_MOD_ScanDeviatingModule(module, WriteDeviation, writer);
  xmlTextWriterEndElement(writer);
  return ret;
}

static uint32_t WriteLibrary(QmCtx *ctx, xmlTextWriter *writer) {
  xmlTextWriterSetIndent(writer, 1);
  xmlTextWriterStartElementNS(writer, NULL, BAD_CAST "yang-library",
                              BAD_CAST "urn:ietf:params:xml:ns:yang:ietf-yang-library");
  xmlTextWriterStartElement(writer, BAD_CAST "module-set");
  Element(writer, "name", "all");
  const uint32_t ret = QM_CTX_ScanAllModule(ctx, WriteModule, writer);
  xmlTextWriterEndElement(writer);
  xmlTextWriterStartElement(writer, BAD_CAST "schema");
  Element(writer, "name", "all");
  Element(writer, "module-set", "all");
  xmlTextWriterEndElement(writer);
  xmlTextWriterStartElement(writer, BAD_CAST "datastore");
  xmlTextWriterStartElement(writer, BAD_CAST "name");
  xmlTextWriterWriteAttributeNS(writer, BAD_CAST "xmlns", BAD_CAST "ds", NULL,
                                BAD_CAST "urn:ietf:params:xml:ns:yang:ietf-datastores");
  xmlTextWriterWriteString(writer, BAD_CAST "ds:running");
  xmlTextWriterEndElement(writer);
  Element(writer, "schema", "all");
  xmlTextWriterEndElement(writer);
  /* RFC 8525 wants another id after each change; an agent counts. */
  Element(writer, "content-id", "1");
  xmlTextWriterEndElement(writer);
  return ret;
}

int main(int argc, char **argv) {
  if (argc < 3) {
    fputs("usage: yang_library DIR MODULE...\n", stderr);
    return 2;
  }
  QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  int ok = ctx != NULL && QM_CTX_SetSearchDir(ctx, argv[1]) == 0;
  for (int i = 2; i < argc && ok; ++i) ok = QM_CTX_LoadModule(ctx, argv[i]) == 0;
  if (!ok) fprintf(stderr, "a module cannot be loaded from %s\n", argv[1]);
  xmlBuffer *buffer = xmlBufferCreate();
  xmlTextWriter *writer = buffer == NULL ? NULL : xmlNewTextWriterMemory(buffer, 0);
  ok = ok && writer != NULL && WriteLibrary(ctx, writer) == 0;
  if (ok) {
    xmlTextWriterFlush(writer);
    fputs((const char *)xmlBufferContent(buffer), stdout);
  }
  xmlFreeTextWriter(writer);
  xmlBufferFree(buffer);
  QM_CTX_Delete(ctx);
  xmlCleanupParser();
  return ok ? 0 : 3;
}
