// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/message_fixture.h"

#include <libxml/parser.h>
#include <qmodel/error.h>

#include "tests/support/yin_text.h"

namespace message_fixture {
namespace {

std::string OrDash(const char* text) {
  return text == nullptr ? "-" : text;
}

std::string NameOf(const xmlNode* node) {
  return std::string(reinterpret_cast<const char*>(node->name));
}

xmlNode* NextInTree(xmlNode* root, xmlNode* node) {
  if (node->type == XML_ELEMENT_NODE && node->children != nullptr) return node->children;
  while (node != root && node->next == nullptr) node = node->parent;
  return node == root ? nullptr : node->next;
}

void NoteAdded(xmlNode* node, void* arg) {
  static_cast<std::vector<std::string>*>(arg)->push_back(NameOf(node));
}

uint32_t TakeText(const char* text, void* arg) {
  std::string* out = static_cast<std::string*>(arg);
  bool lineStart = false;
  for (const char* c = text; *c != '\0'; ++c) {
    if (*c == '\n') {
      lineStart = true;
    } else if (!(lineStart && *c == ' ')) {
      lineStart = false;
      out->push_back(*c);
    }
  }
  const size_t declarationEnd = out->find("?>");
  if (declarationEnd != std::string::npos) out->erase(0, declarationEnd + 2);
  return 0;
}

uint32_t NoteFailure(const char*, const char*, const char* message, void* arg) {
  *static_cast<std::string*>(arg) += std::string(message) + "\n";
  return 0;
}

}  // namespace

Schema::Schema() : ctx_(QM_CTX_Create(0)) {
  EXPECT_NE(nullptr, ctx_);
}

Schema::~Schema() {
  QM_CTX_Delete(ctx_);
}

void Schema::Load(const std::string& name, const std::string& body) {
  const uint32_t ret = QM_CTX_LoadMemory(ctx_, yin_text::Module(name, body).c_str());
  std::string failures;
  const uint32_t scanned = QM_CTX_ScanAllSchemaLoadFail(ctx_, NoteFailure, &failures);
  ASSERT_EQ(QM_OK, ret) << failures;
  ASSERT_EQ(0u, scanned);
}

Document::Document(const std::string& text)
    : doc_(xmlReadMemory(
          text.data(), static_cast<int>(text.size()), nullptr, nullptr,
          XML_PARSE_NOBLANKS | XML_PARSE_HUGE | XML_PARSE_NOERROR | XML_PARSE_NOWARNING)) {
  EXPECT_NE(nullptr, doc_) << text;
}

Document::~Document() {
  xmlFreeDoc(doc_);
}

std::string Document::Dump() const {
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, doc_, root(), 0, 0);
  std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return text;
}

xmlNode* Document::Find(const std::string& name) const {
  xmlNode* node = root();
  while (node != nullptr && !(node->type == XML_ELEMENT_NODE && NameOf(node) == name)) {
    node = NextInTree(root(), node);
  }
  EXPECT_NE(nullptr, node) << name;
  return node;
}

size_t Document::BoundElements() const {
  size_t bound = 0;
  for (xmlNode* node = root(); node != nullptr; node = NextInTree(root(), node)) {
    if (node->type == XML_ELEMENT_NODE && node->_private != nullptr) ++bound;
  }
  return bound;
}

std::string Describe(QmErrNode* err) {
  if (err == nullptr) return "valid";
  EXPECT_EQ(4u, QM_GetErrorType(err));
  EXPECT_EQ(1u, QM_GetErrorSeverity(err));
  EXPECT_EQ(nullptr, QM_GetBadAttribute(err));
  std::string text = std::to_string(QM_GetErrorTag(err)) + "|" + OrDash(QM_GetErrorPath(err)) +
                     "|" + OrDash(QM_GetErrorMessage(err)) + "|" + OrDash(QM_GetBadElement(err)) +
                     "|" + OrDash(QM_GetErrorAppTag(err));
  QM_FreeErrNode(err);
  return text;
}

std::string ValidateRpc(QmCtx* ctx, const std::string& text) {
  std::string copy = text;
  return Describe(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, copy.data(), nullptr, nullptr));
}

std::string ValidateRpc(QmCtx* ctx, const Document& doc) {
  return Describe(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, doc.root(), nullptr, nullptr));
}

std::string ValidateRpc(QmCtx* ctx, const Document& doc, std::vector<std::string>* added) {
  return Describe(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, doc.root(), NoteAdded, added));
}

std::string ValidateNotif(QmCtx* ctx, const std::string& text) {
  std::string out;
  const uint32_t ret = QM_CTX_ValidateNotifDataTree(ctx, text.c_str(), TakeText, &out);
  return ret == QM_OK ? out : std::to_string(ret);
}

}  // namespace message_fixture
