// SPDX-License-Identifier: BSD-3-Clause
#include "data/must.h"

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

std::string Must(const std::string& condition, const std::string& inside = "") {
  return "<must condition=\"" + condition + "\">" + inside + "</must>";
}

class MustPhase : public testing::Test {
 protected:
  std::string Check(const std::string& text) { return ValidateRpc(schema_.ctx(), text); }
  uint32_t Status(const std::string& text, uint32_t mode) {
    Document doc(text);
    QmCheckAux aux = {};
    QMD_PAS_InitCheckAux(&aux, schema_.ctx(), mode, nullptr, nullptr);
    const uint32_t ret = QMD_PAS_ValidateDataTree(&aux, doc.root());
    record_ = message_fixture::Describe(aux.err);
    return ret;
  }
  Schema schema_;
  std::string record_;
};

TEST_F(MustPhase, FalseMustHasTheGeneralTextAndAppTag) {
  schema_.Load("m", Rpc(Leaf("a", Must(". = '1'"))));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><a>1</a></r>"));
  EXPECT_EQ("18|/m:r/a|a is not satisfied must condition.|a|must-violation",
            Check("<r xmlns='urn:m'><a>2</a></r>"));
}

TEST_F(MustPhase, OwnMessageAndAppTagAreTaken) {
  schema_.Load("m",
               Rpc(Leaf("a", Must(". = '1'",
                                  "<error-message><value>100%s %n wrong</value></error-message>"
                                  "<error-app-tag value=\"my-tag\"/>"))));
  EXPECT_EQ("18|/m:r/a|100%s %n wrong|a|my-tag", Check("<r xmlns='urn:m'><a>2</a></r>"));
}

TEST_F(MustPhase, ConditionThatCannotBeEvaluatedIsReported) {
  schema_.Load("m", Rpc(Leaf("a", Must("//a"))));
  EXPECT_EQ(QM_XPATH_BAD_DOUBLE_SLASH, Status("<r xmlns='urn:m'><a/></r>", QMD_MODE_RPC));
  EXPECT_EQ("18|/m:r/a|Failed to check must condition of a.|a|-", record_);
}

TEST_F(MustPhase, FirstFalseStatementEndsTheCheck) {
  schema_.Load("m", Rpc(Leaf("a", Must(".") + Must("../x", "<error-app-tag value=\"t2\"/>") +
                                      Must("../y", "<error-app-tag value=\"t3\"/>"))));
  EXPECT_EQ("18|/m:r/a|a is not satisfied must condition.|a|t2",
            Check("<r xmlns='urn:m'><a/></r>"));
}

TEST_F(MustPhase, ParentsComeBeforeChildren) {
  schema_.Load("m",
               Rpc("<container name=\"c\">" + Must("nothing", "<error-app-tag value=\"c\"/>") +
                   Leaf("a", Must("nothing", "<error-app-tag value=\"a\"/>")) + "</container>"));
  EXPECT_EQ("18|/m:r/c|c is not satisfied must condition.|c|c",
            Check("<r xmlns='urn:m'><c><a/></c></r>"));
}

TEST_F(MustPhase, StatusIs22BelowTheStartNodeAnd28928OnIt) {
  schema_.Load("m", Rpc(Must("a = '1'") + Leaf("a", Must(". != '3'"))));
  EXPECT_EQ(QM_OK, Status("<r xmlns='urn:m'><a>1</a></r>", QMD_MODE_RPC));
  EXPECT_EQ(QM_XPATH_FALSE, Status("<r xmlns='urn:m'><a>2</a></r>", QMD_MODE_RPC));
  EXPECT_EQ("18|/m:r|r is not satisfied must condition.|r|must-violation", record_);
  Schema other;
  other.Load("k", Rpc(Leaf("a", Must(". != '3'"))));
  Document doc("<r xmlns='urn:k'><a>3</a></r>");
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, other.ctx(), QMD_MODE_RPC, nullptr, nullptr);
  EXPECT_EQ(QM_INVALID, QMD_PAS_ValidateDataTree(&aux, doc.root()));
  QM_FreeErrNode(aux.err);
}

TEST_F(MustPhase, InputOfAnActionIsEvaluatedOnTheAction) {
  schema_.Load("m", "<container name=\"t\">" + Leaf("k") + "<action name=\"act\"><input>" +
                        Must("../k = '1'") + Leaf("a") + "</input></action></container>");
  EXPECT_EQ("valid", Check("<t xmlns='urn:m'><k>1</k><act/></t>"));
  EXPECT_EQ("18|/m:t/act|act is not satisfied must condition.|act|must-violation",
            Check("<t xmlns='urn:m'><k>2</k><act/></t>"));
}

TEST_F(MustPhase, NodesAroundAnActionAreNotEvaluated) {
  schema_.Load("m", "<container name=\"t\">" + Leaf("k", Must("nothing")) +
                        "<action name=\"act\"><input>" + Leaf("a") +
                        "</input></action></container>");
  EXPECT_EQ("valid", Check("<t xmlns='urn:m'><k>1</k><act/></t>"));
}

