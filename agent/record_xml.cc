// SPDX-License-Identifier: BSD-3-Clause
// An error record as the rpc-error element of RFC 6241, section 4.3. The text is written
// piece by piece and takes no memory: an error must be told above all when there is none.
// Texts come from messages, and a quoted value may have been cut within a character, so
// what is no character of XML is replaced on the way.
#include <cstring>

#include <qmodel/agent.h>
#include <qmodel/schema.h>

#include "agent/envelope.h"
#include "context/xml_tree.h"
#include "platform/string.h"
#include "schema/module_registry.h"
#include "schema/records.h"

constexpr char kReplacement[] = "\xEF\xBF\xBD";  // U+FFFD

namespace {

// Where the text goes. The first result that is not 0 ends the writing.
struct Writer {
  QmAgentOutputFunc output;
  void* arg;
  uint32_t flags;
  uint32_t result;
};

// One prefix of a path, as it stands there.
struct Prefix {
  const char* text;
  size_t length;
};

struct Buffer {
  char* text;
  size_t size;
  size_t length;  // of all that was written, whether or not it fitted
};

// A child of error-info: the name of its element and the namespace that it declares.
struct Info {
  uint32_t field;
  const char* name;
  const char* ns;
};

}  // namespace

constexpr Info kInfos[] = {{QM_AGENT_FIELD_BAD_ATTRIBUTE, "bad-attribute", nullptr},
                           {QM_AGENT_FIELD_BAD_ELEMENT, "bad-element", nullptr},
                           {QM_AGENT_FIELD_BAD_NAMESPACE, "bad-namespace", nullptr},
                           {QM_AGENT_FIELD_SESSION_ID, "session-id", nullptr},
                           {QM_AGENT_FIELD_MISSING_CHOICE, "missing-choice", kYangNamespace}};

static void Put(Writer* writer, const char* text, size_t length) {
  if (writer->result == QM_OK && length != 0) {
    writer->result = writer->output(text, length, writer->arg);
  }
}

static void PutText(Writer* writer, const char* text) {
  Put(writer, text, RTK_StrLen(text));
}

static bool IsXmlChar(int c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

// What stands for a character that cannot stand for itself, or NULL; `length` receives
// its bytes in the text.
static const char* Replacement(const char* text, size_t* length) {
  *length = 1;
  switch (*text) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";
    default:
      break;
  }
  int bytes = 1;
  while (bytes < 4 && text[bytes] != '\0') ++bytes;
  const int character = xmlGetUTF8Char(XmlChars(text), &bytes);
  if (character < 0) return kReplacement;
  *length = static_cast<size_t>(bytes);
  return IsXmlChar(character) ? nullptr : kReplacement;
}

// Quotes are replaced within attributes only.
static void PutEscaped(Writer* writer, const char* text, bool isAttribute) {
  const char* start = text;
  while (*text != '\0') {
    size_t length = 1;
    const char* replacement = Replacement(text, &length);
    const bool asItIs = replacement == nullptr || (*text == '"' && !isAttribute);
    if (!asItIs) {
      Put(writer, start, static_cast<size_t>(text - start));
      PutText(writer, replacement);
      start = text + length;
    }
    text += length;
  }
  Put(writer, start, static_cast<size_t>(text - start));
}

static void PutLineBreak(Writer* writer, uint32_t level) {
  if ((writer->flags & QM_AGENT_RECORD_INDENTED) == 0) return;
  constexpr char kIndent[] = "\n    ";
  Put(writer, kIndent, 1 + size_t{level} * 2);
}

static void PutDeclaration(Writer* writer, const Prefix& prefix, const char* ns) {
  PutText(writer, " xmlns");
  if (prefix.length != 0) PutText(writer, ":");
  Put(writer, prefix.text, prefix.length);
  PutText(writer, "=\"");
  PutEscaped(writer, ns, true);
  PutText(writer, "\"");
}

static void OpenTag(Writer* writer, const char* name) {
  PutText(writer, "<");
  PutText(writer, name);
}

static void CloseTag(Writer* writer, const char* name) {
  PutText(writer, "</");
  PutText(writer, name);
  PutText(writer, ">");
}

// One element with a text on a line of its own; nothing when there is no text.
static void PutElement(Writer* writer, uint32_t level, const char* name, const char* ns,
                       const char* text) {
  if (text == nullptr) return;
  PutLineBreak(writer, level);
  OpenTag(writer, name);
  if (ns != nullptr) PutDeclaration(writer, Prefix{"", 0}, ns);
  PutText(writer, ">");
  PutEscaped(writer, text, false);
  CloseTag(writer, name);
}

static bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

static size_t NameLength(const char* text) {
  if (!IsNameStart(*text)) return 0;
  size_t length = 1;
  while (IsNameStart(text[length]) || IsDigit(text[length]) || text[length] == '-' ||
         text[length] == '.') {
    ++length;
  }
  return length;
}

// The next prefix of a step at or after `*pos`, which is moved behind it. Values of keys
// stand in quotes, and are passed over.
static bool NextPrefix(const char** pos, Prefix* prefix) {
  char quote = '\0';
  for (const char* c = *pos; *c != '\0'; ++c) {
    if (quote != '\0') {
      if (*c == quote) quote = '\0';
    } else if (*c == '\'' || *c == '"') {
      quote = *c;
    } else if (*c == '/') {
      *prefix = {c + 1, NameLength(c + 1)};
      if (prefix->length == 0 || c[1 + prefix->length] != ':') continue;
      *pos = c + 1 + prefix->length;
      return true;
    }
  }
  return false;
}

