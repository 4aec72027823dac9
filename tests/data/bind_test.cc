// SPDX-License-Identifier: BSD-3-Clause
#include "data/bind.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "data/data_node.h"
#include "data/validate.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateNotif;
using message_fixture::ValidateRpc;

constexpr char kRpc[] = R"(
  <rpc name="r">
    <input>
      <leaf name="a"><type name="string"/></leaf>
      <container name="c"><leaf name="b"><type name="string"/></leaf></container>
      <choice name="ch"><case name="ca"><leaf name="x"><type name="string"/></leaf></case></choice>
      <anyxml name="ax"/>
      <anydata name="ad"/>
      <leaf-list name="ll"><type name="string"/></leaf-list>
    </input>
    <output><leaf name="o"><type name="string"/></leaf></output>
  </rpc>
  <notification name="n"><leaf name="a"><type name="int8"/></leaf></notification>
  <choice name="top"><leaf name="t"><type name="string"/></leaf></choice>)";

class Bind : public testing::Test {
 protected:
  void SetUp() override { schema_.Load("m", kRpc); }
  std::string Rpc(const std::string& text) { return ValidateRpc(schema_.ctx(), text); }
  Schema schema_;
};

TEST_F(Bind, EveryElementIsBoundToItsSchemaNode) {
  Document doc("<r xmlns='urn:m'><a>1</a><c><b/></c><x/><ll>1</ll><ll>2</ll></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  aux.topNode = doc.root()->parent;
  ASSERT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux, doc.root()));
  for (const char* name : {"r", "a", "c", "b", "x", "ll"}) {
    SCOPED_TRACE(name);
    auto* node = static_cast<QmsNode*>(doc.Find(name)->_private);
    ASSERT_NE(nullptr, node);
    EXPECT_STREQ(name, QM_NODE_GetNodeName(node));
    EXPECT_STREQ("m", QMD_NODE_GetModuleName(schema_.ctx(), doc.Find(name)));
  }
  EXPECT_EQ(7u, doc.BoundElements());
  EXPECT_EQ(static_cast<uint32_t>(QMD_MODE_RPC), aux.flags);
  QMD_PAS_ClearXmlTreePrivate(doc.root());
  EXPECT_EQ(0u, doc.BoundElements());
}

TEST_F(Bind, BoundRootIsLeftAlone) {
  Document doc("<r xmlns='urn:m'><nowhere/></r>");
  QmsNode schemaNode = {};
  doc.root()->_private = &schemaNode;
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_OK, QMD_PAS_FlushTreeWithSchema(&aux, doc.root()));
  EXPECT_EQ(nullptr, doc.Find("nowhere")->_private);
}

TEST_F(Bind, BoundElementIsNotBoundAgain) {
  Document doc("<c xmlns='urn:m'><nowhere/></c>");
  QmsNode schemaNode = {};
  doc.root()->_private = &schemaNode;
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_OK, QMD_PAS_FlushSubTreeWithSchema(&aux, doc.root(), &schemaNode));
  EXPECT_EQ(nullptr, doc.Find("nowhere")->_private);
}

