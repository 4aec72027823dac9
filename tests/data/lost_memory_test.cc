// SPDX-License-Identifier: BSD-3-Clause
// libxml2 has an allocator of its own. When it runs out of memory it may still hand
// out an element without name, text or namespace, or half a text. None of these may
// reach the client as a result.
#include <gtest/gtest.h>
#include <libxml/xmlmemory.h>

#include <string>

#include <qmodel/qmodel.h>

#include "context/xml_parse.h"
#include "data/data_node.h"
#include "tests/support/message_fixture.h"
#include "tests/support/xml_memory.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;

class LostMemory : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(0, xmlMemGet(&free_, &malloc_, &realloc_, &duplicate_));
    ASSERT_TRUE(xml_memory::Install());
  }
  void TearDown() override {
    xml_memory::RefuseNth(0);
    EXPECT_EQ(0, xmlMemSetup(free_, malloc_, realloc_, duplicate_));
  }
  // Runs with libxml2's n-th allocation refused; tells whether one was.
  template <typename Run>
  static bool Refuse(uint64_t n, const Run& run) {
    const XmlSilence silence;
    xml_memory::RefuseNth(n);
    run();
    const bool refused = xml_memory::Left() == 0;
    xml_memory::RefuseNth(0);
    return refused;
  }

 private:
  xmlFreeFunc free_ = nullptr;
  xmlMallocFunc malloc_ = nullptr;
  xmlReallocFunc realloc_ = nullptr;
  xmlStrdupFunc duplicate_ = nullptr;
};

// A document that was not parsed keeps no dictionary, so that the name is a block
// of its own: with the element, its namespace and its text that makes six.
TEST_F(LostMemory, NewElementIsWholeOrNotThere) {
  QmsModule module = {};
  module.name = "m";
  module.ns = "urn:m";
  QmsNode schemaNode = {};
  schemaNode.module = &module;
  schemaNode.name = "a";
  xmlDoc* doc = xmlNewDoc(nullptr);
  xmlNode* root = xmlNewDocNode(doc, nullptr, reinterpret_cast<const xmlChar*>("r"), nullptr);
  xmlDocSetRootElement(doc, root);
  xmlNode* added = nullptr;
  uint64_t n = 1;
  while (Refuse(n, [&] { added = QMD_PAS_AddNewChildNodeWithValue(root, &schemaNode, "1"); })) {
    EXPECT_EQ(nullptr, added) << "allocation " << n;
    EXPECT_EQ(nullptr, root->children) << "allocation " << n;
    if (HasFailure()) break;
    ++n;
  }
  EXPECT_EQ(7u, n);
  EXPECT_NE(nullptr, added);
  xmlFreeDoc(doc);
}

TEST_F(LostMemory, DefaultsAreWholeOrTheRequestFails) {
  Schema schema;
  schema.Load("m", R"(<identity name="b"/><identity name="d"><base name="b"/></identity>
    <rpc name="r"><input><leaf name="a"><type name="identityref"><base name="b"/></type>
    <default value="d"/></leaf>
    <container name="c"><leaf name="l"><type name="string"/><default value="x"/></leaf></container>
    <container name="e"><leaf name="f"><type name="string"/></leaf></container>
    </input></rpc>)");
  const char* const whole = "<r xmlns=\"urn:m\"><a xmlns:m=\"urn:m\">m:d</a><c><l>x</l></c></r>";
  uint64_t n = 1;
  for (bool refused = true; refused && !HasFailure(); ++n) {
    SCOPED_TRACE(n);
    const Document doc("<r xmlns='urn:m'/>");
    QmErrNode* err = nullptr;
    refused = Refuse(n, [&] {
      err =
          QM_CTX_ValidateRpcDataTree(schema.ctx(), QM_INPUT_ELEMENT, doc.root(), nullptr, nullptr);
    });
    EXPECT_EQ(refused ? "18|/|-|-|-" : "valid", message_fixture::Describe(err));
    EXPECT_EQ(refused ? "<r xmlns=\"urn:m\"/>" : whole, doc.Dump());
  }
  EXPECT_GT(n, 10u);
}

uint32_t Take(const char* text, void* arg) {
  *static_cast<std::string*>(arg) = text;
  return 0;
}

TEST_F(LostMemory, NotificationIsHandedOverWhole) {
  Schema schema;
  schema.Load("m",
              "<notification name=\"n\"><leaf-list name=\"a\"><type name=\"string\"/></leaf-list>"
              "</notification>");
  std::string text = "<n xmlns='urn:m'>";
  for (int i = 0; i < 2000; ++i) text += "<a>some text that fills the buffers</a>";
  text += "</n>";
  std::string whole;
  ASSERT_EQ(QM_OK, QM_CTX_ValidateNotifDataTree(schema.ctx(), text.c_str(), Take, &whole));
  // Counts what a run allocates; the last of it is the text's.
  uint64_t all = 0;
  Refuse(UINT64_MAX, [&] {
    EXPECT_EQ(QM_OK, QM_CTX_ValidateNotifDataTree(schema.ctx(), text.c_str(), nullptr, nullptr));
    all = UINT64_MAX - xml_memory::Left();
  });
  for (uint64_t n = all; n > all - 40 && !HasFailure(); --n) {
    SCOPED_TRACE(testing::Message() << "allocation " << n << " of " << all);
    std::string got;
    uint32_t ret = 0;
    EXPECT_TRUE(Refuse(
        n, [&] { ret = QM_CTX_ValidateNotifDataTree(schema.ctx(), text.c_str(), Take, &got); }));
    EXPECT_TRUE(ret == QM_INVALID || (ret == QM_OK && got == whole)) << ret << ", " << got.size();
    EXPECT_TRUE(ret == QM_OK || got.empty());
  }
}

}  // namespace
