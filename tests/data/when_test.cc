// SPDX-License-Identifier: BSD-3-Clause
#include "data/when.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "data/add_defaults.h"
#include "data/default_list.h"
#include "data/validate.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateNotif;
using message_fixture::ValidateRpc;
using testing::ElementsAre;
using yin_text::Leaf;
using yin_text::Rpc;

std::string When(const std::string& condition) {
  return "<when condition=\"" + condition + "\"/>";
}

class WhenPhase : public testing::Test {
 protected:
  std::string Check(const std::string& text) { return ValidateRpc(schema_.ctx(), text); }
  std::string Complete(const std::string& text) {
    Document doc(text);
    added_.clear();
    EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc, &added_));
    return doc.Dump();
  }
  Schema schema_;
  std::vector<std::string> added_;
};

TEST_F(WhenPhase, SuppliedLeafWithFalseWhenIsRefused) {
  schema_.Load("m", Rpc(Leaf("a") + Leaf("b", When("../a = '1'"))));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a>1</a><b/></r>"));
  EXPECT_EQ("9|/m:r/b|b is not satisfied when condition.|b|-",
            Check("<r xmlns='urn:m'><a>2</a><b/></r>"));
}

TEST_F(WhenPhase, StatusOfARefusedNodeIs28928) {
  schema_.Load("m", Rpc(Leaf("b", When("../a"))));
  Document doc("<r xmlns='urn:m'><b/></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_XPATH_FALSE, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  QM_FreeErrNode(aux.err);
}

TEST_F(WhenPhase, ConditionThatCannotBeEvaluatedIsReported) {
  schema_.Load("m", Rpc(Leaf("b", When("count(../a) &gt; 0"))));
  EXPECT_EQ("18|/m:r/b|Failed to check when condition of b.|b|-",
            Check("<r xmlns='urn:m'><b/></r>"));
  Document doc("<r xmlns='urn:m'><b/></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_XPATH_UNKNOWN_FUNCTION, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  QM_FreeErrNode(aux.err);
}

TEST_F(WhenPhase, ConditionOfChoiceAndCaseSpeaksOfTheParent) {
  schema_.Load("m", Rpc(Leaf("a") + "<choice name=\"ch\">" + When("a = '1'") + "<case name=\"x\">" +
                        When("a != '2'") + Leaf("b") + "</case></choice>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a>1</a><b/></r>"));
  EXPECT_EQ("9|/m:r/b|b is not satisfied when condition.|b|-",
            Check("<r xmlns='urn:m'><a>3</a><b/></r>"));
  EXPECT_EQ("9|/m:r/b|b is not satisfied when condition.|b|-",
            Check("<r xmlns='urn:m'><a>2</a><b/></r>"));
}

TEST_F(WhenPhase, DefaultLeafWithFalseWhenIsRemovedWithItsEmptyContainers) {
  schema_.Load("m", Rpc(Leaf("a") + "<container name=\"c\"><container name=\"d\">" +
                        Leaf("x", When("../../../a = '1'") + "<default value=\"1\"/>") +
                        "</container></container>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_THAT(added_, ElementsAre());
  EXPECT_EQ("<r xmlns=\"urn:m\"><a>1</a><c><d><x>1</x></d></c></r>",
            Complete("<r xmlns='urn:m'><a>1</a></r>"));
  EXPECT_THAT(added_, ElementsAre("c"));
}

TEST_F(WhenPhase, ContainerThatKeepsAnotherDefaultStays) {
  schema_.Load(
      "m", Rpc("<container name=\"c\">" + Leaf("x", When("../nothing") + "<default value=\"1\"/>") +
               Leaf("y", "<default value=\"2\"/>") +
               Leaf("z", When("../nothing") + "<default value=\"3\"/>") + "</container>" +
               Leaf("after", "<default value=\"4\"/>")));
  EXPECT_EQ("<r xmlns=\"urn:m\"><c><y>2</y></c><after>4</after></r>",
            Complete("<r xmlns='urn:m'/>"));
  EXPECT_THAT(added_, ElementsAre("after", "c"));
}

TEST_F(WhenPhase, SuppliedContainerLeftEmptyStays) {
  schema_.Load("m", Rpc("<container name=\"c\">" +
                        Leaf("x", When("../nothing") + "<default value=\"1\"/>") + "</container>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><c/></r>", Complete("<r xmlns='urn:m'><c/></r>"));
  EXPECT_THAT(added_, ElementsAre());
}

TEST_F(WhenPhase, DefaultContainerWithFalseWhenGoesAsAWhole) {
  schema_.Load(
      "m", Rpc("<container name=\"c\">" + When("../nothing") + Leaf("x", "<default value=\"1\"/>") +
               "</container>" + Leaf("y", "<default value=\"2\"/>")));
  EXPECT_EQ("<r xmlns=\"urn:m\"><y>2</y></r>", Complete("<r xmlns='urn:m'/>"));
  EXPECT_THAT(added_, ElementsAre("y"));
}

// In a text of a parser that keeps line numbers an element may stand on line 256.
TEST_F(WhenPhase, SuppliedElementOnLine256IsRemovedWithoutRecord) {
  schema_.Load("m", Rpc(Leaf("a", When("../nothing")) + "<container name=\"c\">" +
                        When("../nothing") + "<container name=\"k\">" +
                        Leaf("x", "<default value=\"1\"/>") + "</container></container>"));
  Document doc("<r xmlns='urn:m'><a/><c><k/></c></r>");
  doc.Find("a")->line = 256;
  doc.Find("c")->line = 256;
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc, &added_));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", doc.Dump());
  EXPECT_THAT(added_, ElementsAre());
}

TEST_F(WhenPhase, RootOnLine256IsNeverRemoved) {
  schema_.Load("m", Rpc(Leaf("a", When("../nothing") + "<default value=\"1\"/>")));
  Document doc("<r xmlns='urn:m'/>");
  doc.root()->line = 256;
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  EXPECT_EQ("<r xmlns=\"urn:m\"/>", doc.Dump());
}

// Defaults under an element that reads as added are not listed: they are neither
// reported nor removed after a failure.
TEST_F(WhenPhase, DefaultUnderLine256IsNotListed) {
  schema_.Load("m", Rpc("<container name=\"c\">" + Leaf("x", "<default value=\"1\"/>") +
                        "</container>" + Leaf("z", When("../nothing"))));
  Document doc("<r xmlns='urn:m'><c/></r>");
  doc.Find("c")->line = 256;
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc, &added_));
  EXPECT_THAT(added_, ElementsAre());
  Document failing("<r xmlns='urn:m'><c/><z/></r>");
  failing.Find("c")->line = 256;
  EXPECT_EQ("9|/m:r/z|z is not satisfied when condition.|z|-", ValidateRpc(schema_.ctx(), failing));
  EXPECT_EQ("<r xmlns=\"urn:m\"><c><x>1</x></c><z/></r>", failing.Dump());
}

TEST_F(WhenPhase, EntryPassesOrFailsOnItsOwn) {
  schema_.Load("m", Rpc("<list name=\"li\"><key value=\"k\"/>" + Leaf("k") +
                        Leaf("x", When("../k = '2'") + "<default value=\"1\"/>") + "</list>"));
  EXPECT_EQ("<r xmlns=\"urn:m\"><li><k>1</k></li><li><k>2</k><x>1</x></li></r>",
            Complete("<r xmlns='urn:m'><li><k>1</k></li><li><k>2</k></li></r>"));
}

TEST_F(WhenPhase, NotificationNodesWithFalseWhenDisappear) {
  schema_.Load("m", "<notification name=\"n\">" + Leaf("a", When("../k = '1'")) +
                        "<container name=\"c\">" + When("../k = '1'") + Leaf("b") + "</container>" +
                        Leaf("k") + Leaf("z", When("../k = '1'")) + "</notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"><k>2</k></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/><c><b/></c><k>2</k><z/></n>"));
  EXPECT_EQ("<n xmlns=\"urn:m\"><a/><c><b/></c><k>1</k><z/></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/><c><b/></c><k>1</k><z/></n>"));
}

// The parent goes first; what hangs below it is not looked at any more.
TEST_F(WhenPhase, NodesBelowARemovedOneAreNotEvaluated) {
  schema_.Load("m", "<notification name=\"n\"><container name=\"c\">" + When("../k") +
                        Leaf("b", When("count(x)")) + "</container>" + Leaf("k") +
                        "</notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"/>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><c><b/></c></n>"));
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><c><b/></c><k/></n>"));
}

TEST_F(WhenPhase, FailedConditionFailsANotification) {
  schema_.Load("m", "<notification name=\"n\">" + Leaf("a", When("a + 1 = 2")) + "</notification>");
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/></n>"));
}

// Without a parent there is no node for "/" to stand on.
TEST_F(WhenPhase, ElementWithoutParentFailsItsConditions) {
  schema_.Load("m", Rpc(Leaf("a", When("."))));
  Document doc("<r xmlns='urn:m'><a/></r>");
  xmlNode* root = doc.root();
  EXPECT_EQ("valid", ValidateRpc(schema_.ctx(), doc));
  xmlUnlinkNode(root);
  EXPECT_EQ("18|/m:r/a|Failed to check when condition of a.|a|-",
            message_fixture::Describe(QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT,
                                                                 root, nullptr, nullptr)));
  xmlDocSetRootElement(doc.doc(), root);
}

TEST(WhenKinds, OperationsAlwaysPass) {
  for (uint32_t kind = 0; kind < QMS_NODE_KIND_COUNT; ++kind) {
    const bool passes = kind == QMS_NODE_ACTION || kind == QMS_NODE_RPC ||
                        kind == QMS_NODE_NOTIFICATION || kind == QMS_NODE_INPUT ||
                        kind == QMS_NODE_OUTPUT;
    EXPECT_EQ(passes ? 0u : 1u, QMD_MDL_IsNeedCheckWhenCond(kind)) << kind;
  }
}

}  // namespace
