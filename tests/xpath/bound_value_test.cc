// SPDX-License-Identifier: BSD-3-Clause
#include "xpath/bound_value.h"

#include <gtest/gtest.h>

#include <string>

#include "context/memory.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"
#include "xpath/child_lookup.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using yin_text::Leaf;
using yin_text::Rpc;

class ElementValue : public testing::Test {
 protected:
  void SetUp() override {
    schema_.Load(
        "m",
        "<typedef name=\"t\"><type name=\"identityref\"><base name=\"b\"/></type></typedef>"
        "<identity name=\"b\"/>" +
            Rpc("<leaf name=\"i\"><type name=\"identityref\"><base name=\"b\"/></type></leaf>"
                "<leaf name=\"j\"><type name=\"t\"/></leaf>" +
                Leaf("s")));
  }
  std::string Value(const std::string& leaf, const std::string& text) {
    Document doc("<r xmlns='urn:m' xmlns:p='urn:m' xmlns:q='urn:q'><" + leaf + ">" + text + "</" +
                 leaf + "></r>");
    QmsNode* schemaNode =
        QM_CTX_GetTargetNode(schema_.ctx(), ("/m:r/input/" + leaf).c_str(), nullptr);
    EXPECT_NE(nullptr, schemaNode);
    char* value = QMD_NODE_GetValueContent(doc.Find(leaf), schemaNode);
    std::string result = value == nullptr ? "-" : value;
    g_qmMemFreeFunc(value);
    return result;
  }
  Schema schema_;
};

TEST_F(ElementValue, TextIsCopied) {
  EXPECT_EQ("p:x", Value("s", "p:x"));
  EXPECT_EQ("-", Value("s", ""));
}

TEST_F(ElementValue, IdentityPrefixBecomesModuleName) {
  for (const char* leaf : {"i", "j"}) {
    SCOPED_TRACE(leaf);
    EXPECT_EQ("m:b", Value(leaf, "p:b"));
    EXPECT_EQ("m:b", Value(leaf, "b"));
    EXPECT_EQ("-", Value(leaf, "unknown:b"));
    EXPECT_EQ("-", Value(leaf, "q:b")) << "a namespace of no module";
    EXPECT_EQ("-", Value(leaf, ":b"));
  }
}

TEST_F(ElementValue, ChildIsFoundByNameWhateverItsKind) {
  Document doc("<r>text<!--c--><a/><?pi x?><a n='2'/></r>");
  EXPECT_EQ(XML_TEXT_NODE, QMD_PAS_FindChildDataNode(doc.root(), "text")->type);
  EXPECT_EQ(XML_COMMENT_NODE, QMD_PAS_FindChildDataNode(doc.root(), "comment")->type);
  EXPECT_EQ(XML_PI_NODE, QMD_PAS_FindChildDataNode(doc.root(), "pi")->type);
  EXPECT_EQ(doc.Find("a"), QMD_PAS_FindChildDataNode(doc.root(), "a"));
  EXPECT_EQ(nullptr, QMD_PAS_FindChildDataNode(doc.root(), "b"));
  EXPECT_EQ(nullptr, QMD_PAS_FindChildDataNode(nullptr, "b"));
}

// A document's type declaration has the root's name and another layout.
TEST_F(ElementValue, DeclarationsOfADocumentAreNeverFound) {
  Document doc("<!DOCTYPE r [<!ELEMENT r ANY>]><r/>");
  auto* top = reinterpret_cast<xmlNode*>(doc.doc());
  EXPECT_EQ(doc.root(), QMD_PAS_FindChildDataNode(top, "r"));
}

}  // namespace