TEST_F(Bind, NoElementAndNoNamespaceGive22WithoutRecord) {
  Document doc("<r/>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_INVALID, QMD_PAS_FlushTreeWithSchema(&aux, doc.root()));
  EXPECT_EQ(QM_INVALID, QMD_PAS_FlushTreeWithSchema(&aux, doc.root()->parent));
  EXPECT_EQ(QM_INVALID, QMD_PAS_FlushTreeWithSchema(&aux, nullptr));
  EXPECT_EQ(nullptr, aux.err);
}

TEST_F(Bind, NamespaceOfNoModuleIsNamed) {
  EXPECT_EQ("10|/r|r has invalid namespace: urn:other.|r|-", Rpc("<r xmlns='urn:other'/>"));
}

TEST_F(Bind, UnknownTopElementIsUnexpected) {
  EXPECT_EQ("9|/m:q|Unexpected element: q.|q|-", Rpc("<q xmlns='urn:m'/>"));
}

TEST_F(Bind, TopLevelChoiceIsNoElement) {
  EXPECT_EQ("9|/m:top|Unexpected element: top.|top|-", Rpc("<top xmlns='urn:m'/>"));
}

TEST_F(Bind, ChoiceAndCaseAreNoElements) {
  EXPECT_EQ("9|/m:r/ch|Unexpected element: ch.|ch|-", Rpc("<r xmlns='urn:m'><ch/></r>"));
  EXPECT_EQ("9|/m:r/ca|Unexpected element: ca.|ca|-", Rpc("<r xmlns='urn:m'><ca/></r>"));
  EXPECT_EQ("9|/m:r/input|Unexpected element: input.|input|-",
            Rpc("<r xmlns='urn:m'><input/></r>"));
}

TEST_F(Bind, UnknownElementIsUnexpected) {
  EXPECT_EQ("9|/m:r/q|Unexpected element: q.|q|-", Rpc("<r xmlns='urn:m'><q/></r>"));
  EXPECT_EQ("9|/m:r/c/q|Unexpected element: q.|q|-", Rpc("<r xmlns='urn:m'><c><q/></c></r>"));
}

// A foreign element with a known name is not the model's own.
TEST_F(Bind, KnownNameInUnknownNamespaceIsUnexpected) {
  EXPECT_EQ("9|/m:r/a|Unexpected element: a.|a|-",
            Rpc("<r xmlns='urn:m'><a xmlns='urn:other'/></r>"));
}

TEST_F(Bind, KnownNameOfAnotherModuleIsUnexpected) {
  schema_.Load("k", "");
  EXPECT_EQ("9|/m:r/k:a|Unexpected element: a.|a|-",
            Rpc("<r xmlns='urn:m'><a xmlns='urn:k'/></r>"));
}

TEST_F(Bind, ChildWithoutNamespaceBelongsToItsParentsModule) {
  EXPECT_EQ("valid", Rpc("<m:r xmlns:m='urn:m'><a>1</a></m:r>"));
}

TEST_F(Bind, PrefixedElementsAreFound) {
  EXPECT_EQ("valid", Rpc("<p:r xmlns:p='urn:m'><p:a>1</p:a><p:c><p:b/></p:c></p:r>"));
}

TEST_F(Bind, LeafWithElementInsideIsUnexpectedItself) {
  EXPECT_EQ("9|/m:r/a|Unexpected element: a.|a|-", Rpc("<r xmlns='urn:m'><a><q/></a></r>"));
  EXPECT_EQ("9|/m:r/ll[.='']|Unexpected element: ll.|ll|-",
            Rpc("<r xmlns='urn:m'><ll><q/></ll></r>"));
}

TEST_F(Bind, ElementAfterTextOfALeafIsUnexpected) {
  EXPECT_EQ("9|/m:r/a/q|Unexpected element: q.|q|-", Rpc("<r xmlns='urn:m'><a>1<q/></a></r>"));
}

TEST_F(Bind, LeafThatBeginsWithCommentOrCdataIsUnexpected) {
  EXPECT_EQ("9|/m:r/a|Unexpected element: a.|a|-", Rpc("<r xmlns='urn:m'><a><!--c-->1</a></r>"));
  EXPECT_EQ("9|/m:r/a|Unexpected element: a.|a|-",
            Rpc("<r xmlns='urn:m'><a><![CDATA[1]]></a></r>"));
}

TEST_F(Bind, LeafRuleHoldsInNotificationsToo) {
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a><!--c-->1</a></n>"));
}

TEST_F(Bind, ContentOfAnyxmlAndAnydataIsNeitherBoundNorChecked) {
  Document doc("<r xmlns='urn:m'><ax><a>1</a><q xmlns='urn:q'/></ax><ad><q/></ad></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_OK, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  EXPECT_EQ(3u, doc.BoundElements());
  EXPECT_EQ(nullptr, doc.Find("a")->_private);
  EXPECT_EQ(nullptr, doc.Find("q")->_private);
}

TEST_F(Bind, CommentsAndInstructionsBetweenElementsArePassedOver) {
  EXPECT_EQ("valid", Rpc("<!--x--><r xmlns='urn:m'><!--x--><a>1</a><?pi x?><c><!--x--></c></r>"));
}

TEST_F(Bind, RpcIsUnexpectedAsNotification) {
  Document doc("<r xmlns='urn:m'/>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_NOTIF, nullptr, nullptr);
  EXPECT_EQ(QM_INVALID, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  EXPECT_EQ("9|/m:r|Unexpected element: r.|r|-", message_fixture::Describe(aux.err));
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<r xmlns='urn:m'/>"));
}

TEST_F(Bind, NotificationAsRequestLacksAnAction) {
  EXPECT_EQ("9|/|Unexpected element: action.|action|-", Rpc("<n xmlns='urn:m'/>"));
}

TEST_F(Bind, DataOfASwitchedOffNodeIsAccepted) {
  Schema schema;
  schema.Load("f", R"(<feature name="x"/>
    <rpc name="r"><input><leaf name="a"><if-feature name="x"/><type name="int8"/></leaf></input></rpc>)");
  EXPECT_EQ("valid", ValidateRpc(schema.ctx(), "<r xmlns='urn:f'><a>1</a></r>"));
  EXPECT_EQ("8|/f:r/a|a has invalid value x.|a|-",
            ValidateRpc(schema.ctx(), "<r xmlns='urn:f'><a>x</a></r>"));
}

// Of several faults of one element the first that is looked for is reported.
TEST(BindChecks, RunInTheirOrder) {
  Schema schema;
  schema.Load("k", R"(<rpc name="r"><input>
    <choice name="ch"><leaf name="a"><type name="int8"/></leaf>
      <leaf name="b"><type name="string"/></leaf></choice>
    <leaf name="z"><type name="string"/></leaf></input></rpc>)");
  struct Row {
    const char* content;
    const char* verdict;
  };
  const Row rows[] = {
      // A second instance with a bad value, out of order.
      {"<a>1</a><z/><a>x</a>", "9|/k:r/a|Unexpected element: a.|a|-"},
      // A bad value out of order.
      {"<z/><a>x</a>", "8|/k:r/a|a has invalid value x.|a|-"},
      // Out of order, and in another case.
      {"<b/><a>1</a>", "7|/k:r/a|Invalid element order between a and b.|a|-"},
      // A bad value with an element inside, which is looked at last.
      {"<a><q/></a>", "8|/k:r/a|a has invalid value .|a|-"},
      // A second case with an element inside.
      {"<a>1</a><b><q/></b>",
       "8|/k:r/b|Data for more than one case branch of a choice is present.|b|-"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.content);
    const std::string text = std::string("<r xmlns='urn:k'>") + row.content + "</r>";
    EXPECT_EQ(row.verdict, ValidateRpc(schema.ctx(), text));
  }
}

constexpr char kMounts[] = R"(
  <import module="ietf-yang-schema-mount"><prefix value="ysm"/></import>
  <rpc name="r"><input>
    <container name="c"><ysm:mount-point label="l"/>
      <leaf name="d"><type name="string"/><default value="1"/></leaf>
      <leaf name="m"><type name="string"/><mandatory value="true"/></leaf>
    </container>
    <list name="li"><key value="k"/><ysm:mount-point label="l"/>
      <leaf name="k"><type name="int8"/></leaf>
      <leaf name="m"><type name="string"/><mandatory value="true"/></leaf>
    </list></input></rpc>
  <container name="data"><container name="c"><ysm:mount-point label="l"/></container>
    <action name="act"><input><leaf name="m"><type name="string"/><mandatory value="true"/></leaf></input></action>
  </container>)";

class MountPoint : public testing::Test {
 protected:
  void SetUp() override {
    std::string body = kMounts;
    const std::string module = yin_text::Module("m", body);
    std::string text = module;
    const std::string mark = " xmlns:m=";
    text.insert(text.find(mark),
                " xmlns:ysm=\"urn:ietf:params:xml:ns:yang:ietf-yang-schema-mount\"");
    ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(schema_.ctx(), text.c_str()));
  }
  Schema schema_;
};

TEST_F(MountPoint, ContentIsNeitherBoundNorCheckedNorCompleted) {
  Document doc("<r xmlns='urn:m'><c><q/></c><li><k>x</k></li></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_OK, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  EXPECT_EQ(QMD_MODE_RPC | QMD_MODE_MOUNT_POINT, aux.flags);
  EXPECT_EQ(3u, doc.BoundElements());
  EXPECT_EQ("<r xmlns=\"urn:m\"><c><q/></c><li><k>x</k></li></r>", doc.Dump());
}

TEST_F(MountPoint, MissingContainerIsNeitherMadeNorMissed) {
  Document doc("<r xmlns='urn:m'/>");
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", doc.Dump());
}

// The action may be part of the mounted schema.
TEST_F(MountPoint, DataTreeWithMountPointNeedsNoAction) {
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<data xmlns='urn:m'><c><q/></c></data>"));
  EXPECT_EQ("9|/|Unexpected element: action.|action|-",
            ValidateRpc(schema_.ctx(), "<data xmlns='urn:m'/>"));
}

TEST_F(MountPoint, DataTreeWithMountPointAndActionIsOnlyBound) {
  EXPECT_EQ("7|/m:data/act|Missing element: m.|m|-",
            ValidateRpc(schema_.ctx(), "<data xmlns='urn:m'><act/></data>"));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), "<data xmlns='urn:m'><c/><act/></data>"));
}

