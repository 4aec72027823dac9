// SPDX-License-Identifier: BSD-3-Clause
#include "data/node_check.h"

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

class NodeCheck : public testing::Test {
 protected:
  std::string Check(const std::string& text) { return ValidateRpc(schema_.ctx(), text); }
  Schema schema_;
};

TEST_F(NodeCheck, SecondInstanceIsReported) {
  schema_.Load("m", Rpc("<container name=\"c\"/>" + Leaf("l") +
                        "<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>"
                        "<list name=\"li\"><key value=\"k\"/>" +
                        Leaf("k") + Leaf("v") + "</list>"));
  EXPECT_EQ("9|/m:r/c|Unexpected element: c.|c|-", Check("<r xmlns='urn:m'><c/><c/></r>"));
  EXPECT_EQ("9|/m:r/l|Unexpected element: l.|l|-", Check("<r xmlns='urn:m'><l/><l/></r>"));
  EXPECT_EQ("9|/m:r/li[k='1']/v|Unexpected element: v.|v|-",
            Check("<r xmlns='urn:m'><li><k>1</k><v/><v/></li></r>"));
}

TEST_F(NodeCheck, EqualListEntriesAndLeafListValuesPass) {
  schema_.Load("m", Rpc("<leaf-list name=\"ll\"><type name=\"string\"/></leaf-list>"
                        "<list name=\"li\"><key value=\"k\"/>" +
                        Leaf("k") + "</list>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><ll>1</ll><ll>1</ll>"
                           "<li><k>1</k></li><li><k>1</k></li></r>"));
}

TEST_F(NodeCheck, SecondInstanceIsReportedInNotificationsToo) {
  schema_.Load("m", "<notification name=\"n\">" + Leaf("l") + "</notification>");
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><l/><l/></n>"));
}

TEST_F(NodeCheck, InvalidValueIsQuoted) {
  schema_.Load("m", Rpc("<leaf name=\"i\"><type name=\"int8\"/></leaf>"
                        "<leaf-list name=\"b\"><type name=\"boolean\"/></leaf-list>"));
  EXPECT_EQ("8|/m:r/i|i has invalid value 128.|i|-", Check("<r xmlns='urn:m'><i>128</i></r>"));
  EXPECT_EQ("8|/m:r/i|i has invalid value .|i|-", Check("<r xmlns='urn:m'><i/></r>"));
  EXPECT_EQ("8|/m:r/b[.='True']|b has invalid value True.|b|-",
            Check("<r xmlns='urn:m'><b>true</b><b>True</b></r>"));
}

TEST_F(NodeCheck, InvalidValueIsCutAfter256Characters) {
  schema_.Load("m", Rpc("<leaf name=\"i\"><type name=\"int8\"/></leaf>"));
  for (const size_t length : {size_t{255}, size_t{256}, size_t{257}, size_t{300}}) {
    SCOPED_TRACE(length);
    const std::string value(length, 'x');
    const std::string quoted = length <= 256 ? value : std::string(253, 'x') + "...";
    EXPECT_EQ("8|/m:r/i|i has invalid value " + quoted + ".|i|-",
              Check("<r xmlns='urn:m'><i>" + value + "</i></r>"));
  }
}

TEST_F(NodeCheck, FormatCharactersInValuesAreText) {
  schema_.Load("m", Rpc("<leaf name=\"i\"><type name=\"int8\"/></leaf>"));
  EXPECT_EQ("8|/m:r/i|i has invalid value %s%n%d.|i|-",
            Check("<r xmlns='urn:m'><i>%s%n%d</i></r>"));
}

