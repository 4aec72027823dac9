// SPDX-License-Identifier: BSD-3-Clause
// Renders an error record as XML. A quoted value may have been cut within a
// character, so texts are made well-formed UTF-8 before libxml2 sees them.
#include "client/rpc_error.h"

#include <libxml/tree.h>
#include <libxml/xmlsave.h>

#include <cstdio>
#include <iterator>
#include <string>

namespace {

constexpr const char* kTypes[] = {nullptr, "transport", "rpc", "protocol", "application"};
constexpr const char* kSeverities[] = {nullptr, "error", "warning"};
constexpr const char* kTags[] = {nullptr,
                                 "in-use",
                                 "invalid-value",
                                 "too-big",
                                 "missing-attribute",
                                 "bad-attribute",
                                 "unknown-attribute",
                                 "missing-element",
                                 "bad-element",
                                 "unknown-element",
                                 "unknown-namespace",
                                 "access-denied",
                                 "lock-denied",
                                 "resource-denied",
                                 "rollback-failed",
                                 "data-exists",
                                 "data-missing",
                                 "operation-not-supported",
                                 "operation-failed",
                                 "partial-operation",
                                 "malformed-message"};
static_assert(std::size(kTags) == QM_ERR_TAG_MALFORMED_MESSAGE + 1, "one name per tag");

template <size_t N>
const char* NameOf(const char* const (&names)[N], uint32_t number) {
  return number < N ? names[number] : nullptr;
}

const xmlChar* Chars(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

bool IsXmlChar(int c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

std::string WellFormed(const char* text) {
  std::string out;
  for (const xmlChar* pos = Chars(text); *pos != 0;) {
    int length = 4;
    for (int i = 0; i < 4; ++i) {
      if (pos[i] == 0) {
        length = i;
        break;
      }
    }
    const int c = xmlGetUTF8Char(pos, &length);
    if (c < 0 || !IsXmlChar(c)) {
      out += "\xEF\xBF\xBD";  // the replacement character
      pos += c < 0 ? 1 : length;
    } else {
      out.append(reinterpret_cast<const char*>(pos), static_cast<size_t>(length));
      pos += length;
    }
  }
  return out;
}

void AddText(xmlNode* parent, const char* name, const char* text) {
  if (text == nullptr) return;
  xmlNewTextChild(parent, parent->ns, Chars(name), Chars(WellFormed(text).c_str()));
}

void AddInfo(xmlNode* parent, const QmErrNode* record) {
  const char* attribute = QM_GetBadAttribute(record);
  const char* element = QM_GetBadElement(record);
  if (attribute == nullptr && element == nullptr) return;
  xmlNode* info = xmlNewChild(parent, parent->ns, Chars("error-info"), nullptr);
  if (info == nullptr) return;
  AddText(info, "bad-attribute", attribute);
  AddText(info, "bad-element", element);
}

xmlNode* BuildElement(xmlDoc* doc, const QmErrNode* record) {
  xmlNode* error = xmlNewDocNode(doc, nullptr, Chars("rpc-error"), nullptr);
  if (error == nullptr) return nullptr;
  xmlDocSetRootElement(doc, error);
  xmlSetNs(error, xmlNewNs(error, Chars("urn:ietf:params:xml:ns:netconf:base:1.0"), nullptr));
  AddText(error, "error-type", NameOf(kTypes, QM_GetErrorType(record)));
  AddText(error, "error-tag", NameOf(kTags, QM_GetErrorTag(record)));
  AddText(error, "error-severity", NameOf(kSeverities, QM_GetErrorSeverity(record)));
  AddText(error, "error-app-tag", QM_GetErrorAppTag(record));
  AddText(error, "error-path", QM_GetErrorPath(record));
  AddText(error, "error-message", QM_GetErrorMessage(record));
  AddInfo(error, record);
  return error;
}

bool PrintElement(xmlNode* element) {
  xmlBuffer* buffer = xmlBufferCreate();
  xmlSaveCtxt* save = buffer == nullptr
                          ? nullptr
                          : xmlSaveToBuffer(buffer, "UTF-8", XML_SAVE_FORMAT | XML_SAVE_NO_DECL);
  bool done = save != nullptr && xmlSaveTree(save, element) >= 0;
  if (save != nullptr) done = xmlSaveClose(save) >= 0 && done;
  if (done) std::printf("%s\n", reinterpret_cast<const char*>(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return done;
}

}  // namespace

bool PrintRpcError(const QmErrNode* record) {
  xmlDoc* doc = xmlNewDoc(Chars("1.0"));
  if (doc == nullptr) return false;
  xmlNode* element = BuildElement(doc, record);
  const bool done = element != nullptr && PrintElement(element);
  xmlFreeDoc(doc);
  return done;
}
