// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/leaf_module.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include "tests/support/yin_text.h"

LeafModule::LeafModule(const std::string& body, uint32_t loadFlags)
    : ctx_(QM_CTX_Create(loadFlags)) {
  EXPECT_NE(nullptr, ctx_);
  Add("m", "", body);
}

LeafModule::~LeafModule() {
  QM_CTX_Delete(ctx_);
}

void LeafModule::Add(const std::string& name, const std::string& head, const std::string& body) {
  const std::string text = yin_text::Module(name, head + body, yin_text::kVersion11);
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx_, text.c_str())) << text;
  EXPECT_NE(nullptr, QM_CTX_GetModuleByModName(ctx_, name.c_str())) << text;
}

QmsNode* LeafModule::NodeOf(const char* name) {
  QmsNode* augment = nullptr;
  QmsNode* node = QM_CTX_GetTargetNode(ctx_, ("/m:" + std::string(name)).c_str(), &augment);
  EXPECT_NE(nullptr, node) << name;
  return node;
}

QmtType* LeafModule::TypeOf(const char* name) {
  return QM_NODE_GetRealType(NodeOf(name));
}

uint32_t LeafModule::CheckText(const char* leaf, const char* value) {
  return QM_NODE_ValidateValue(NodeOf(leaf), 1, value);
}

uint32_t LeafModule::CheckElement(const char* leaf, const std::string& xml) {
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  EXPECT_NE(nullptr, doc) << xml;
  if (doc == nullptr) return UINT32_MAX;
  const uint32_t ret = QM_NODE_ValidateValue(NodeOf(leaf), 2, xmlDocGetRootElement(doc));
  xmlFreeDoc(doc);
  return ret;
}

std::string TypedefChain(unsigned count, const std::string& bottom) {
  std::string text = "<typedef name='t0'><type name='" + bottom + "'/></typedef>";
  for (unsigned i = 1; i < count; ++i) {
    text += "<typedef name='t" + std::to_string(i) + "'><type name='t" + std::to_string(i - 1) +
            "'/></typedef>";
  }
  return text;
}
