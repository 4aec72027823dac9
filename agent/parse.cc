// SPDX-License-Identifier: BSD-3-Clause
// From a text that comes from outside to a document. What costs more than its length is
// looked for first, in the text itself: libxml2 compares the attributes of an element with
// each other before anybody is told of the element, so that a megabyte of them would keep
// it busy for half a minute. For that the text must be what it looks like: UTF-8, without
// a NUL, and not declared as anything else.
//
// The scan and the parser see the same tags up to the first place where the text is not
// well-formed, and there the parser ends.
#include <cstring>

#include <qmodel/agent.h>

#include "context/guard.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "platform/string.h"

static_assert(QM_AGENT_MAX_DEPTH == kXmlMaxDepth, "the parser takes what the header promises");

namespace {
// The part of the text that is still to be read.
struct Rest {
  const char* pos;
  const char* end;
};
}  // namespace

static bool StartsWith(const Rest& rest, const char* mark) {
  const size_t length = RTK_StrLen(mark);
  return static_cast<size_t>(rest.end - rest.pos) >= length &&
         std::memcmp(rest.pos, mark, length) == 0;
}

// Moves behind the next `mark`, or to the end.
static void SkipPast(Rest* rest, const char* mark) {
  while (rest->pos < rest->end && !StartsWith(*rest, mark)) ++rest->pos;
  if (rest->pos < rest->end) rest->pos += RTK_StrLen(mark);
}

// Moves to the quote that ends a value, from the one that begins it.
static void SkipQuoted(Rest* rest) {
  const char quote = *rest->pos++;
  while (rest->pos < rest->end && *rest->pos != quote) ++rest->pos;
}

// Reads to the end of a tag and gives the number of its attributes: each has one "="
// outside of its value.
static uint32_t CountAttributes(Rest* rest) {
  uint32_t count = 0;
  while (rest->pos < rest->end && *rest->pos != '>') {
    if (*rest->pos == '=') ++count;
    if (*rest->pos == '"' || *rest->pos == '\'') SkipQuoted(rest);
    if (rest->pos < rest->end) ++rest->pos;
  }
  return count;
}

static bool HasTooManyAttributes(Rest rest) {
  for (;;) {
    SkipPast(&rest, "<");
    if (rest.pos >= rest.end) return false;
    if (StartsWith(rest, "!--")) {
      rest.pos += 3;  // "<!-->" does not end at its own dashes
      SkipPast(&rest, "-->");
    } else if (StartsWith(rest, "![CDATA[")) {
      SkipPast(&rest, "]]>");
    } else if (StartsWith(rest, "?")) {
      SkipPast(&rest, "?>");
    } else if (CountAttributes(&rest) > QM_AGENT_MAX_ATTRIBUTES) {
      return true;
    }
  }
}

// The length of the character at `text` in bytes, 0 for what is none.
static size_t CharacterLength(const char* text, size_t size) {
  int length = static_cast<int>(size < 4 ? size : 4);
  const int character = xmlGetUTF8Char(XmlChars(text), &length);
  // Surrogates, and forms that are longer than they need be, are no UTF-8.
  if (character < 0 || (character >= 0xD800 && character <= 0xDFFF)) return 0;
  constexpr int kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (character < kLeast[length] || character > 0x10FFFF) return 0;
  return static_cast<size_t>(length);
}

static bool IsUtf8(const char* text, size_t size) {
  for (size_t pos = 0; pos < size;) {
    const auto byte = static_cast<unsigned char>(text[pos]);
    const size_t length = byte < 0x80 ? 1 : CharacterLength(text + pos, size - pos);
    if (length == 0) return false;
    pos += length;
  }
  return true;
}

static bool IsNamedUtf8(const Rest& name) {
  constexpr char kName[] = "utf-8";
  const char* pos = name.pos;
  for (const char* c = kName; *c != '\0'; ++c, ++pos) {
    if (pos >= name.end || (*pos | 0x20) != *c) return false;
  }
  return pos < name.end && (*pos == '"' || *pos == '\'');
}

