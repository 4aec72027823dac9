// SPDX-License-Identifier: BSD-3-Clause
// Parsing of XML from memory. libxml2 keeps its defaults per thread, and they
// are the client's: what a parse needs is set before it and put back after it.
// Errors are swallowed, since a library must not write to its client's standard
// error; entity substitution, DTD loading and validation are off even for a
// client who has turned them on, because the text may come from the network.
#include "context/xml_parse.h"

#include <libxml/globals.h>
#include <libxml/parser.h>

#include <climits>

static void DropError(void* /*context*/, xmlErrorPtr /*error*/) {}

// Out of memory libxml2 may still hand out a document, with parts missing.
static void NoteLostMemory(void* lostMemory, xmlErrorPtr error) {
  if (error != nullptr && error->code == XML_ERR_NO_MEMORY) *static_cast<bool*>(lostMemory) = true;
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
};

}  // namespace

xmlDoc* ParseXmlText(const char* text, size_t size) {
  if (text == nullptr || size == 0 || size > INT_MAX) return nullptr;
  const XmlSilence silence;
  const ParserDefaults defaults;
  bool lostMemory = false;
  xmlSetStructuredErrorFunc(&lostMemory, NoteLostMemory);
  xmlDoc* doc = xmlParseMemory(text, static_cast<int>(size));
  if (!lostMemory) return doc;
  xmlFreeDoc(doc);
  return nullptr;
}