TEST_F(NodeCheck, ValuesAreNotCheckedInNotifications) {
  schema_.Load(
      "m", "<notification name=\"n\"><leaf name=\"i\"><type name=\"int8\"/></leaf></notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"><i>x</i></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><i>x</i></n>"));
}

TEST_F(NodeCheck, StatusOfTheValueCheckIsReturned) {
  schema_.Load("m", Rpc("<leaf name=\"i\"><type name=\"boolean\"/></leaf>"));
  Document doc("<r xmlns='urn:m'><i>x</i></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_VALUE_BAD_BOOLEAN, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  QM_FreeErrNode(aux.err);
}

TEST_F(NodeCheck, ReversedInputIsOutOfOrder) {
  schema_.Load("m", Rpc(Leaf("a") + Leaf("b") + Leaf("c")));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a/><b/><c/></r>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a/><c/></r>"));
  EXPECT_EQ("7|/m:r/a|Invalid element order between a and b.|a|-",
            Check("<r xmlns='urn:m'><b/><a/></r>"));
  EXPECT_EQ("7|/m:r/b|Invalid element order between b and c.|b|-",
            Check("<r xmlns='urn:m'><a/><c/><b/></r>"));
}

TEST_F(NodeCheck, CommentBetweenLeavesDoesNotHideTheirOrder) {
  schema_.Load("m", Rpc(Leaf("a") + Leaf("b")));
  EXPECT_EQ("7|/m:r/a|Invalid element order between a and b.|a|-",
            Check("<r xmlns='urn:m'><b/><!--x--><?pi?><a/></r>"));
}

TEST_F(NodeCheck, OrderHoldsInNestedContainersListsAndThroughChoices) {
  schema_.Load("m", Rpc("<container name=\"c\">" + Leaf("a") +
                        "<choice name=\"ch\"><case name=\"x\">" + Leaf("x1") + Leaf("x2") +
                        "</case>" + Leaf("y") + "</choice>" + Leaf("z") + "</container>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><c><a/><x1/><x2/><z/></c></r>"));
  EXPECT_EQ("7|/m:r/c/x1|Invalid element order between x1 and x2.|x1|-",
            Check("<r xmlns='urn:m'><c><x2/><x1/></c></r>"));
  EXPECT_EQ("7|/m:r/c/a|Invalid element order between a and y.|a|-",
            Check("<r xmlns='urn:m'><c><y/><a/></c></r>"));
  EXPECT_EQ("7|/m:r/c/y|Invalid element order between y and z.|y|-",
            Check("<r xmlns='urn:m'><c><z/><y/></c></r>"));
}

TEST_F(NodeCheck, NotificationsHaveNoOrder) {
  schema_.Load("m", "<notification name=\"n\">" + Leaf("a") + Leaf("b") + "</notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"><b/><a/></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><b/><a/></n>"));
}

TEST_F(NodeCheck, NodesOfAnotherModuleAreNotOrdered) {
  schema_.Load("m", Rpc(Leaf("a") + Leaf("b")));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\">" +
                   Leaf("x") + Leaf("y") + "</augment>");
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><x xmlns='urn:k'/><a/><y xmlns='urn:k'/><b/></r>"));
  EXPECT_EQ("7|/m:r/k:x|Invalid element order between x and y.|x|-",
            Check("<r xmlns='urn:m'><y xmlns='urn:k'/><x xmlns='urn:k'/></r>"));
}

TEST_F(NodeCheck, SwitchedOffNodesAreNotOrdered) {
  schema_.Load("m",
               "<feature name=\"f\"/>" +
                   Rpc(Leaf("a") +
                       "<leaf name=\"b\"><if-feature name=\"f\"/><type name=\"string\"/></leaf>" +
                       Leaf("c")));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><b/><a/></r>"));
  EXPECT_EQ("7|/m:r/b|Invalid element order between b and c.|b|-",
            Check("<r xmlns='urn:m'><c/><b/></r>"));
}

TEST_F(NodeCheck, DataOfTwoCasesIsReported) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><case name=\"x\">" + Leaf("x1") + Leaf("x2") +
                        "</case>" + Leaf("y") + "</choice>"));
  constexpr char kText[] = "Data for more than one case branch of a choice is present.";
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><x1/><x2/></r>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><y/></r>"));
  EXPECT_EQ(std::string("8|/m:r/y|") + kText + "|y|-", Check("<r xmlns='urn:m'><x1/><y/></r>"));
  EXPECT_EQ(std::string("8|/m:r/y|") + kText + "|y|-",
            Check("<r xmlns='urn:m'><x1/><x2/><y/></r>"));
}

TEST_F(NodeCheck, NestedChoiceIsComparedByItsBranch) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><case name=\"x\">" + Leaf("x1") +
                        "<choice name=\"in\">" + Leaf("p") + Leaf("q") + "</choice></case>" +
                        "<case name=\"z\">" + Leaf("z1") + "</case></choice>"));
  constexpr char kText[] = "Data for more than one case branch of a choice is present.";
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><x1/><p/></r>"));
  EXPECT_EQ(std::string("8|/m:r/q|") + kText + "|q|-", Check("<r xmlns='urn:m'><p/><q/></r>"));
  // p lies in case x of the outer choice, z1 directly in its case z.
  EXPECT_EQ(std::string("8|/m:r/z1|") + kText + "|z1|-", Check("<r xmlns='urn:m'><p/><z1/></r>"));
}

// Only the choice directly above an element counts: q's is the inner one, whose
// other branch holds nothing.
TEST_F(NodeCheck, OuterChoiceOfANestedOneIsNotConsidered) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><case name=\"z\">" + Leaf("z1") + "</case>" +
                        "<case name=\"x\"><choice name=\"in\">" + Leaf("p") + Leaf("q") +
                        "</choice></case></choice>"));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><z1/><q/></r>"));
}

