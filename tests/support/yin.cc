// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/yin.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "context/xml_parse.h"
#include "schema/module.h"
#include "schema/records.h"
#include "yin/reader.h"

namespace yin {

xmlDoc* Xml(const std::string& text) {
  xmlDoc* doc = ParseXmlText(text.data(), text.size());
  EXPECT_NE(nullptr, doc) << "the test's text is no XML";
  return doc;
}

Context::Context(uint32_t loadFlags) : ctx_(QM_CTX_Create(loadFlags)) {}

Context::~Context() {
  QM_CTX_Delete(ctx_);
}

static uint32_t Collect(const char* modName, const char* yinFile, const char* message,
                        void* userData) {
  static_cast<std::vector<std::string>*>(userData)->push_back(
      std::string(modName) + " " + (yinFile == nullptr ? "-" : yinFile) + ": " + message);
  return 0;
}

std::vector<std::string> Context::Errors() const {
  std::vector<std::string> errors;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, Collect, &errors));
  return errors;
}

static QmsModule* ParseText(QmCtx* ctx, const std::string& text) {
  xmlDoc* doc = Xml(text);
  QmsModule* module = QMS_LOADER_ParseYinContent(ctx, doc, nullptr);
  xmlFreeDoc(doc);
  return module;
}

Parsed::Parsed(QmCtx* ctx, const std::string& text) : module_(ParseText(ctx, text)) {}

Parsed::~Parsed() {
  QMS_MOD_Free(module_);
}

uint32_t ParseElement(QmCtx* ctx, ParseFunc parse, const std::string& element, uint32_t parentStmt,
                      void* dest) {
  const Parsed module(ctx, Module("m", "<import module='other'><prefix value='o'/></import>"));
  EXPECT_TRUE(module);
  xmlDoc* doc = Xml(yin_text::Root(element));
  const uint32_t ret = parse(module.Get(), xmlDocGetRootElement(doc)->children, parentStmt, dest);
  xmlFreeDoc(doc);
  return ret;
}

static QmsNode* FindSibling(QmsNode* first, const std::string& name) {
  for (QmsNode* node = first; node != nullptr; node = node->next)
    if (name == node->name) return node;
  return nullptr;
}

QmsNode* Find(const QmsModule* module, const std::string& path) {
  size_t slash = path.find('/');
  const std::string first = path.substr(0, slash);
  QmsNode* node = FindSibling(module->dataNodes, first);
  if (node == nullptr) node = FindSibling(module->rpcNodes, first);
  if (node == nullptr) node = FindSibling(module->notifNodes, first);
  while (node != nullptr && slash != std::string::npos) {
    const size_t start = slash + 1;
    slash = path.find('/', start);
    node = FindSibling(node->firstChild,
                       path.substr(start, slash == std::string::npos ? slash : slash - start));
  }
  return node;
}

}  // namespace yin
