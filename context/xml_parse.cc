// SPDX-License-Identifier: BSD-3-Clause
// Parsing of XML from memory. libxml2 keeps its defaults per thread, and they
// are the client's: what a parse needs is set before it and put back after it.
// Errors are swallowed, since a library must not write to its client's standard
// error; entity substitution, DTD loading and validation are off even for a
// client who has turned them on, because the text may come from the network.
//
// libxml2 compares the attributes of an element with each other, those included
// that the internal subset of a DTD gives to every element of a name. A few
// kilobytes of such declarations cost minutes, so a text with one is refused;
// RFC 6241 section 3 allows no DTD in a message at all.
#include "context/xml_parse.h"

#include <libxml/SAX2.h>
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>

#include "context/guard.h"

static void DropError(void* /*context*/, xmlErrorPtr /*error*/) {}

// Out of memory libxml2 may still hand out a document, with parts missing.
static void NoteLostMemory(void* unusable, xmlErrorPtr error) {
  if (error != nullptr && error->code == XML_ERR_NO_MEMORY) *static_cast<bool*>(unusable) = true;
}

// In place of libxml2's handler of attribute declarations, which it calls.
static void RefuseAttributeDefault(void* parser, const xmlChar* element, const xmlChar* name,
                                   int type, int use, const xmlChar* value,
                                   xmlEnumerationPtr choices) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  xmlSAX2AttributeDecl(parser, element, name, type, use, value, choices);
  if (value == nullptr) return;
  *static_cast<bool*>(context->_private) = true;
  xmlStopParser(context);
}

XmlSilence::XmlSilence()
    : savedContext_(xmlStructuredErrorContext), savedFunc_(xmlStructuredError) {
  xmlSetStructuredErrorFunc(nullptr, DropError);
}

XmlSilence::~XmlSilence() {
  xmlSetStructuredErrorFunc(savedContext_, savedFunc_);
}

namespace {

// The thread's parser defaults for the time of one parse. Dropping blanks turns
// the indentation of output on, and that stays: what is parsed here may be
// written again, indented. A client's function that is called for each new node
// is not told of ours: it might set `_private`, which has a meaning of our own.
class ParserDefaults {
 public:
  ParserDefaults()
      : keepBlanks_(xmlKeepBlanksDefault(0)),
        substitute_(xmlSubstituteEntitiesDefault(0)),
        loadDtd_(xmlLoadExtDtdDefaultValue),
        validate_(xmlDoValidityCheckingDefaultValue),
        newNode_(xmlRegisterNodeDefaultValue) {
    xmlRegisterNodeDefaultValue = nullptr;
    xmlLoadExtDtdDefaultValue = 0;
    xmlDoValidityCheckingDefaultValue = 0;
  }
  ~ParserDefaults() {
    xmlRegisterNodeDefaultValue = newNode_;
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
  xmlRegisterNodeFunc newNode_;
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
  bool unusable = false;
  xmlSetStructuredErrorFunc(&unusable, NoteLostMemory);
  const QmOwn<xmlFreeParserCtxt> context(xmlCreateMemoryParserCtxt(text, static_cast<int>(size)));
  if (!context) return nullptr;
  context->_private = &unusable;
  context->sax->attributeDecl = RefuseAttributeDefault;
  static_cast<void>(xmlParseDocument(context.Get()));
  xmlDoc* doc = TakeDocument(context.Get());
  if (!unusable) return doc;
  xmlFreeDoc(doc);
  return nullptr;
}
