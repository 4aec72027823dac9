// SPDX-License-Identifier: BSD-3-Clause
// YIN into a tree. libxml2 takes the XML apart; the tree is built here from its events,
// since records want the place where a start tag begins, which libxml2's own builder
// does not keep, and statements, arguments and foreign elements differ in what text
// they may hold.
//
// The place is found from the parser's own: it stands at the end of the start tag when
// the event comes, and no '<' but the first can stand in a tag.
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>
#include <cstring>
#include <exception>

#include "compiler/reading/build.h"
#include "compiler/reading/module_file.h"
#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/words/text_check.h"

namespace compiler {

namespace {

constexpr unsigned kMaxErrors = 1000;

struct YinReader {
  Session* session = nullptr;
  Module* module = nullptr;
  Report* report = nullptr;
  xmlParserCtxt* parser = nullptr;
  std::string_view text;
  PositionCounter counter;    // of the file's own bytes
  xmlNode* parent = nullptr;  // the open element, or the document
  unsigned depth = 0;
  unsigned errors = 0;
  bool doubtful = false;       // libxml2 has found an error
  std::string pending;         // text that has not become a node yet
  std::exception_ptr refused;  // memory; thrown when the parser has returned
};

// The events come through C, which no exception may cross.
template <typename Step>
void Guarded(void* ctxt, Step step) noexcept {
  auto* parser = static_cast<xmlParserCtxt*>(ctxt);
  auto* r = static_cast<YinReader*>(parser->_private);
  if (r->refused != nullptr) return;
  try {
    step(r);
  } catch (...) {
    r->refused = std::current_exception();
    xmlStopParser(parser);
  }
}

std::string_view View(const xmlChar* text) noexcept {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

std::string Quote(const xmlNode* element) {
  return std::string("'") + NameOf(element) + "'";
}

// ---- places and findings ----

void ReportAt(YinReader* r, uint32_t line, uint32_t column, std::string message,
              std::string advice = {}) {
  if (r->errors > kMaxErrors) return;
  if (++r->errors > kMaxErrors) {
    message = "too many errors, the rest of the file is not read";
    advice.clear();
    xmlStopParser(r->parser);
  }
  AddFindingAt(r->report, Severity::kFatal, kSyntaxClass, {r->module->file, line, column},
               std::move(message), std::move(advice));
}

// Where the parser stands in the file's bytes; NULL: it reads something else.
const char* PlaceOfParser(const YinReader* r) noexcept {
  const xmlParserInput* input = r->parser->input;
  const bool converted = input->buf == nullptr || input->buf->encoder != nullptr;
  if (converted) return nullptr;
  const size_t offset = input->consumed + static_cast<size_t>(input->cur - input->base);
  return offset <= r->text.size() ? r->text.data() + offset : nullptr;
}

// The place of the start tag that the parser has just read.
Place PlaceOfTag(YinReader* r) noexcept {
  Place place{r->module->file, static_cast<uint32_t>(xmlSAX2GetLineNumber(r->parser)), 1};
  const char* p = PlaceOfParser(r);
  if (p == nullptr) return place;
  while (p > r->counter.at && *p != '<') --p;
  CountTo(&r->counter, p);
  place.line = r->counter.line;
  place.column = r->counter.column;
  return place;
}

// ---- texts ----

bool IsBlank(std::string_view text) noexcept {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool IsYin(const YinReader* r, const xmlNode* element) noexcept {
  return element->ns == r->session->yin;
}

bool HasElements(const xmlNode* element) noexcept {
  for (const xmlNode* node = element->children; node != nullptr; node = node->next)
    if (node->type == XML_ELEMENT_NODE) return true;
  return false;
}

// Makes a node of the text that was read, before what follows it. `atEnd`: the element
// ends here. Blanks between elements are layout; those that are all that an element
// holds are its text.
void FlushText(YinReader* r, bool atEnd) {
  if (r->pending.empty()) return;
  xmlNode* element = r->parent;
  const bool isYinStatement = element->_private != nullptr && IsYin(r, element);
  const bool keeps = !isYinStatement && atEnd && !HasElements(element);
  if (keeps || !IsBlank(r->pending)) {
    if (isYinStatement) {
      const Place& place = StatementOf(element)->place;
      ReportAt(r, place.line, place.column, Quote(element) + " holds text",
               "only the elements of arguments do");
    } else {
      AppendText(element, r->pending);
    }
  }
  r->pending.clear();
}

void TakeText(void* ctxt, const xmlChar* text, int length) {
  Guarded(ctxt, [&](YinReader* r) {
    r->pending.append(reinterpret_cast<const char*>(text), static_cast<size_t>(length));
  });
}

// ---- elements ----

// What an element is, by its parent: an element of an argument has no record.
bool IsArgument(const YinReader* r, const xmlNode* element) noexcept {
  const xmlNode* parent = element->parent;
  if (parent->type != XML_ELEMENT_NODE || !IsYin(r, element)) return false;
  if (parent->_private == nullptr) return true;  // inside such an element
  const KeywordRow& row = RowOf(StatementOf(parent)->keyword);
  return row.argumentIsElement && View(element->name) == row.argument;
}

void AddRecord(YinReader* r, xmlNode* element, const Place& place) {
  Statement& record = r->session->statements.emplace_back();
  record.place = place;
  record.words = r->module;
  if (IsYin(r, element)) record.keyword = FindKeyword(View(element->name));
  record.argumentIsElement = RowOf(record.keyword).argumentIsElement;
  element->_private = &record;
}

// The five pointers of an attribute, as libxml2 hands them over.
struct RawAttribute {
  std::string_view name;
  bool isForeign = false;
  std::string_view value;
};

RawAttribute ReadAttribute(const xmlChar** fields) noexcept {
  return {View(fields[0]), fields[1] != nullptr,
          std::string_view(reinterpret_cast<const char*>(fields[3]),
                           static_cast<size_t>(fields[4] - fields[3]))};
}

void AddAttributes(YinReader* r, xmlNode* element, const Place& place, int count,
                   const xmlChar** attributes) {
  const Keyword keyword = KeywordOf(element);
  const KeywordRow& row = RowOf(keyword);
  for (int i = 0; i < count; ++i) {
    const RawAttribute raw = ReadAttribute(attributes + static_cast<ptrdiff_t>(5) * i);
    if (raw.isForeign) continue;  // says nothing of the statement
    const bool expected = keyword == Keyword::kNone
                              ? element->properties == nullptr
                              : !row.argumentIsElement && raw.name == row.argument;
    if (expected) {
      AppendAttribute(element, attributes[static_cast<ptrdiff_t>(5) * i], raw.value);
    } else {
      ReportAt(r, place.line, place.column,
               Quote(element) + " has no attribute '" + std::string(raw.name) + "'");
    }
  }
}

void CheckArgument(YinReader* r, const xmlNode* element) {
  const Statement* record = StatementOf(element);
  if (record->keyword == Keyword::kNone || RowOf(record->keyword).argument.empty()) return;
  if (ArgumentOf(element) != nullptr) return;
  if (LosesName(record->keyword)) r->module->lossy = true;
  ReportAt(r, record->place.line, record->place.column, Quote(element) + " lacks its argument",
           std::string(record->argumentIsElement ? "add the element '" : "add the attribute '") +
               std::string(RowOf(record->keyword).argument) + "'");
}

void CheckDepth(YinReader* r, const Place& place) {
  if (++r->depth <= kMaxDepth) return;
  ReportAt(
      r, place.line, place.column,
      "statements stand in one another more than " + std::to_string(kMaxDepth) + " levels deep");
  xmlStopParser(r->parser);
}

// True when another element stands before this one in the same statement.
bool FollowsAnother(const xmlNode* element) noexcept {
  for (const xmlNode* node = element->prev; node != nullptr; node = node->prev)
    if (node->type == XML_ELEMENT_NODE) return true;
  return false;
}

void StartStatement(YinReader* r, xmlNode* element, const Place& place, const xmlChar* prefix,
                    int count, const xmlChar** attributes) {
  AddRecord(r, element, place);
  AddAttributes(r, element, place, count, attributes);
  if (IsYin(r, element)) return;
  if (element->ns == nullptr) {
    r->module->lossy = true;
    ReportAt(r, place.line, place.column, Quote(element) + " stands in no namespace",
             std::string("declare xmlns=\"") + kYinNamespace + "\" on the module");
    return;
  }
  r->module->extensions.push_back({element, Intern(r->session, View(prefix))});
}

// True for an element within that of an argument, which holds text alone.
bool IsInText(const xmlNode* element) noexcept {
  const xmlNode* parent = element->parent;
  return parent->type == XML_ELEMENT_NODE && parent->_private == nullptr;
}

// NOLINTNEXTLINE(readability-function-size): libxml2 prescribes the parameters.
void TakeStart(void* ctxt, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
               int /*namespaceCount*/, const xmlChar** /*namespaces*/, int count, int /*defaulted*/,
               const xmlChar** attributes) {
  Guarded(ctxt, [&](YinReader* r) {
    const Place place = PlaceOfTag(r);
    if (r->depth > 0) FlushText(r, false);
    xmlNs* ns = uri == nullptr ? nullptr : NamespaceOf(r->session, View(uri));
    xmlNode* element = AppendElement(r->parent, ns, name);
    if (IsInText(element))
      AddFindingAt(
          r->report, Severity::kError, kSyntaxClass, place,
          "the argument " + Quote(element->parent) + " holds the element " + Quote(element),
          "write text alone");
    if (!IsArgument(r, element)) {
      StartStatement(r, element, place, prefix, count, attributes);
    } else if (FollowsAnother(element)) {
      ReportAt(r, place.line, place.column,
               "the argument " + Quote(element) + " stands behind another element");
    }
    r->parent = element;
    CheckDepth(r, place);
  });
}

void TakeEnd(void* ctxt, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
             const xmlChar* /*uri*/) {
  Guarded(ctxt, [&](YinReader* r) {
    if (r->depth == 0) return;
    FlushText(r, true);
    xmlNode* element = r->parent;
    if (element->_private != nullptr) CheckArgument(r, element);
    r->parent = element->parent;
    --r->depth;
  });
}

// ---- what else a file may hold ----

void RefuseDocumentType(void* ctxt, const xmlChar* /*name*/, const xmlChar* /*externalId*/,
                        const xmlChar* /*systemId*/) {
  Guarded(ctxt, [&](YinReader* r) {
    const auto line = static_cast<uint32_t>(xmlSAX2GetLineNumber(r->parser));
    ReportAt(r, line, 1, "the file declares a document type", "remove the declaration");
    xmlStopParser(r->parser);
  });
}

std::string WithoutLineFeed(const char* message) {
  std::string text = message;
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

void TakeError(void* ctxt, xmlErrorPtr error) {
  Guarded(ctxt, [&](YinReader* r) {
    if (error->code == XML_ERR_NO_MEMORY || error->message == nullptr) throw std::bad_alloc();
    const bool ofTheUri = error->code == XML_WAR_NS_URI || error->code == XML_WAR_NS_URI_RELATIVE;
    if (error->level < XML_ERR_ERROR || ofTheUri) return;
    r->doubtful = true;
    ReportAt(r, static_cast<uint32_t>(error->line),
             error->int2 > 0 ? static_cast<uint32_t>(error->int2) : 1,
             WithoutLineFeed(error->message));
  });
}

struct FreeParser {
  void operator()(xmlParserCtxt* parser) const noexcept { xmlFreeParserCtxt(parser); }
};
using Parser = std::unique_ptr<xmlParserCtxt, FreeParser>;

Parser NewParser(YinReader* r) {
  Parser parser(Need(xmlNewParserCtxt()));
  xmlDictFree(parser->dict);
  parser->dict = r->session->dictionary.get();
  xmlDictReference(parser->dict);
  parser->_private = r;
  xmlSAXHandler* events = parser->sax;
  *events = xmlSAXHandler{};
  events->initialized = XML_SAX2_MAGIC;
  events->startElementNs = TakeStart;
  events->endElementNs = TakeEnd;
  events->characters = TakeText;
  events->cdataBlock = TakeText;
  events->ignorableWhitespace = TakeText;
  events->internalSubset = RefuseDocumentType;
  events->serror = TakeError;
  return parser;
}

// libxml2 compares all attributes of an element with each other, and no event comes
// before it has: a start tag with very many is found here. What looks like a tag inside
// of a comment or CDATA does no harm if it holds less.
constexpr size_t kMaxAttributes = 1000;

// The end of the tag that begins at `tag`, of which the attributes are counted.
const char* EndOfTag(const char* tag, const char* end, size_t* attributes) noexcept {
  char quote = 0;
  for (const char* p = tag; p < end; ++p) {
    if (quote != 0) {
      if (*p == quote) quote = 0;
    } else if (*p == '"' || *p == '\'') {
      quote = *p;
    } else if (*p == '=') {
      ++*attributes;
    } else if (*p == '>') {
      return p;
    }
  }
  return end;
}

// True for markup that needs no look, a comment or CDATA; `*behind` is then its end.
bool SkipOther(const char* start, const char* end, const char** behind) noexcept {
  const std::string_view rest(start, static_cast<size_t>(end - start));
  const bool isComment = rest.starts_with("<!--");
  if (!isComment && !rest.starts_with("<![CDATA[")) return false;
  const size_t at = rest.find(isComment ? "-->" : "]]>");
  *behind = at == std::string_view::npos ? end : start + at;
  return true;
}

bool TagsAreSmall(YinReader* r) {
  const char* end = r->text.data() + r->text.size();
  for (size_t at = r->text.find('<'); at != std::string_view::npos;) {
    size_t attributes = 0;
    const char* tag = r->text.data() + at;
    const char* behind = end;
    if (!SkipOther(tag, end, &behind)) behind = EndOfTag(tag, end, &attributes);
    if (attributes > kMaxAttributes) {
      CountTo(&r->counter, tag);
      ReportAt(r, r->counter.line, r->counter.column, "the start tag has too many attributes");
      return false;
    }
    at = r->text.find('<', static_cast<size_t>(behind - r->text.data()));
  }
  return true;
}

void Parse(YinReader* r) {
  const Parser parser = NewParser(r);
  r->parser = parser.get();
  constexpr int kOptions = XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_RECOVER;
  xmlDoc* none = xmlCtxtReadMemory(parser.get(), r->text.data(), static_cast<int>(r->text.size()),
                                   nullptr, nullptr, kOptions);
  xmlFreeDoc(none);
  if (r->refused != nullptr) std::rethrow_exception(r->refused);
  // What libxml2 does not complete without a word was for want of memory.
  const bool complete = parser->wellFormed != 0 && r->depth == 0 &&
                        xmlDocGetRootElement(r->module->document.get()) != nullptr;
  if (parser->errNo == XML_ERR_NO_MEMORY || (r->errors == 0 && !complete)) throw std::bad_alloc();
}

// What has none is told when it is met.
bool HasName(YinReader* r, const xmlNode* root) {
  const char* name = ArgumentOf(root);
  if (name == nullptr || *name != '\0') return name != nullptr;
  const Place& place = StatementOf(root)->place;
  ReportAt(r, place.line, place.column, std::string("'") + NameOf(root) + "' has an empty name",
           "write the module's name");
  return false;
}

bool IsRoot(const xmlNode* element) noexcept {
  return Is(element, Keyword::kModule) || Is(element, Keyword::kSubmodule);
}

// `doubtful` is set when libxml2 has found an error.
bool ReadTree(Session* session, Module* module, std::string_view text, Report* report,
              bool* doubtful) {
  YinReader r;
  r.session = session;
  r.module = module;
  r.report = report;
  r.text = text;
  r.counter.at = text.data();
  r.parent = reinterpret_cast<xmlNode*>(module->document.get());
  if (!TagsAreSmall(&r)) return false;
  Parse(&r);
  *doubtful = r.doubtful;
  module->root = xmlDocGetRootElement(module->document.get());
  if (module->root == nullptr) return false;
  if (!IsRoot(module->root)) {
    const Place& place = StatementOf(module->root)->place;
    ReportAt(&r, place.line, place.column, "the file is no YIN module or submodule",
             std::string("these stand in the namespace ") + kYinNamespace);
    return false;
  }
  const bool named = HasName(&r, module->root);
  module->broken = r.errors > 0;
  module->lossy = module->lossy || *doubtful || r.errors > kMaxErrors || r.depth > 0;
  return named;
}

}  // namespace

// libxml2 takes some of its refused allocations for errors of the file, a namespace for
// an empty one for instance. So its errors count only when they come twice.
Module* ReadModuleYin(Session* session, const std::string& path, const std::string& text,
                      Report* report) {
  for (bool doubtful = false;;) {
    const bool isSecond = doubtful;
    Module* module = NewModule(session, path, false);
    Report found;
    const bool isModule =
        text.size() <= INT_MAX && ReadTree(session, module, text, &found, &doubtful);
    if (text.size() > INT_MAX) ReportTooLarge(module, &found);
    const bool again = doubtful && !isSecond;
    if (!again)
      report->findings.insert(report->findings.end(), found.findings.begin(), found.findings.end());
    if (isModule && !again) {
      ReadHeader(module);
      return module;
    }
    session->modules.pop_back();
    if (!again) return nullptr;
    session->files.pop_back();
  }
}

}  // namespace compiler