// Whether the XML declaration, if there is one, names no other encoding. What is wrong
// with the declaration is left to the parser.
static bool IsDeclaredUtf8(Rest rest) {
  if (StartsWith(rest, "\xEF\xBB\xBF")) rest.pos += 3;
  if (!StartsWith(rest, "<?xml") || rest.end - rest.pos < 6 || !IsSpace(rest.pos[5])) return true;
  Rest end = rest;
  SkipPast(&end, "?>");
  rest.end = end.pos;
  SkipPast(&rest, "encoding");
  while (rest.pos < rest.end && (IsSpace(*rest.pos) || *rest.pos == '=')) ++rest.pos;
  if (rest.pos >= rest.end) return true;
  ++rest.pos;  // the quote
  return IsNamedUtf8(rest);
}

static uint32_t CheckText(const char* text, size_t length, const QmAgentLimits& limits) {
  if (text == nullptr) return QM_AGENT_REASON_WRONG_CALL;
  if (length > limits.maxBytes) return QM_AGENT_REASON_TOO_BIG;
  if (length == 0 || std::memchr(text, '\0', length) != nullptr) return QM_AGENT_REASON_NOT_XML;
  const Rest whole = {text, text + length};
  if (!IsUtf8(text, length) || !IsDeclaredUtf8(whole)) return QM_AGENT_REASON_NOT_UTF8;
  return HasTooManyAttributes(whole) ? uint32_t{QM_AGENT_REASON_TOO_MANY}
                                     : uint32_t{QM_AGENT_REASON_NONE};
}

// Blanks between elements go, and what else an element without elements has stays.
static bool IsBlankText(const xmlNode* node) {
  if (node->type != XML_TEXT_NODE) return false;
  const char* pos = node->content == nullptr ? "" : XmlText(node->content);
  while (IsSpace(*pos)) ++pos;
  return *pos == '\0';
}

static void DropBlanks(xmlNode* parent) {
  if (FirstElement(parent->children) == nullptr) return;
  xmlNode* next = nullptr;
  for (xmlNode* child = parent->children; child != nullptr; child = next) {
    next = child->next;
    if (IsBlankText(child)) RemoveNode(child);
  }
}

static uint32_t ReasonOf(XmlOutcome outcome) {
  switch (outcome) {
    case XML_OUTCOME_PARSED:
      return QM_AGENT_REASON_NONE;
    case XML_OUTCOME_NO_MEMORY:
      return QM_AGENT_REASON_NO_MEMORY;
    case XML_OUTCOME_DOCUMENT_TYPE:
      return QM_AGENT_REASON_DOCUMENT_TYPE;
    case XML_OUTCOME_TOO_DEEP:
      return QM_AGENT_REASON_TOO_DEEP;
    case XML_OUTCOME_TOO_MANY:
      return QM_AGENT_REASON_TOO_MANY;
    case XML_OUTCOME_NOT_XML:
      break;
  }
  return QM_AGENT_REASON_NOT_XML;
}

static xmlDoc* ParseWithin(const char* text, size_t length, const QmAgentLimits& limits,
                           uint32_t* reason) {
  *reason = CheckText(text, length, limits);
  if (*reason != QM_AGENT_REASON_NONE) return nullptr;
  const XmlBounds bounds = {limits.maxDepth, QM_AGENT_MAX_NAMESPACES};
  XmlOutcome outcome = XML_OUTCOME_PARSED;
  xmlDoc* doc = ParseBoundedMessage(text, length, bounds, &outcome);
  *reason = ReasonOf(outcome);
  if (doc == nullptr) return nullptr;
  xmlNode* root = xmlDocGetRootElement(doc);
  for (xmlNode* node = root; node != nullptr; node = NextElement(root, node)) DropBlanks(node);
  return doc;
}

static QmAgentLimits WithDefaults(const QmAgentLimits* limits) {
  QmAgentLimits all = {QM_AGENT_DEFAULT_BYTES, QM_AGENT_MAX_DEPTH};
  if (limits == nullptr) return all;
  if (limits->maxBytes != 0) all.maxBytes = limits->maxBytes;
  if (limits->maxDepth != 0 && limits->maxDepth < all.maxDepth) all.maxDepth = limits->maxDepth;
  return all;
}

xmlDoc* QM_AGENT_ParseMessage(const char* text, size_t length, const QmAgentLimits* limits,
                              uint32_t* reason) noexcept {
  uint32_t why = QM_AGENT_REASON_NONE;
  xmlDoc* doc = ParseWithin(text, length, WithDefaults(limits), &why);
  if (reason != nullptr) *reason = why;
  return doc;
}
