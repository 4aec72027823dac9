// SPDX-License-Identifier: BSD-3-Clause
// Parsing of XML from memory. libxml2 keeps its defaults per thread, and they
// are the client's: what a parse needs is set before it and put back after it.
// Errors are swallowed, since a library must not write to its client's standard
// error; entity substitution, DTD loading and validation are off even for a
// client who has turned them on, because the text may come from the network.
//
// libxml2 compares the attributes of an element with each other, those included
// that the internal subset of a DTD gives to every element of a name. Some tens of
// kilobytes of such declarations cost most of a minute, so a text with more than a few
// is refused; RFC 6241 section 3 allows no DTD in a message at all.
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
  uint32_t attributeDefaults;
};
}  // namespace

// Out of memory libxml2 may still hand out a document, with parts missing.
static void NoteLostMemory(void* notes, xmlErrorPtr error) {
  if (error == nullptr || error->code != XML_ERR_NO_MEMORY) return;
  static_cast<ParseNotes*>(notes)->lostMemory = true;
}

// In place of libxml2's handler of attribute declarations, which it calls.
static void CountAttributeDefault(void* parser, const xmlChar* element, const xmlChar* name,
                                  int type, int use, const xmlChar* value,
                                  xmlEnumerationPtr choices) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  auto* notes = static_cast<ParseNotes*>(context->_private);
  xmlSAX2AttributeDecl(parser, element, name, type, use, value, choices);
  if (value == nullptr) return;
  if (++notes->attributeDefaults > kMaxAttributeDefaults) xmlStopParser(context);
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

xmlDoc* ParseXmlText(const char* text, size_t size) {
  if (text == nullptr || size == 0 || size > INT_MAX) return nullptr;
  const XmlSilence silence;
  const ParserDefaults defaults;
  ParseNotes notes = {};
  xmlSetStructuredErrorFunc(&notes, NoteLostMemory);
  const QmOwn<xmlFreeParserCtxt> context(xmlCreateMemoryParserCtxt(text, static_cast<int>(size)));
  if (!context) return nullptr;
  context->_private = &notes;
  context->sax->attributeDecl = CountAttributeDefault;
  static_cast<void>(xmlParseDocument(context.Get()));
  xmlDoc* doc = TakeDocument(context.Get());
  if (!notes.lostMemory && notes.attributeDefaults <= kMaxAttributeDefaults) return doc;
  xmlFreeDoc(doc);
  return nullptr;
}

void FreeParsedDocument(xmlDoc* doc) {
  const NodeFunctions none;
  xmlFreeDoc(doc);
}
