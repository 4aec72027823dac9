// SPDX-License-Identifier: BSD-3-Clause
// Parsing of XML from memory. libxml2 keeps its defaults per thread, and they
// are the client's: what a parse needs is set before it and put back after it.
// Errors are swallowed, since a library must not write to its client's standard
// error; entity substitution, DTD loading and validation are off even for a
// client who has turned them on, because the text may come from the network.
//
// libxml2 compares the attributes of an element with each other, those included
// that the internal subset of a DTD gives to every element of a name. Some tens of
// kilobytes of such declarations cost most of a minute, so a model with more than a few
// is refused. A message must have no document type declaration at all (RFC 6241
// section 3): its entities would stay references in the printed result, and the next
// reader would expand them into content that nobody has checked.
#include "context/xml_parse.h"

#include <libxml/SAX2.h>
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>
#include <cstdint>

#include "context/guard.h"

static void DropError(void* /*context*/, xmlErrorPtr /*error*/) {}

constexpr uint32_t kMaxAttributeDefaults = 16;

namespace {
// What came up during one parse.
struct ParseNotes {
  bool lostMemory;
  bool refused;  // the parser was stopped at what is not allowed
  uint32_t attributeDefaults;
};
}  // namespace

// Out of memory libxml2 may still hand out a document, with parts missing.
static void NoteLostMemory(void* notes, xmlErrorPtr error) {
  if (error == nullptr || error->code != XML_ERR_NO_MEMORY) return;
  static_cast<ParseNotes*>(notes)->lostMemory = true;
}

static void Refuse(xmlParserCtxt* context) {
  static_cast<ParseNotes*>(context->_private)->refused = true;
  xmlStopParser(context);
}

// In place of libxml2's handler of document type declarations. It is called when the
// name and the address have been read, and before what stands in brackets is.
static void RefuseDocumentType(void* parser, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                               const xmlChar* /*systemId*/) {
  Refuse(static_cast<xmlParserCtxt*>(parser));
}

// In place of libxml2's handler of attribute declarations, which it calls.
static void CountAttributeDefault(void* parser, const xmlChar* element, const xmlChar* name,
                                  int type, int use, const xmlChar* value,
                                  xmlEnumerationPtr choices) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  auto* notes = static_cast<ParseNotes*>(context->_private);
  xmlSAX2AttributeDecl(parser, element, name, type, use, value, choices);
  if (value == nullptr) return;
  if (++notes->attributeDefaults > kMaxAttributeDefaults) Refuse(context);
}

XmlSilence::XmlSilence()
    : savedContext_(xmlStructuredErrorContext), savedFunc_(xmlStructuredError) {
  xmlSetStructuredErrorFunc(nullptr, DropError);
}

XmlSilence::~XmlSilence() {
  xmlSetStructuredErrorFunc(savedContext_, savedFunc_);
}

namespace {

// While alive, a client's functions that are called for each new and each freed node
// are not told of ours: they might set or read `_private`, which has a meaning of our own.
class NodeFunctions {
 public:
  NodeFunctions() : made_(xmlRegisterNodeDefaultValue), freed_(xmlDeregisterNodeDefaultValue) {
    xmlRegisterNodeDefaultValue = nullptr;
    xmlDeregisterNodeDefaultValue = nullptr;
  }
  ~NodeFunctions() {
    xmlDeregisterNodeDefaultValue = freed_;
    xmlRegisterNodeDefaultValue = made_;
  }
  NodeFunctions(const NodeFunctions&) = delete;
  NodeFunctions& operator=(const NodeFunctions&) = delete;

 private:
  xmlRegisterNodeFunc made_;
  xmlDeregisterNodeFunc freed_;
};

// The thread's parser defaults for the time of one parse. Dropping blanks turns
// the indentation of output on, and that stays: what is parsed here may be
// written again, indented.
class ParserDefaults {
 public:
  ParserDefaults()
      : keepBlanks_(xmlKeepBlanksDefault(0)),
        substitute_(xmlSubstituteEntitiesDefault(0)),
        loadDtd_(xmlLoadExtDtdDefaultValue),
        validate_(xmlDoValidityCheckingDefaultValue) {
    xmlLoadExtDtdDefaultValue = 0;
    xmlDoValidityCheckingDefaultValue = 0;
  }
  ~ParserDefaults() {
    xmlDoValidityCheckingDefaultValue = validate_;
    xmlLoadExtDtdDefaultValue = loadDtd_;
    xmlSubstituteEntitiesDefault(substitute_);
    xmlKeepBlanksDefault(keepBlanks_);
  }
  ParserDefaults(const ParserDefaults&) = delete;
  ParserDefaults& operator=(const ParserDefaults&) = delete;

 private:
  int keepBlanks_;
  int substitute_;
  int loadDtd_;
  int validate_;
  NodeFunctions none_;
};

}  // namespace

// The document that the parser made; NULL when the text was not well-formed.
static xmlDoc* TakeDocument(xmlParserCtxt* context) {
  xmlDoc* doc = context->myDoc;
  context->myDoc = nullptr;
  if (context->wellFormed != 0) return doc;
  xmlFreeDoc(doc);
  return nullptr;
}

static xmlDoc* Parse(const char* text, size_t size, bool isMessage) {
  if (text == nullptr || size == 0 || size > INT_MAX) return nullptr;
  const XmlSilence silence;
  const ParserDefaults defaults;
  ParseNotes notes = {};
  xmlSetStructuredErrorFunc(&notes, NoteLostMemory);
  const QmOwn<xmlFreeParserCtxt> context(xmlCreateMemoryParserCtxt(text, static_cast<int>(size)));
  if (!context) return nullptr;
  context->_private = &notes;
  context->sax->attributeDecl = CountAttributeDefault;
  if (isMessage) context->sax->internalSubset = RefuseDocumentType;
  static_cast<void>(xmlParseDocument(context.Get()));
  xmlDoc* doc = TakeDocument(context.Get());
  if (!notes.lostMemory && !notes.refused) return doc;
  xmlFreeDoc(doc);
  return nullptr;
}

xmlDoc* ParseXmlText(const char* text, size_t size) {
  return Parse(text, size, false);
}

xmlDoc* ParseXmlMessage(const char* text, size_t size) {
  return Parse(text, size, true);
}

void FreeParsedDocument(xmlDoc* doc) {
  const NodeFunctions none;
  xmlFreeDoc(doc);
}
