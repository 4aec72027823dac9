// SPDX-License-Identifier: BSD-3-Clause
#include "data/add_defaults.h"
#include "data/default_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/xml_tree.h"
#include "data/validate.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateRpc;
using testing::ElementsAre;
using yin_text::Leaf;
using yin_text::Rpc;

std::string Default(const std::string& name, const std::string& value) {
  return "<leaf name=\"" + name + "\"><type name=\"string\"/><default value=\"" + value +
         "\"/></leaf>";
}

class Defaults : public testing::Test {
 protected:
  // The tree after a valid request, which must also be valid a second time.
  std::string Complete(const std::string& text) {
    Document doc(text);
    added_.clear();
    EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc, &added_));
    EXPECT_EQ(0u, doc.BoundElements());
    const std::string dump = doc.Dump();
    std::vector<std::string> again;
    EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc, &again));
    EXPECT_THAT(again, ElementsAre()) << "the second run added something";
    EXPECT_EQ(dump, doc.Dump());
    EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), dump));
    return dump;
  }
  Schema schema_;
  std::vector<std::string> added_;
};

TEST_F(Defaults, OptionalLeafGainsItsDefault) {
  schema_.Load(
      "m", Rpc(Default("a", "1") + Leaf("b") +
               "<leaf-list name=\"ll\"><type name=\"string\"/><default value=\"x\"/></leaf-list>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a></r>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_THAT(added_, ElementsAre("a"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>2</a></r>", Complete("<r xmlns='urn:m'><a>2</a></r>"));
  EXPECT_THAT(added_, ElementsAre());
}

TEST_F(Defaults, MarkupInADefaultIsText) {
  schema_.Load("m", Rpc(Default("a", "x&amp;&lt;y/&gt;&amp;amp;")));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>x&amp;&lt;y/&gt;&amp;amp;</a></r>",
            Complete("<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, EmptyDefaultIsAValue) {
  schema_.Load("m", Rpc(Default("a", "")));
  Document doc("<r xmlns='urn:m'/>");
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  ASSERT_NE(nullptr, doc.Find("a")->children);
  EXPECT_STREQ("", QM_XML_GetElemNodeContent(doc.Find("a")));
}

TEST_F(Defaults, DefaultOfTheTypedefIsTaken) {
  schema_.Load("m", "<typedef name=\"t\"><type name=\"int8\"/><default value=\"7\"/></typedef>" +
                        Rpc("<leaf name=\"a\"><type name=\"t\"/></leaf>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>7</a></r>", Complete("<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, MandatoryLeafGainsNothing) {
  schema_.Load("m",
               "<typedef name=\"t\"><type name=\"int8\"/><default value=\"7\"/></typedef>" +
                   Rpc("<leaf name=\"a\"><type name=\"t\"/><mandatory value=\"true\"/></leaf>"));
  EXPECT_EQ("7|/m:r|Missing element: a.|a|-", ValidateRpc(schema_.ctx(), "<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, SwitchedOffLeafGainsNothing) {
  schema_.Load("m", "<feature name=\"f\"/>" +
                        Rpc("<leaf name=\"a\"><if-feature name=\"f\"/><type name=\"string\"/>"
                            "<default value=\"1\"/></leaf>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete("<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, ContainersAreMadeOnlyForDefaultsBelow) {
  schema_.Load("m",
               Rpc("<container name=\"empty\"/>"
                   "<container name=\"plain\">" +
                   Leaf("x") +
                   "</container>"
                   "<container name=\"p\"><presence value=\"y\"/>" +
                   Default("x", "1") +
                   "</container>"
                   "<container name=\"c\"><container name=\"d\">" +
                   Default("x", "1") + Default("y", "2") + "</container><container name=\"e\">" +
                   Leaf("z") + "</container></container>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><c><d><x>1</x><y>2</y></d></c></r>",
            Complete("<r xmlns='urn:m'/>"));
  EXPECT_THAT(added_, ElementsAre("c"));
}

TEST_F(Defaults, ExistingContainersAreCompletedInside) {
  schema_.Load("m", Rpc("<container name=\"p\"><presence value=\"y\"/>" + Default("x", "1") +
                        "</container><container name=\"c\">" + Default("x", "1") + Leaf("y") +
                        "</container>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><p><x>1</x></p><c><x>1</x><y/></c></r>",
            Complete("<r xmlns='urn:m'><p/><c><y/></c></r>"));
  EXPECT_THAT(added_, ElementsAre("x", "x"));
}

TEST_F(Defaults, ListEntriesAreCompletedAndNeverMade) {
  schema_.Load(
      "m", Rpc("<list name=\"li\"><key value=\"k\"/>" + Leaf("k") + Default("x", "1") + "</list>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><li><k>1</k><x>1</x></li><li><k>2</k><x>5</x></li></r>",
            Complete("<r xmlns='urn:m'><li><k>1</k></li><li><k>2</k><x>5</x></li></r>"));
}

TEST_F(Defaults, DefaultCaseIsCompletedOnlyWithoutData) {
  schema_.Load(
      "m", Rpc("<choice name=\"ch\"><default value=\"d\"/><case name=\"d\">" + Default("x", "1") +
               "</case><case name=\"o\">" + Leaf("y") + Default("z", "2") + "</case></choice>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><x>1</x></r>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><y/><z>2</z></r>", Complete("<r xmlns='urn:m'><y/></r>"));
}

TEST_F(Defaults, ShorthandChildCanBeTheDefaultCase) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><default value=\"x\"/>" + Default("x", "1") +
                        Leaf("y") + "</choice>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><x>1</x></r>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><y/></r>", Complete("<r xmlns='urn:m'><y/></r>"));
}

TEST_F(Defaults, ChoiceWithoutDefaultCaseGainsNothing) {
  schema_.Load(
      "m", Rpc("<choice name=\"ch\"><case name=\"d\">" + Default("x", "1") + "</case></choice>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete("<r xmlns='urn:m'/>"));
}

// Input is ordered: a default that stood last would make the tree invalid.
TEST_F(Defaults, DefaultStandsWhereTheSchemaHasIt) {
  schema_.Load("m", Rpc(Default("a", "1") + Leaf("b") + Default("c", "2") +
                        "<container name=\"d\">" + Default("x", "1") + "</container>" + Leaf("e")));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><b/><c>2</c><d><x>1</x></d><e/></r>",
            Complete("<r xmlns='urn:m'><b/><e/></r>"));
}

// The entries of a list stand in a run before the new element; what stands behind
// it in the schema comes behind it in the message, too.
TEST_F(Defaults, DefaultStandsBehindARunAndBeforeWhatFollows) {
  schema_.Load("k", Rpc("<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>" +
                        Default("d", "v") + Leaf("z")));
  const Document doc("<r xmlns='urn:k'><ll>1</ll><ll>2</ll><ll>3</ll><z/></r>");
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ("<r xmlns=\"urn:k\"><ll>1</ll><ll>2</ll><ll>3</ll><d>v</d><z/></r>", doc.Dump());
}

TEST_F(Defaults, AugmentedDefaultDeclaresItsNamespace) {
  schema_.Load("m", Rpc(Leaf("a") + "<container name=\"c\">" + Leaf("b") + "</container>"));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input/m:c\"><container name=\"d\">" +
                   Default("x", "1") + "</container></augment>");
  EXPECT_EQ("<r xmlns=\"urn:m\"><a/><c><d xmlns=\"urn:k\"><x>1</x></d></c></r>",
            Complete("<r xmlns='urn:m'><a/></r>"));
  EXPECT_EQ("<p:r xmlns:p=\"urn:m\"><p:c><d xmlns=\"urn:k\"><x>1</x></d></p:c></p:r>",
            Complete("<p:r xmlns:p='urn:m'/>"));
}

// The name alone decides whether something is there.
TEST_F(Defaults, NamesakeOfAnotherModuleCountsAsExisting) {
  schema_.Load(
      "m", Rpc("<container name=\"c\">" + Default("x", "1") + "</container>" + Default("y", "1")));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\"><container name=\"c\"/>" +
                   Leaf("y") + "</augment>");
  EXPECT_EQ("<r xmlns=\"urn:m\"><c xmlns=\"urn:k\"/><y xmlns=\"urn:k\"/></r>",
            Complete("<r xmlns='urn:m'><c xmlns='urn:k'/><y xmlns='urn:k'/></r>"));
}

TEST_F(Defaults, TextNodesDoNotStandForALeafNamedText) {
  schema_.Load("m", Rpc(Leaf("a") + Default("text", "1") + Default("comment", "2")));
  Document doc("<r xmlns='urn:m'><!--x--><a/></r>");
  xmlNode* blank = xmlNewDocText(doc.doc(), reinterpret_cast<const xmlChar*>(" "));
  ASSERT_NE(nullptr, xmlAddChild(doc.root(), blank));
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ("<r xmlns=\"urn:m\"><!--x--><a/> <text>1</text><comment>2</comment></r>", doc.Dump());
}

TEST_F(Defaults, IdentityDefaultDeclaresItsPrefix) {
  schema_.Load("m",
               "<identity name=\"base\"/><identity name=\"d\"><base name=\"base\"/></identity>" +
                   Rpc("<leaf name=\"a\"><type name=\"identityref\"><base name=\"base\"/></type>"
                       "<default value=\"d\"/>"
                       "<must condition=\"derived-from(., 'm:base')\"/></leaf>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a xmlns:m=\"urn:m\">m:d</a></r>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_EQ("<m:r xmlns:m=\"urn:m\"><m:a>m:d</m:a></m:r>", Complete("<m:r xmlns:m='urn:m'/>"));
}

TEST_F(Defaults, CallbackSeesTheTopmostLatestFirst) {
  schema_.Load("m", Rpc(Default("a", "1") + "<container name=\"c\">" + Default("x", "1") +
                        "</container>" + Default("b", "1")));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><c><x>1</x></c><b>1</b></r>",
            Complete("<r xmlns='urn:m'/>"));
  EXPECT_THAT(added_, ElementsAre("b", "c", "a"));
}

TEST_F(Defaults, MarksAreClearedOnKeptNodes) {
  schema_.Load("m", Rpc("<container name=\"c\">" + Default("x", "1") + "</container>"));
  Document doc("<r xmlns='urn:m'/>");
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ(0, doc.Find("c")->line);
  EXPECT_EQ(0, doc.Find("x")->line);
}

TEST_F(Defaults, FailedRunLeavesTheTreeAsItWas) {
  schema_.Load("m", Rpc(Default("a", "1") + "<container name=\"c\">" + Default("x", "1") +
                        "</container><leaf name=\"z\"><type name=\"string\"/>"
                        "<mandatory value=\"true\"/></leaf>"));
  Document doc("<r xmlns='urn:m'><!--x--></r>");
  EXPECT_EQ("7|/m:r|Missing element: z.|z|-", ValidateRpc(schema_.ctx(), doc, &added_));
  EXPECT_EQ("<r xmlns=\"urn:m\"><!--x--></r>", doc.Dump());
  EXPECT_THAT(added_, ElementsAre());
  EXPECT_EQ(0u, doc.BoundElements());
}

TEST_F(Defaults, OutputIsNotCompleted) {
  schema_.Load("m", "<rpc name=\"r\"><input>" + Leaf("a") + "</input><output>" + Default("o", "1") +
                        "</output></rpc>");
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete("<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, ActionInputIsCompletedAndNothingAroundIt) {
  schema_.Load("m", "<container name=\"t\">" + Default("out", "1") +
                        "<action name=\"act\"><input>" + Default("in", "1") +
                        "</input></action></container>");
  EXPECT_EQ("<t xmlns=\"urn:m\"><act><in>1</in></act></t>",
            Complete("<t xmlns='urn:m'><act/></t>"));
}

// No action belongs into the input of an rpc (RFC 7950 section 7.15), but a model may
// have one there. Its defaults would stand where a second validation refuses them.
TEST_F(Defaults, AnActionInTheInputOfAnRpcAddsNothing) {
  const std::string action =
      "<action name=\"act\"><input>" + Default("in", "1") + "</input></action>";
  schema_.Load("m", Rpc(Default("a", "1") + "<container name=\"c\">" + action +
                        "</container><container name=\"d\">" + Default("x", "2") + action +
                        "</container><list name=\"l\">" + action +
                        "</list><choice name=\"ch\"><default value=\"s\"/><case name=\"s\">" +
                        action + "</case></choice>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><d><x>2</x></d></r>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><c/><d><x>2</x></d><l/></r>",
            Complete("<r xmlns='urn:m'><c/><l/></r>"));
}

TEST_F(Defaults, AnActionThatAnAugmentPutsIntoAnInputAddsNothing) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><default value=\"act\"/><leaf name=\"s\">"
                        "<type name=\"string\"/></leaf></choice>"));
  const std::string action =
      "<action name=\"act\"><input>" + Default("in", "1") + "</input></action>";
  schema_.Load("n",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\">" +
                   action +
                   "</augment>"
                   "<augment target-node=\"/m:r/m:input/m:ch\">" +
                   action + "</augment>");
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete("<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, AnActionInAMissingContainerOfAWideInputMakesNothing) {
  std::string leaves;
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    const std::string name = "l" + std::to_string(i);
    leaves += Default(name, "d");
    expected += "<" + name + ">d</" + name + ">";
  }
  schema_.Load("m", Rpc(leaves + "<container name=\"c\"><action name=\"act\"><input>" +
                        Default("in", "1") + "</input></action></container>"));
  EXPECT_EQ("<r xmlns=\"urn:m\">" + expected + "</r>", Complete("<r xmlns='urn:m'/>"));
}

TEST_F(Defaults, AnActionIsCompletedByItsOwnFunctionWhereverItStands) {
  schema_.Load("m", Rpc("<container name=\"c\"><action name=\"act\"><input>" + Default("in", "1") +
                        "</input></action></container>"));
  QmsNode* container = QM_CTX_GetTargetNode(schema_.ctx(), "/m:r/input/c", nullptr);
  ASSERT_NE(nullptr, container);
  QmsNode* action = container->firstChild;
  ASSERT_EQ(static_cast<uint32_t>(QMS_NODE_ACTION), action->kind);
  for (const auto complete : {&QMD_PAS_CompleteDataTreeForRpc, &QMD_PAS_CompleteSubTree}) {
    Document doc("<c xmlns='urn:m'/>");
    doc.root()->_private = container;
    QmCheckAux aux = {};
    QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
    uint32_t added = 0;
    EXPECT_EQ(QM_OK, complete(&aux, doc.root(), action, &added));
    EXPECT_EQ(1u, added);
    QMD_PAS_ClearDefaultNodeList(&aux, 1);
    EXPECT_EQ("<c xmlns=\"urn:m\"><in>1</in></c>", doc.Dump());
  }
}

TEST_F(Defaults, NotificationsAreNotCompleted) {
  schema_.Load("m", "<notification name=\"n\">" + Default("a", "1") + "</notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"/>",
            message_fixture::ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'/>"));
}

class CompleteTree : public testing::Test {
 protected:
  void SetUp() override {
    QMD_PAS_InitCheckAux(&aux_, nullptr, QMD_MODE_RPC, nullptr, nullptr);
    doc_.root()->_private = &schemaNode_;
    module_.name = "m";
    schemaNode_.module = &module_;
  }
  Document doc_{"<r><c><d/></c></r>"};
  QmCheckAux aux_ = {};
  QmsModule module_ = {};
  QmsNode schemaNode_ = {};
};

TEST_F(CompleteTree, StartNodeMustBeAnRpcOrAction) {
  schemaNode_.kind = QMS_NODE_CONTAINER;
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteTree(&aux_, doc_.root(), QMD_MODE_RPC));
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteTree(&aux_, doc_.Find("c"), QMD_MODE_RPC));
  EXPECT_EQ(QM_OK, QMD_PAS_CompleteTree(&aux_, doc_.root(), QMD_MODE_NOTIF));
  schemaNode_.kind = QMS_NODE_ACTION;
  EXPECT_EQ(QM_OK, QMD_PAS_CompleteTree(&aux_, doc_.root(), QMD_MODE_RPC));
}

TEST_F(CompleteTree, KindsWithoutFunctionAreLeftAloneAndOthersRefused) {
  uint32_t added = 0;
  for (uint32_t kind : {QMS_NODE_NONE, QMS_NODE_LEAF_LIST, QMS_NODE_ANYDATA, QMS_NODE_ANYXML,
                        QMS_NODE_NOTIFICATION, QMS_NODE_OUTPUT, QMS_NODE_AUGMENT}) {
    schemaNode_.kind = kind;
    EXPECT_EQ(QM_OK, QMD_PAS_CompleteSubTree(&aux_, doc_.root(), &schemaNode_, &added)) << kind;
  }
  schemaNode_.kind = QMS_NODE_KIND_COUNT;
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteSubTree(&aux_, doc_.root(), &schemaNode_, &added));
  schemaNode_.kind = QMS_NODE_LEAF;  // without its payload
  EXPECT_EQ(QM_INVALID, QMD_PAS_CompleteSubTree(&aux_, doc_.root(), &schemaNode_, &added));
  EXPECT_EQ(0u, added);
}

}  // namespace
