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

// Nothing is reported, but what libxml2 is refused counts as the library's refusals do.
static void DropError(void* /*context*/, xmlErrorPtr error) {
  if (error != nullptr && error->code == XML_ERR_NO_MEMORY) NoteRefusedAllocation();
}

constexpr uint32_t kMaxAttributeDefaults = 16;

namespace {
// What came up during one parse.
struct ParseNotes {
  XmlOutcome refusal;  // why the parser was stopped at what is not allowed
  bool lostMemory;
  uint32_t attributeDefaults;
  // Of a bounded message: where the parser is, and the declarations of namespaces of
  // each open element and of all of them.
  const XmlBounds* bounds;
  uint32_t depth;
  uint32_t namespaces;
  uint32_t declared[kXmlMaxDepth + 1];
};
}  // namespace

// Out of memory libxml2 may still hand out a document, with parts missing.
static void NoteLostMemory(void* notes, xmlErrorPtr error) {
  if (error == nullptr || error->code != XML_ERR_NO_MEMORY) return;
  static_cast<ParseNotes*>(notes)->lostMemory = true;
  NoteRefusedAllocation();
}

static ParseNotes* NotesOf(xmlParserCtxt* context) {
  return static_cast<ParseNotes*>(context->_private);
}

static void Refuse(xmlParserCtxt* context, XmlOutcome refusal) {
  NotesOf(context)->refusal = refusal;
  xmlStopParser(context);
}

// In place of libxml2's handler of document type declarations. It is called when the
// name and the address have been read, and before what stands in brackets is.
static void RefuseDocumentType(void* parser, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                               const xmlChar* /*systemId*/) {
  Refuse(static_cast<xmlParserCtxt*>(parser), XML_OUTCOME_DOCUMENT_TYPE);
}

// In place of libxml2's handler of attribute declarations, which it calls.
static void CountAttributeDefault(void* parser, const xmlChar* element, const xmlChar* name,
                                  int type, int use, const xmlChar* value,
                                  xmlEnumerationPtr choices) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  xmlSAX2AttributeDecl(parser, element, name, type, use, value, choices);
  if (value == nullptr) return;
  if (++NotesOf(context)->attributeDefaults > kMaxAttributeDefaults) {
    Refuse(context, XML_OUTCOME_NOT_XML);
  }
}

// In place of libxml2's handlers of the start and the end of an element, which they call.
// The name of every element is looked up among the namespaces of all that are open.
// NOLINTNEXTLINE(readability-function-size): libxml2 calls it with nine arguments
static void StartBounded(void* parser, const xmlChar* name, const xmlChar* prefix,
                         const xmlChar* uri, int namespaceCount, const xmlChar** namespaces,
                         int attributeCount, int defaultedCount, const xmlChar** attributes) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  ParseNotes* notes = NotesOf(context);
  if (notes->depth >= notes->bounds->depth) return Refuse(context, XML_OUTCOME_TOO_DEEP);
  const auto declared = static_cast<uint32_t>(namespaceCount);
  notes->declared[++notes->depth] = declared;
  notes->namespaces += declared;
  if (notes->namespaces > notes->bounds->namespaces) {
    return Refuse(context, XML_OUTCOME_TOO_MANY);
  }
  xmlSAX2StartElementNs(parser, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                        defaultedCount, attributes);
}

static void EndBounded(void* parser, const xmlChar* name, const xmlChar* prefix,
                       const xmlChar* uri) {
  ParseNotes* notes = NotesOf(static_cast<xmlParserCtxt*>(parser));
  xmlSAX2EndElementNs(parser, name, prefix, uri);
  if (notes->depth > 0) notes->namespaces -= notes->declared[notes->depth--];
}

// Without a handler nothing is made of comments and instructions, and libxml2 joins the
// texts around them; CDATA sections go to the handler of texts. The encoding is known.
static void TakePlain(xmlParserCtxt* context) {
  xmlSAXHandler* sax = context->sax;
  sax->comment = nullptr;
  sax->processingInstruction = nullptr;
  sax->cdataBlock = nullptr;
  sax->ignorableWhitespace = sax->characters;
  sax->startElementNs = StartBounded;
  sax->endElementNs = EndBounded;
  context->keepBlanks = 1;
  context->linenumbers = 0;
  context->options |= XML_PARSE_IGNORE_ENC | XML_PARSE_NONET;
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

namespace {
enum class Content { kModel, kMessage, kBounded };
}  // namespace

// Names are taken from the dictionary of the document, and short texts stand in their
// nodes: for most of a tree that spares a block each. A document that goes to the client
// has blocks of its own, which can be moved to another one.
static void ShareTexts(xmlParserCtxt* context) {
  context->dictNames = 1;
  context->options |= XML_PARSE_COMPACT;
}

static void SetHandlers(xmlParserCtxt* context, Content content) {
  context->sax->attributeDecl = CountAttributeDefault;
  if (content != Content::kModel) context->sax->internalSubset = RefuseDocumentType;
  if (content == Content::kBounded) {
    TakePlain(context);
  } else {
    ShareTexts(context);
  }
}

static xmlDoc* Parse(const char* text, size_t size, Content content, ParseNotes* notes) {
  if (text == nullptr || size == 0 || size > INT_MAX) return nullptr;
  const XmlSilence silence;
  const ParserDefaults defaults;
  xmlSetStructuredErrorFunc(notes, NoteLostMemory);
  const QmOwn<xmlFreeParserCtxt> context(xmlCreateMemoryParserCtxt(text, static_cast<int>(size)));
  if (!context) {
    notes->lostMemory = true;
    return nullptr;
  }
  context->_private = notes;
  SetHandlers(context.Get(), content);
  static_cast<void>(xmlParseDocument(context.Get()));
  const bool strict = content == Content::kBounded && notes->refusal == XML_OUTCOME_PARSED;
  if (strict && context->nsWellFormed == 0) notes->refusal = XML_OUTCOME_NOT_XML;
  xmlDoc* doc = TakeDocument(context.Get());
  if (!notes->lostMemory && notes->refusal == XML_OUTCOME_PARSED) return doc;
  xmlFreeDoc(doc);
  return nullptr;
}

xmlDoc* ParseXmlText(const char* text, size_t size) {
  ParseNotes notes = {};
  return Parse(text, size, Content::kModel, &notes);
}

xmlDoc* ParseXmlMessage(const char* text, size_t size) {
  ParseNotes notes = {};
  return Parse(text, size, Content::kMessage, &notes);
}

xmlDoc* ParseBoundedMessage(const char* text, size_t size, const XmlBounds& bounds,
                            XmlOutcome* outcome) {
  ParseNotes notes = {};
  notes.bounds = &bounds;
  xmlDoc* doc = Parse(text, size, Content::kBounded, &notes);
  *outcome = notes.refusal;
  if (notes.lostMemory) {
    *outcome = XML_OUTCOME_NO_MEMORY;
  } else if (doc == nullptr && notes.refusal == XML_OUTCOME_PARSED) {
    *outcome = XML_OUTCOME_NOT_XML;
  }
  return doc;
}

void FreeParsedDocument(xmlDoc* doc) {
  const NodeFunctions none;
  xmlFreeDoc(doc);
}