static bool IsSame(const Prefix& a, const Prefix& b) {
  return a.length == b.length && std::memcmp(a.text, b.text, a.length) == 0;
}

static bool StoodBefore(const char* path, const Prefix& prefix) {
  Prefix earlier = {};
  while (NextPrefix(&path, &earlier) && earlier.text != prefix.text) {
    if (IsSame(earlier, prefix)) return true;
  }
  return false;
}

// The namespace of the module with that name; NULL when none is loaded, and for what no
// declaration may bind.
static const char* NamespaceOf(QmCtx* ctx, const Prefix& prefix) {
  char name[kQmsNameSize] = "";
  if (prefix.length >= sizeof name || IsSame(prefix, {"xml", 3}) || IsSame(prefix, {"xmlns", 5})) {
    return nullptr;
  }
  std::memcpy(name, prefix.text, prefix.length);
  const char* ns = QM_MOD_GetModuleNs(QM_CTX_GetModuleByModName(ctx, name));
  return ns == nullptr || *ns == '\0' ? nullptr : ns;
}

static void PutPath(Writer* writer, QmCtx* ctx, const char* path) {
  if (path == nullptr) return;
  PutLineBreak(writer, 1);
  OpenTag(writer, "error-path");
  const char* pos = path;
  Prefix prefix = {};
  while (ctx != nullptr && NextPrefix(&pos, &prefix)) {
    const char* ns = StoodBefore(path, prefix) ? nullptr : NamespaceOf(ctx, prefix);
    if (ns != nullptr) PutDeclaration(writer, prefix, ns);
  }
  PutText(writer, ">");
  PutEscaped(writer, path, false);
  CloseTag(writer, "error-path");
}

static bool IsWritten(const Writer* writer, const QmErrNode* err, const Info& info) {
  if (QM_AGENT_GetRecordText(err, info.field) == nullptr) return false;
  return (writer->flags & QM_AGENT_RECORD_BARE) == 0 || info.field <= QM_AGENT_FIELD_BAD_ELEMENT;
}

static void PutInfo(Writer* writer, const QmErrNode* err) {
  bool any = false;
  for (const Info& info : kInfos) {
    if (!IsWritten(writer, err, info)) continue;
    if (!any) {
      PutLineBreak(writer, 1);
      PutText(writer, "<error-info>");
    }
    any = true;
    PutElement(writer, 2, info.name, info.ns, QM_AGENT_GetRecordText(err, info.field));
  }
  if (!any) return;
  PutLineBreak(writer, 1);
  CloseTag(writer, "error-info");
}

uint32_t QM_AGENT_WriteRecord(const QmErrNode* err, QmCtx* ctx, uint32_t flags,
                              QmAgentOutputFunc output, void* arg) noexcept {
  if (err == nullptr || output == nullptr) return QM_INVALID;
  Writer writer = {output, arg, flags, QM_OK};
  OpenTag(&writer, "rpc-error");
  PutDeclaration(&writer, Prefix{"", 0}, kNetconfNamespace);
  PutText(&writer, ">");
  PutElement(&writer, 1, "error-type", nullptr, QM_AGENT_GetTypeName(QM_GetErrorType(err)));
  PutElement(&writer, 1, "error-tag", nullptr, QM_AGENT_GetTagName(QM_GetErrorTag(err)));
  PutElement(&writer, 1, "error-severity", nullptr,
             QM_AGENT_GetSeverityName(QM_GetErrorSeverity(err)));
  PutElement(&writer, 1, "error-app-tag", nullptr, QM_GetErrorAppTag(err));
  PutPath(&writer, (flags & QM_AGENT_RECORD_BARE) == 0 ? ctx : nullptr, QM_GetErrorPath(err));
  PutElement(&writer, 1, "error-message", nullptr, QM_GetErrorMessage(err));
  PutInfo(&writer, err);
  PutLineBreak(&writer, 0);
  CloseTag(&writer, "rpc-error");
  PutLineBreak(&writer, 0);
  return writer.result;
}

// Cuts at the buffer's end, and counts on.
static uint32_t Fill(const char* text, size_t length, void* arg) {
  auto* buffer = static_cast<Buffer*>(arg);
  if (buffer->length + 1 < buffer->size) {
    const size_t room = buffer->size - 1 - buffer->length;
    const size_t count = length < room ? length : room;
    std::memcpy(buffer->text + buffer->length, text, count);
    buffer->text[buffer->length + count] = '\0';
  }
  buffer->length += length;
  return QM_OK;
}

size_t QM_AGENT_PrintRecord(const QmErrNode* err, QmCtx* ctx, uint32_t flags, char* buffer,
                            size_t size) noexcept {
  Buffer filled = {buffer, buffer == nullptr ? 0 : size, 0};
  if (filled.size != 0) *buffer = '\0';
  // A buffer takes everything, so that only a missing record is refused.
  static_cast<void>(QM_AGENT_WriteRecord(err, ctx, flags, Fill, &filled));
  return filled.length;
}
