// SPDX-License-Identifier: BSD-3-Clause
// Validates requests as element trees, so that the defaults which the library
// adds can be printed.
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <climits>
#include <cstdio>

#include <qmodel/data.h>

#include "client/commands.h"
#include "client/file_input.h"
#include "client/hints.h"
#include "client/json.h"
#include "client/memory_watch.h"
#include "client/owned.h"
#include "client/rpc_error.h"
#include "client/session.h"
#include "client/verdict.h"

namespace {

void Ignore(void* /*context*/, xmlErrorPtr /*error*/) {}

// No message has a document type declaration (RFC 6241 section 3), so the parser stops
// where one begins, before its content is read.
void RefuseDocumentType(void* parser, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                        const xmlChar* /*systemId*/) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  xmlStopParser(context);
  context->wellFormed = 0;
}

// NULL for what is no well-formed message. The parser would end at a NUL and take what
// stands before it; the rest of the file is no XML, so the whole is not. Blanks between
// elements are dropped; no line numbers are kept, no entity is replaced and nothing is
// fetched, as is libxml2's default.
XmlDocument ParseRequest(const std::string& text) {
  if (text.empty() || text.size() > INT_MAX) return nullptr;
  if (text.find('\0') != std::string::npos) return nullptr;
  xmlSetStructuredErrorFunc(nullptr, Ignore);
  xmlKeepBlanksDefault(0);
  xmlParserCtxt* parser = xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()));
  if (parser == nullptr) return nullptr;
  parser->sax->internalSubset = RefuseDocumentType;
  static_cast<void>(xmlParseDocument(parser));
  XmlDocument doc(parser->myDoc);
  if (parser->wellFormed == 0) doc.reset();
  xmlFreeParserCtxt(parser);
  return doc;
}

// xmlFree() is a variable.
struct FreeXml {
  void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

void PrintDocument(xmlDoc* doc) {
  xmlChar* text = nullptr;
  int length = 0;
  xmlDocDumpFormatMemoryEnc(doc, &text, &length, "UTF-8", 1);
  const std::unique_ptr<xmlChar, FreeXml> owner(text);
  CheckMemory();
  static_cast<void>(std::fwrite(text, 1, static_cast<size_t>(length), stdout));
}

// `valid` is null for a file that could not be read.
void AddAnswer(const Validation& validation, const std::string& file, const char* valid,
               const QmErrNode* record) {
  validation.answers->Add("{\"file\": " + JsonText(file) + ", \"valid\": " + valid +
                          ", \"error\": " + RecordAsJson(record) + "}");
}

int GiveAnswer(const Validation& validation, const std::string& file, xmlDoc* doc,
               const QmErrNode* record) {
  PrintVerdict(validation.options, file, record == nullptr);
  if (validation.options.json) {
    AddAnswer(validation, file, record == nullptr ? "true" : "false", record);
  } else if (record != nullptr) {
    PrintRpcError(record);
  } else {
    PrintDocument(doc);
  }
  if (record != nullptr) HintImportsOfRecord(validation.ctx, validation.options, record);
  return record == nullptr ? kExitOk : kExitInvalid;
}

int ValidateOne(const Validation& validation, const std::string& file) {
  std::string text;
  if (!ReadInput(file, &text)) {
    if (validation.options.json) AddAnswer(validation, file, "null", nullptr);
    return kExitUnusable;
  }
  const XmlDocument doc = ParseRequest(text);
  xmlNode* root = doc == nullptr ? nullptr : xmlDocGetRootElement(doc.get());
  // A text that is no XML has no root; the library answers that with a record.
  const ErrorRecord record(
      QM_CTX_ValidateRpcDataTree(validation.ctx, QM_INPUT_ELEMENT, root, nullptr, nullptr));
  CheckMemory();
  return GiveAnswer(validation, file, doc.get(), record.get());
}

}  // namespace

int RunRpc(const Options& options) {
  return ValidateFiles(options, ValidateOne);
}
