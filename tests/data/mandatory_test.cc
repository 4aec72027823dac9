// SPDX-License-Identifier: BSD-3-Clause
#include "data/mandatory.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "data/validate.h"
#include "tests/support/message_fixture.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;
using message_fixture::ValidateNotif;
using message_fixture::ValidateRpc;
using yin_text::Leaf;
using yin_text::Rpc;

constexpr char kMandatory[] = "<mandatory value=\"true\"/>";

std::string Needed(const std::string& name, const std::string& when = "") {
  const std::string condition = when.empty() ? "" : "<when condition=\"" + when + "\"/>";
  return "<leaf name=\"" + name + "\">" + condition + "<type name=\"string\"/>" + kMandatory +
         "</leaf>";
}

class Mandatory : public testing::Test {
 protected:
  // Also checks that the tree is left as it was.
  std::string Check(const std::string& text) {
    Document doc(text);
    const std::string before = doc.Dump();
    const std::string verdict = ValidateRpc(schema_.ctx(), doc);
    EXPECT_EQ(before, doc.Dump());
    return verdict;
  }
  Schema schema_;
};

TEST_F(Mandatory, MissingLeafIsNamedUnderItsParent) {
  schema_.Load("m", Rpc(Needed("a") + Leaf("b")));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a/></r>"));
  EXPECT_EQ("7|/m:r|Missing element: a.|a|-", Check("<r xmlns='urn:m'><b/></r>"));
}