// Without input nothing is evaluated; what only the output defines is bound all
// the same.
TEST_F(MustPhase, RpcWithoutInputIsNotEvaluated) {
  schema_.Load("m", "<rpc name=\"r\"><output>" + Leaf("o", Must("nothing")) + "</output></rpc>");
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><o/></r>"));
}

TEST_F(MustPhase, ContentOfAnydataIsNotVisitedButItsOwnMustIs) {
  schema_.Load("m", Rpc("<anydata name=\"ad\">" + Must("../a") + "</anydata>" + Leaf("a")));
  EXPECT_EQ("valid", Check("<r xmlns='urn:m'><ad><q/></ad><a/></r>"));
  EXPECT_EQ("18|/m:r/ad|ad is not satisfied must condition.|ad|must-violation",
            Check("<r xmlns='urn:m'><ad><q/></ad></r>"));
}

TEST_F(MustPhase, DefaultsAreEvaluatedToo) {
  schema_.Load("m", Rpc("<leaf name=\"a\">" + Must(". = '2'") +
                        "<type name=\"string\"/><default value=\"1\"/></leaf>"));
  EXPECT_EQ("18|/m:r/a|a is not satisfied must condition.|a|must-violation",
            Check("<r xmlns='urn:m'/>"));
}

TEST_F(MustPhase, NotificationNodesWithFalseMustDisappear) {
  schema_.Load("m", "<notification name=\"n\">" + Leaf("a", Must(". = '1'")) +
                        "<container name=\"c\">" + Must("b") + Leaf("b", Must(". = '1'")) +
                        "</container><list name=\"li\">"
                        "<key value=\"k\"/>" +
                        Must("k = '1'") + Leaf("k") + "</list></notification>");
  EXPECT_EQ("<n xmlns=\"urn:m\"><c/></n>",
            ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'><a>2</a><c><b>2</b></c></n>"));
  EXPECT_EQ("<n xmlns=\"urn:m\"><li><k>1</k></li></n>",
            ValidateNotif(schema_.ctx(),
                          "<n xmlns='urn:m'><li><k>2</k></li><li><k>1</k></li>"
                          "<li><k>3</k></li><c/></n>"));
  EXPECT_EQ(QM_OK, Status("<n xmlns='urn:m'><a>2</a></n>", QMD_MODE_NOTIF));
  EXPECT_EQ("valid", record_) << "removals leave no record";
}

TEST_F(MustPhase, FalseMustOfTheNotificationItselfFailsWithoutRecord) {
  schema_.Load("m", "<notification name=\"n\">" + Must("a") + Leaf("a") + "</notification>");
  EXPECT_EQ(QM_XPATH_FALSE, Status("<n xmlns='urn:m'/>", QMD_MODE_NOTIF));
  EXPECT_EQ("valid", record_);
  EXPECT_EQ("22", ValidateNotif(schema_.ctx(), "<n xmlns='urn:m'/>"));
}

TEST_F(MustPhase, FailedConditionFailsANotification) {
  schema_.Load("m", "<notification name=\"n\">" + Leaf("a", Must("(")) + "</notification>");
  EXPECT_EQ(QM_XPATH_BAD_PAREN, Status("<n xmlns='urn:m'><a/></n>", QMD_MODE_NOTIF));
}

// Records that a loaded model does not have.
class MustRecords : public testing::Test {
 protected:
  void SetUp() override {
    QMD_PAS_InitCheckAux(&aux_, nullptr, QMD_MODE_RPC, nullptr, nullptr);
    aux_.topNode = doc_.root()->parent;
    schemaNode_.musts = &must_;
    schemaNode_.mustCount = 1;
  }
  Document doc_{"<r><a/></r>"};
  QmCheckAux aux_ = {};
  QmsMust must_ = {};
  QmsNode schemaNode_ = {};
};

TEST_F(MustRecords, StatementWithoutConditionGives22) {
  EXPECT_EQ(QM_INVALID, QMD_PAS_EvalDataNodeMustCond(&aux_, doc_.Find("a"), &schemaNode_));
  EXPECT_EQ(nullptr, aux_.err);
}

TEST_F(MustRecords, CountWithoutArrayPasses) {
  schemaNode_.musts = nullptr;
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataNodeMustCond(&aux_, doc_.Find("a"), &schemaNode_));
  EXPECT_EQ(QM_OK, QMD_PAS_EvalDataNodeMustCond(&aux_, doc_.Find("a"), nullptr));
}

// An empty message stays no message.
TEST_F(MustRecords, EmptyMessageIsNotReplacedByTheGeneralText) {
  must_.condition = "nothing";
  must_.errorMessage = "";
  EXPECT_EQ(QM_XPATH_FALSE, QMD_PAS_EvalDataNodeMustCond(&aux_, doc_.Find("a"), &schemaNode_));
  EXPECT_EQ("18|/r/a|-|a|must-violation", message_fixture::Describe(aux_.err));
}

TEST_F(MustRecords, StartNodeWithoutSchemaNodeGives22) {
  EXPECT_EQ(QM_INVALID, QMD_PAS_EvalDataTreeWhenMust(&aux_, doc_.root()));
}

}  // namespace