// A caller's tree may be deeper than any parsed text, and is walked in loops.
TEST(BindDepth, DeepForeignTreeIsClearedWithoutRecursion) {
  xmlDoc* doc = xmlNewDoc(nullptr);
  xmlNode* root = xmlNewDocNode(doc, nullptr, reinterpret_cast<const xmlChar*>("r"), nullptr);
  xmlDocSetRootElement(doc, root);
  xmlNode* node = root;
  for (int i = 0; i < 200000; ++i) {
    xmlNode* child = xmlNewDocNode(doc, nullptr, reinterpret_cast<const xmlChar*>("r"), nullptr);
    child->_private = doc;
    node->children = child;
    node->last = child;
    child->parent = node;
    node = child;
  }
  QMD_PAS_ClearXmlTreePrivate(root);
  EXPECT_EQ(nullptr, node->_private);
  xmlFreeDoc(doc);
}

// An entity reference has the declaration as child, which leads out of the tree.
TEST(BindEntities, ReferencesAreNotEntered) {
  Document doc("<!DOCTYPE r [<!ENTITY e '<q/>'>]><r xmlns='urn:m'>&e;<a/></r>");
  QMD_PAS_ClearXmlTreePrivate(doc.root());
  Schema schema;
  schema.Load("m", kRpc);
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_OK, QMD_PAS_ValidateDataTree(&aux, doc.root())) << "what the entry points refuse";
  EXPECT_EQ(2u, doc.BoundElements());
  QMD_PAS_ClearXmlTreePrivate(doc.root());
  EXPECT_EQ(0u, doc.BoundElements());
}

}  // namespace
