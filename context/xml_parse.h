// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstddef>
#include <cstdint>

// Parses `size` bytes of XML with blanks between elements dropped. Silent:
// nothing is written to standard error. No external subset, entity or network
// address is followed, whatever the client has set, and the calling thread's
// libxml2 settings are as before afterwards, but for the indentation of output.
// NULL when the text is not well-formed, empty, too long for libxml2, or when
// libxml2 ran out of memory.
//
// A model may have a document type declaration that gives attributes to elements 16
// times at most. A message may have none: it is refused at the declaration, before
// what the declaration holds is read.
xmlDoc* ParseXmlText(const char* text, size_t size);
xmlDoc* ParseXmlMessage(const char* text, size_t size);

// The most levels of elements that libxml2 takes.
constexpr uint32_t kXmlMaxDepth = 256;

struct XmlBounds {
  uint32_t depth;       // levels of elements; kXmlMaxDepth at most
  uint32_t namespaces;  // declared by the elements that are open at one time
};

enum XmlOutcome : uint32_t {
  XML_OUTCOME_PARSED = 0,
  XML_OUTCOME_NO_MEMORY = 1,
  XML_OUTCOME_DOCUMENT_TYPE = 2,
  XML_OUTCOME_TOO_DEEP = 3,
  XML_OUTCOME_TOO_MANY = 4,  // namespaces
  XML_OUTCOME_NOT_XML = 5
};

// A message within bounds, of UTF-8 whatever it declares: without line numbers,
// comments, instructions and CDATA sections; texts are joined, and blanks kept. What is
// not well-formed as to namespaces is not XML here.
xmlDoc* ParseBoundedMessage(const char* text, size_t size, const XmlBounds& bounds,
                            XmlOutcome* outcome);

// Frees such a document, or NULL.
void FreeParsedDocument(xmlDoc* doc);

// While alive, libxml2 reports nothing for the calling thread.
class XmlSilence {
 public:
  XmlSilence();
  ~XmlSilence();
  XmlSilence(const XmlSilence&) = delete;
  XmlSilence& operator=(const XmlSilence&) = delete;

 private:
  void* savedContext_;
  void (*savedFunc_)(void*, xmlErrorPtr);
};