TEST_F(Mandatory, MissingAnydataAndAnyxmlAreReported) {
  schema_.Load("m", Rpc(std::string("<anydata name=\"d\">") + kMandatory +
                        "</anydata><anyxml name=\"x\">" + kMandatory + "</anyxml>"));
  EXPECT_EQ("7|/m:r|Missing element: d.|d|-", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("7|/m:r|Missing element: x.|x|-", Check("<r xmlns='urn:m'><d/></r>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><d/><x/></r>"));
}

TEST_F(Mandatory, LeafWithFalseWhenIsNotMissed) {
  schema_.Load("m", Rpc(Leaf("k") + Needed("a", "../k = '1'")));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><k>2</k></r>"));
  EXPECT_EQ("7|/m:r|Missing element: a.|a|-", Check("<r xmlns='urn:m'><k>1</k></r>"));
}

TEST_F(Mandatory, WhenOfChoiceAndCaseCountsForAMissingLeaf) {
  schema_.Load(
      "m", Rpc(Leaf("k") + "<choice name=\"ch\"><when condition=\"k = '1'\"/><case name=\"x\">" +
               "<when condition=\"k != '2'\"/>" + Leaf("b") + Needed("a") + "</case></choice>"));
  EXPECT_EQ("7|/m:r|Missing element: a.|a|-", Check("<r xmlns='urn:m'><k>1</k><b/></r>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
}

TEST_F(Mandatory, WhenThatCannotBeEvaluatedIsReported) {
  schema_.Load("m", Rpc(Needed("a", "count(.)")));
  EXPECT_EQ("18|/m:r/a|Failed to check when condition of a.|a|-", Check("<r xmlns='urn:m'/>"));
}

TEST_F(Mandatory, WhenOfAMissingContainerThatCannotBeEvaluatedIsReported) {
  schema_.Load("m", Rpc("<container name=\"c\"><when condition=\"count(.)\"/>" + Needed("a") +
                        "</container>"));
  EXPECT_EQ("18|/m:r/c|Failed to check when condition of c.|c|-", Check("<r xmlns='urn:m'/>"));
}

TEST_F(Mandatory, ContainersAreFollowed) {
  schema_.Load("m", Rpc("<container name=\"c\"><container name=\"d\">" + Needed("a") +
                        "</container></container><container name=\"p\"><presence value=\"y\"/>" +
                        Needed("b") + "</container>"));
  EXPECT_EQ("7|/m:r/c/d|Missing element: a.|a|-", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("7|/m:r/c/d|Missing element: a.|a|-", Check("<r xmlns='urn:m'><c/></r>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><c><d><a/></d></c></r>"));
  EXPECT_EQ("7|/m:r/p|Missing element: b.|b|-",
            Check("<r xmlns='urn:m'><c><d><a/></d></c><p/></r>"));
}

TEST_F(Mandatory, MissingContainerWithFalseWhenIsNotFollowed) {
  schema_.Load("m", Rpc(Leaf("k") + "<container name=\"c\"><when condition=\"../k\"/>" +
                        Needed("a") + "</container>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("7|/m:r/c|Missing element: a.|a|-", Check("<r xmlns='urn:m'><k/></r>"));
}

TEST_F(Mandatory, EveryListEntryIsFollowedAndCountsAreNotChecked) {
  schema_.Load(
      "m",
      Rpc("<list name=\"li\"><key value=\"k\"/><min-elements value=\"5\"/>"
          "<max-elements value=\"1\"/>" +
          Leaf("k") + Needed("a") +
          "</list>"
          "<leaf-list name=\"ll\"><type name=\"string\"/><min-elements value=\"1\"/></leaf-list>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><li><k>1</k><a/></li><li><k>2</k><a/></li></r>"));
  EXPECT_EQ("7|/m:r/li[k='2']|Missing element: a.|a|-",
            Check("<r xmlns='urn:m'><li><k>1</k><a/></li><li><k>2</k></li></r>"));
}

TEST_F(Mandatory, MandatoryChoiceWithoutDataIsReported) {
  schema_.Load("m", Rpc(std::string("<choice name=\"ch\">") + kMandatory + "<case name=\"x\">" +
                        Leaf("a") + "</case>" + Leaf("b") + "</choice>"));
  EXPECT_EQ("16|/m:r|Mandatory choice ch missing element.|r|missing-choice",
            Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a/></r>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><b/></r>"));
}

TEST_F(Mandatory, MandatoryChoiceIsReportedWhateverItsWhen) {
  schema_.Load("m", Rpc(std::string("<choice name=\"ch\"><when condition=\"nothing\"/>") +
                        kMandatory + Leaf("b") + "</choice>"));
  EXPECT_EQ("16|/m:r|Mandatory choice ch missing element.|r|missing-choice",
            Check("<r xmlns='urn:m'/>"));
}

TEST_F(Mandatory, OnlyTheCaseWithDataIsChecked) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><case name=\"x\">" + Leaf("a") + Needed("b") +
                        "</case><case name=\"y\">" + Leaf("c") + Needed("d") + "</case></choice>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("7|/m:r|Missing element: b.|b|-", Check("<r xmlns='urn:m'><a/></r>"));
  EXPECT_EQ("7|/m:r|Missing element: d.|d|-", Check("<r xmlns='urn:m'><c/></r>"));
}

TEST_F(Mandatory, DefaultCaseWithoutDataIsChecked) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><default value=\"x\"/><case name=\"x\">" +
                        Needed("a") + "</case><case name=\"y\">" + Leaf("c") + "</case></choice>"));
  EXPECT_EQ("7|/m:r|Missing element: a.|a|-", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><c/></r>"));
}

TEST_F(Mandatory, SwitchedOffNodesAreNotMissed) {
  schema_.Load(
      "m", std::string("<feature name=\"f\"/>") +
               Rpc(std::string("<leaf name=\"a\"><if-feature name=\"f\"/><type name=\"string\"/>") +
                   kMandatory + "</leaf>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
}

TEST_F(Mandatory, OutputIsNeverChecked) {
  schema_.Load("m", "<rpc name=\"r\"><output>" + Needed("o") + "</output></rpc>");
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'/>"));
}

TEST_F(Mandatory, NotificationsAreChecked) {
  schema_.Load("m", "<notification name=\"n\">" + Needed("a") + "</notification>");
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'/>"));
  EXPECT_EQ("<n xmlns=\"urn:m\"><a/></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/></n>"));
}

// A leaf that a false when or must took away is missed afterwards.
TEST_F(Mandatory, RemovedLeafOfANotificationIsMissed) {
  schema_.Load(
      "m", std::string("<notification name=\"n\"><leaf name=\"a\"><must condition=\"../k\"/>") +
               "<type name=\"string\"/>" + kMandatory + "</leaf>" + Leaf("k") + "</notification>");
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/></n>"));
  EXPECT_EQ("<n xmlns=\"urn:m\"><a/><k/></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/><k/></n>"));
}

TEST_F(Mandatory, AugmentedLeafIsMissed) {
  schema_.Load("m", Rpc(Leaf("a")));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\">" +
                   Needed("x") + "</augment>");
  EXPECT_EQ("7|/m:r|Missing element: x.|x|-", Check("<r xmlns='urn:m'/>"));
  EXPECT_EQ("7|/m:r|Missing element: x.|x|-", Check("<p:r xmlns:p='urn:m'><p:a/></p:r>"));
}

class MandatoryArguments : public testing::Test {
 protected:
  void SetUp() override {
    QMD_PAS_InitCheckAux(&aux_, nullptr, 0, nullptr, nullptr);
    module_.name = "m";
    schemaNode_.module = &module_;
    schemaNode_.kind = QMS_NODE_NOTIFICATION;
  }
  Document doc_{"<n/>"};
  QmCheckAux aux_ = {};
  QmsModule module_ = {};
  QmsNode schemaNode_ = {};
};

TEST_F(MandatoryArguments, RunMustBeOneOfARequestOrNotification) {
  doc_.root()->_private = &schemaNode_;
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckTreeMandatory(&aux_, doc_.root()));
  aux_.flags = QMD_MODE_RPC;
  EXPECT_EQ(QM_OK, QM_PAS_CheckTreeMandatory(&aux_, doc_.root()));
  aux_.flags = QMD_MODE_NOTIF;
  EXPECT_EQ(QM_OK, QM_PAS_CheckTreeMandatory(&aux_, doc_.root()));
}

TEST_F(MandatoryArguments, NullIsRefused) {
  aux_.flags = QMD_MODE_RPC;
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckTreeMandatory(nullptr, doc_.root()));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckTreeMandatory(&aux_, nullptr));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckTreeMandatory(&aux_, doc_.root())) << "unbound";
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckSubtreeMandatory(nullptr, doc_.root(), &schemaNode_));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckSubtreeMandatory(&aux_, nullptr, &schemaNode_));
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckSubtreeMandatory(&aux_, doc_.root(), nullptr));
}

TEST_F(MandatoryArguments, KindsWithoutCheckPass) {
  for (uint32_t kind : {QMS_NODE_NONE, QMS_NODE_LEAF_LIST, QMS_NODE_OUTPUT, QMS_NODE_AUGMENT}) {
    schemaNode_.kind = kind;
    schemaNode_.flags = QMS_NODE_MANDATORY_TRUE;
    EXPECT_EQ(QM_OK, QM_PAS_CheckSubtreeMandatory(&aux_, doc_.root(), &schemaNode_)) << kind;
  }
}

// The element cannot be made, here because its module has no namespace.
TEST_F(MandatoryArguments, ElementThatCannotBeMadeGives22) {
  schemaNode_.kind = QMS_NODE_LEAF;
  schemaNode_.name = "a";
  schemaNode_.flags = QMS_NODE_MANDATORY_TRUE;
  EXPECT_EQ(QM_INVALID, QM_PAS_CheckSubtreeMandatory(&aux_, doc_.root(), &schemaNode_));
  EXPECT_EQ(nullptr, aux_.err);
  EXPECT_EQ("<n/>", doc_.Dump());
}

}  // namespace