TEST_F(NodeCheck, CasesAreFoundBehindElementsOfNestedAndForeignNodes) {
  schema_.Load("m", Rpc("<choice name=\"ch\"><case name=\"x\">" + Leaf("x1") + "</case>" +
                        "<case name=\"z\">" + Leaf("z1") + "</case></choice>"));
  schema_.Load("k",
               "<import module=\"m\"><prefix value=\"m\"/></import>"
               "<augment target-node=\"/m:r/m:input\">" +
                   Leaf("f") + "</augment>");
  EXPECT_EQ("8|/m:r/z1|Data for more than one case branch of a choice is present.|z1|-",
            Check("<r xmlns='urn:m'><x1/><f xmlns='urn:k'/><z1/></r>"));
}

TEST_F(NodeCheck, CasesAreNotComparedInNotifications) {
  schema_.Load("m", "<notification name=\"n\"><choice name=\"c\">" + Leaf("a") + Leaf("b") +
                        "</choice></notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"><a/><b/></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a/><b/></n>"));
}

TEST(ModeFlags, OrderAndCasesAreCheckedInsideInputOnly) {
  struct Row {
    uint32_t flags;
    uint32_t under;
  };
  const Row rows[] = {{0, 0},  {1, 1}, {2, 0},  {5, 0},  {13, 1},
                      {12, 1}, {9, 1}, {17, 1}, {21, 0}, {29, 1}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.flags);
    EXPECT_EQ(row.under, QMD_PAS_IsUnderRpcOrActionTree(row.flags));
  }
}

class ActionTree : public testing::Test {
 protected:
  void SetUp() override {
    schema_.Load("m", "<container name=\"top\">" + Leaf("z") + Leaf("y") + "<choice name=\"ch\">" +
                          Leaf("c1") + Leaf("c2") +
                          "</choice>"
                          "<list name=\"li\"><key value=\"k\"/>" +
                          Leaf("k") + "<action name=\"act\"><input>" + Leaf("a") + Leaf("b") +
                          "</input></action></list>"
                          "<action name=\"other\"/></container>");
  }
  std::string Check(const std::string& text) { return ValidateRpc(schema_.ctx(), text); }
  Schema schema_;
};

TEST_F(ActionTree, ActionInAListEntryIsValid) {
  EXPECT_EQ("valid", Check("<top xmlns='urn:m'><li><k>1</k><act><a/><b/></act></li></top>"));
}

TEST_F(ActionTree, NodesAroundTheActionAreNotOrdered) {
  EXPECT_EQ("valid", Check("<top xmlns='urn:m'><y/><z/><c1/><c2/><other/></top>"));
}

TEST_F(ActionTree, InputOfTheActionIsOrdered) {
  EXPECT_EQ("7|/m:top/li[k='1']/act/a|Invalid element order between a and b.|a|-",
            Check("<top xmlns='urn:m'><li><k>1</k><act><b/><a/></act></li></top>"));
}

TEST_F(ActionTree, OrderIsNotCheckedAfterTheAction) {
  EXPECT_EQ("valid", Check("<top xmlns='urn:m'><li><k>1</k><act/></li><y/><z/></top>"));
}

TEST_F(ActionTree, SecondActionIsUnexpected) {
  EXPECT_EQ("9|/m:top/other|Unexpected element: other.|other|-",
            Check("<top xmlns='urn:m'><li><k>1</k><act/></li><other/></top>"));
  EXPECT_EQ("9|/m:top/li[k='1']/act|Unexpected element: act.|act|-",
            Check("<top xmlns='urn:m'><li><k>1</k><act/><act/></li></top>"));
}

TEST_F(ActionTree, TreeWithoutActionIsRefused) {
  EXPECT_EQ("9|/|Unexpected element: action.|action|-", Check("<top xmlns='urn:m'/>"));
  EXPECT_EQ("9|/|Unexpected element: action.|action|-",
            Check("<top xmlns='urn:m'><li><k>1</k></li></top>"));
}

// Outside of a data tree an action has no place; there is no record for it.
TEST_F(ActionTree, ActionWithoutDataTreeGives22WithoutRecord) {
  Document doc("<top xmlns='urn:m'><other/></top>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, schema_.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_INVALID, QMD_PAS_CheckActionNodeRepeat(&aux, doc.Find("other")));
  EXPECT_EQ(nullptr, aux.err);
  EXPECT_EQ(nullptr, aux.actionNode);
}

}  // namespace
