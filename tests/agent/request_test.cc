// SPDX-License-Identifier: BSD-3-Clause
// Requests and notifications with a verdict. A request is given as text or as a tree; the
// answer is "valid" with what the tree holds then, or the fields of the record.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include <qmodel/qmodel.h>

#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"

namespace {

using message_fixture::Document;
using message_fixture::Schema;

constexpr char kModel[] = R"yin(
  <container name="top"><list name="card"><key value="id"/><leaf name="id"><type name="string"/></leaf>
    <action name="reset"><input><leaf name="delay"><type name="uint8"/><default value="5"/></leaf>
      <choice name="how"><mandatory value="true"/><leaf name="soft"><type name="empty"/></leaf></choice>
    </input></action></list></container>
  <rpc name="ping"><input>
    <leaf name="count"><must condition=". != '9' or /m:ping/m:size = '1'"/><type name="uint8"/></leaf>
    <leaf name="size"><when condition="../count"/><type name="uint8"/><default value="64"/></leaf>
    <leaf name="off"><when condition="../count = '200'"/><type name="uint8"/></leaf>
  </input></rpc>
  <notification name="done"><leaf name="a"><when condition="../b"/><type name="string"/></leaf>
    <leaf name="b"><type name="string"/></leaf>
    <leaf name="c"><type name="string"/><mandatory value="true"/></leaf></notification>)yin";

const std::string kRpc = "<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0' message-id='101'>";
const std::string kAction = "<action xmlns='urn:ietf:params:xml:ns:yang:1'>";
const std::string kEvent = "<notification xmlns='urn:ietf:params:xml:ns:netconf:notification:1.0'>";
const std::string kTime = "<eventTime>2026-11-22T05:00:00Z</eventTime>";

// "tag type path bad-element bad-attribute message", "-" for what is missing.
std::string Fields(QmErrNode* err) {
  const auto text = [err](uint32_t field) {
    const char* value = QM_AGENT_GetRecordText(err, field);
    return " " + std::string(value == nullptr ? "-" : value);
  };
  EXPECT_NE(nullptr, err);
  if (err == nullptr) return "no record";
  std::string all = QM_AGENT_GetTagName(QM_GetErrorTag(err));
  all += std::string(" ") + QM_AGENT_GetTypeName(QM_GetErrorType(err));
  all += text(QM_AGENT_FIELD_PATH) + text(QM_AGENT_FIELD_BAD_ELEMENT) +
         text(QM_AGENT_FIELD_BAD_ATTRIBUTE) + text(QM_AGENT_FIELD_MESSAGE);
  QM_FreeErrNode(err);
  return all;
}

class Validation : public testing::Test {
 protected:
  void SetUp() override { schema_.Load("m", kModel); }

  std::string Answer(uint32_t verdict, QmErrNode* err, const std::string& valid) {
    EXPECT_EQ(verdict == QM_AGENT_INVALID, err != nullptr);
    if (verdict == QM_AGENT_VALID) return valid;
    return verdict == QM_AGENT_INVALID ? Fields(err) : std::to_string(verdict);
  }

  // A tree in which every element stands on line 256.
  std::string Request(const std::string& text) {
    const Document doc(text);
    const std::string given = doc.Dump();
    SetLines(doc.root());
    QmErrNode* err = nullptr;
    const uint32_t verdict =
        QM_AGENT_ValidateRequest(schema_.ctx(), doc.root(), nullptr, nullptr, &err);
    EXPECT_EQ(0u, doc.BoundElements());
    EXPECT_TRUE(verdict == QM_AGENT_VALID || given == doc.Dump()) << "the tree is as it was";
    return Answer(verdict, err, doc.Dump());
  }

  std::string Notification(const std::string& text) {
    const Document doc(text);
    SetLines(doc.root());
    QmErrNode* err = nullptr;
    const uint32_t verdict = QM_AGENT_ValidateNotification(schema_.ctx(), doc.root(), &err);
    EXPECT_EQ(0u, doc.BoundElements());
    return Answer(verdict, err, doc.Dump());
  }

  static void SetLines(xmlNode* node) {
    for (; node != nullptr; node = node->next) {
      node->line = 256;
      if (node->type == XML_ELEMENT_NODE) SetLines(node->children);
    }
  }

  Schema schema_;
};

TEST_F(Validation, AnOperationByItselfIsCompleted) {
  EXPECT_EQ("<ping xmlns=\"urn:m\"><count>3</count><size>64</size></ping>",
            Request("<ping xmlns='urn:m'><count>3</count></ping>"));
}

TEST_F(Validation, AnRpcIsCompletedAndKeepsItsAttributes) {
  EXPECT_EQ(
      "<rpc xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\" xmlns:e=\"urn:e\" message-id=\"7\" "
      "e:trace=\"x\"><ping xmlns=\"urn:m\"><count>3</count><size>64</size></ping></rpc>",
      Request("<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0' xmlns:e='urn:e' message-id='7' "
              "e:trace='x'><ping xmlns='urn:m'><count>3</count></ping></rpc>"));
}

// A node that the caller supplied is never taken for an added one, whatever its line.
TEST_F(Validation, ACallersElementOnLine256IsACallersElement) {
  EXPECT_EQ("unknown-element application /m:ping/off off - off is not satisfied when condition.",
            Request("<ping xmlns='urn:m'><count>3</count><size>1</size><off>1</off></ping>"));
}

TEST_F(Validation, ConditionsOfAnOperationInAnRpcAreEvaluatedWithinIt) {
  EXPECT_EQ(
      "operation-failed application /m:ping/count count - count is not satisfied must condition.",
      Request(kRpc + "<ping xmlns='urn:m'><count>9</count></ping></rpc>"));
  EXPECT_EQ(0u, Request(kRpc + "<ping xmlns='urn:m'><count>9</count><size>1</size></ping></rpc>")
                    .find("<rpc"));
}

TEST_F(Validation, AMissingMessageIdIsReportedAsTheRfcSays) {
  EXPECT_EQ("missing-attribute rpc - rpc message-id The attribute message-id is missing.",
            Request("<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0' xmlns:x='urn:x' "
                    "x:message-id='1'><ping xmlns='urn:m'/></rpc>"));
}

TEST_F(Validation, AnRpcHoldsOneOperation) {
  EXPECT_EQ("missing-element protocol - rpc - There is no element where one is expected.",
            Request(kRpc + "text</rpc>"));
  EXPECT_EQ(
      "unknown-element protocol - extra - There is more than one element where one is expected.",
      Request(kRpc + "<ping xmlns='urn:m'/>text<extra/></rpc>"));
}

TEST_F(Validation, AnActionIsUnwrappedAndCompleted) {
  const std::string tree = "<top xmlns='urn:m'><card><id>1</id><reset><soft/></reset></card></top>";
  const std::string completed =
      "<top xmlns=\"urn:m\"><card><id>1</id><reset><delay>5</delay><soft/></reset></card></top>";
  const std::string action = "<action xmlns=\"urn:ietf:params:xml:ns:yang:1\">";
  EXPECT_EQ(completed, Request(tree));
  EXPECT_EQ(action + completed + "</action>", Request(kAction + tree + "</action>"));
  EXPECT_EQ("<rpc xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\" message-id=\"101\">" + action +
                completed + "</action></rpc>",
            Request(kRpc + kAction + tree + "</action></rpc>"));
}

TEST_F(Validation, AFailureInAnActionHasThePathWithoutWhatIsAroundIt) {
  EXPECT_EQ(
      "data-missing application /m:top/card[id='1']/reset reset - "
      "Mandatory choice how missing element.",
      Request(kRpc + kAction +
              "<top xmlns='urn:m'><card><id>1</id><reset/></card></top></action></rpc>"));
}

TEST_F(Validation, AnActionHoldsOneDataTree) {
  EXPECT_EQ("missing-element protocol - action - There is no element where one is expected.",
            Request(kRpc + kAction + "</action></rpc>"));
  EXPECT_EQ("unknown-element protocol - b - There is more than one element where one is expected.",
            Request(kAction + "<a/><b/></action>"));
  EXPECT_EQ("unknown-element application /m:ping ping - Unexpected element: ping.",
            Request(kRpc + kAction + "<ping xmlns='urn:m'/></action></rpc>"));
  EXPECT_EQ("unknown-element application / action - Unexpected element: action.",
            Request(kAction + "<top xmlns='urn:m'/></action>"));
}

TEST_F(Validation, ADataTreeInAnRpcStandsInAnAction) {
  EXPECT_EQ("unknown-element application /m:top top - Unexpected element: top.",
            Request(kRpc + "<top xmlns='urn:m'><card><reset><soft/></reset></card></top></rpc>"));
  EXPECT_EQ("unknown-element application /m:done done - Unexpected element: done.",
            Request(kRpc + "<done xmlns='urn:m'/></rpc>"));
}

TEST_F(Validation, AnUnknownOperationIsReportedAsSuch) {
  EXPECT_EQ("unknown-namespace application /no no - no has invalid namespace: urn:no.",
            Request(kRpc + "<no xmlns='urn:no'/></rpc>"));
  EXPECT_EQ("unknown-element application /m:no no - Unexpected element: no.",
            Request(kRpc + "<no xmlns='urn:m'/></rpc>"));
  EXPECT_EQ("operation-failed application / - - -", Request("<no/>"));
  // An rpc of another namespace is an operation.
  EXPECT_EQ("unknown-element application /m:rpc rpc - Unexpected element: rpc.",
            Request("<rpc xmlns='urn:m'/>"));
}

TEST_F(Validation, TheUnknownNamespaceAndTheMissingChoiceAreKept) {
  const Document ns("<no xmlns='urn:no'/>");
  QmErrNode* err = nullptr;
  ASSERT_EQ(1u, QM_AGENT_ValidateRequest(schema_.ctx(), ns.root(), nullptr, nullptr, &err));
  EXPECT_STREQ("urn:no", QM_AGENT_GetRecordText(err, QM_AGENT_FIELD_BAD_NAMESPACE));
  QM_FreeErrNode(err);
  const Document choice("<top xmlns='urn:m'><card><reset/></card></top>");
  ASSERT_EQ(1u, QM_AGENT_ValidateRequest(schema_.ctx(), choice.root(), nullptr, nullptr, &err));
  EXPECT_STREQ("how", QM_AGENT_GetRecordText(err, QM_AGENT_FIELD_MISSING_CHOICE));
  QM_FreeErrNode(err);
}

TEST_F(Validation, ADocumentTypeIsInvalid) {
  const Document doc("<!DOCTYPE ping><ping xmlns='urn:m'/>");
  QmErrNode* err = nullptr;
  ASSERT_EQ(1u, QM_AGENT_ValidateRequest(schema_.ctx(), doc.root(), nullptr, nullptr, &err));
  EXPECT_EQ("malformed-message rpc - - - The message has a document type declaration.",
            Fields(err));
}

TEST_F(Validation, WrongCallsSaySo) {
  const Document doc("<ping xmlns='urn:m'/>");
  QmErrNode* err = reinterpret_cast<QmErrNode*>(&err);
  EXPECT_EQ(22u, QM_AGENT_ValidateRequest(nullptr, doc.root(), nullptr, nullptr, &err));
  EXPECT_EQ(nullptr, err);
  EXPECT_EQ(22u, QM_AGENT_ValidateRequest(schema_.ctx(), nullptr, nullptr, nullptr, &err));
  EXPECT_EQ(22u, QM_AGENT_ValidateRequest(schema_.ctx(), reinterpret_cast<xmlNode*>(doc.doc()),
                                          nullptr, nullptr, &err));
  EXPECT_EQ(22u, QM_AGENT_ValidateNotification(schema_.ctx(), nullptr, &err));
  EXPECT_EQ(22u, QM_AGENT_ValidateNotification(nullptr, doc.root(), &err));
  EXPECT_EQ(22u, QM_AGENT_ValidateRequestText(nullptr, "<a/>", 4, nullptr, nullptr, nullptr, &err));
  EXPECT_EQ(22u, QM_AGENT_ValidateRequestText(schema_.ctx(), nullptr, 4, nullptr, nullptr, nullptr,
                                              &err));
  // Nothing around it, in which conditions could be evaluated.
  xmlNode* alone = xmlNewNode(nullptr, reinterpret_cast<const xmlChar*>("ping"));
  EXPECT_EQ(22u, QM_AGENT_ValidateRequest(schema_.ctx(), alone, nullptr, nullptr, &err));
  xmlFreeNode(alone);
  EXPECT_EQ(nullptr, err);
}

TEST_F(Validation, TheRecordNeedNotBeTaken) {
  const Document doc("<no xmlns='urn:m'/>");
  EXPECT_EQ(1u, QM_AGENT_ValidateRequest(schema_.ctx(), doc.root(), nullptr, nullptr, nullptr));
  EXPECT_EQ(1u, QM_AGENT_ValidateNotification(schema_.ctx(), doc.root(), nullptr));
  EXPECT_EQ(
      1u, QM_AGENT_ValidateRequestText(schema_.ctx(), "<", 1, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(Validation, TheCallbackGetsWhatWasAdded) {
  const Document doc(kRpc + "<ping xmlns='urn:m'><count>3</count></ping></rpc>");
  std::vector<std::string> added;
  EXPECT_EQ(uint32_t{QM_AGENT_VALID},
            QM_AGENT_ValidateRequest(
                schema_.ctx(), doc.root(),
                [](xmlNode* node, void* arg) {
                  static_cast<std::vector<std::string>*>(arg)->emplace_back(
                      reinterpret_cast<const char*>(node->name));
                  EXPECT_EQ(0, node->line);
                },
                &added, nullptr));
  EXPECT_EQ(std::vector<std::string>{"size"}, added);
}

TEST_F(Validation, TheOperationIsFoundInWhatIsAroundIt) {
  const auto name = [](const std::string& text) {
    const Document doc(text);
    const xmlNode* operation = QM_AGENT_GetOperation(doc.root());
    return operation == nullptr ? "none"
                                : std::string(reinterpret_cast<const char*>(operation->name));
  };
  EXPECT_EQ("ping", name("<ping/>"));
  EXPECT_EQ("ping", name(kRpc + "<ping xmlns='urn:m'/><second/></rpc>"));
  EXPECT_EQ("top", name(kRpc + kAction + "<top/></action></rpc>"));
  EXPECT_EQ("top", name(kAction + "<top/></action>"));
  EXPECT_EQ("none", name(kRpc + "</rpc>"));
  EXPECT_EQ("none", name(kRpc + kAction + "</action></rpc>"));
  EXPECT_EQ(nullptr, QM_AGENT_GetOperation(nullptr));
}

TEST_F(Validation, ANotificationIsHandedBackWithoutWhatDoesNotHold) {
  EXPECT_EQ("<done xmlns=\"urn:m\"><c>1</c></done>",
            Notification("<done xmlns='urn:m'><a>x</a><c>1</c></done>"));
  EXPECT_EQ(
      "<notification xmlns=\"urn:ietf:params:xml:ns:netconf:notification:1.0\">"
      "<eventTime>2026-11-22T05:00:00Z</eventTime>"
      "<done xmlns=\"urn:m\"><a>x</a><b/><c>1</c></done></notification>",
      Notification(kEvent + kTime +
                   "<done xmlns='urn:m'><a>x</a><b/><c>1</c></done></notification>"));
}

TEST_F(Validation, AnInvalidNotificationHasARecord) {
  EXPECT_EQ("missing-element application /m:done c - Missing element: c.",
            Notification(kEvent + kTime + "<done xmlns='urn:m'/></notification>"));
  EXPECT_EQ("unknown-element application /m:ping ping - Unexpected element: ping.",
            Notification("<ping xmlns='urn:m'/>"));
  EXPECT_EQ("missing-element protocol - eventTime - The element eventTime is missing.",
            Notification(kEvent + "<done xmlns='urn:m'/></notification>"));
  EXPECT_EQ("missing-element protocol - notification - There is no element where one is expected.",
            Notification(kEvent + kTime + "</notification>"));
  EXPECT_EQ("unknown-element protocol - b - There is more than one element where one is expected.",
            Notification(kEvent + kTime + "<a/><b/></notification>"));
}

uint32_t Take(const char* text, size_t length, void* arg) {
  EXPECT_EQ('\0', text[length]);
  static_cast<std::string*>(arg)->append(text, length);
  return 1;  // not evaluated
}

TEST_F(Validation, ATextComesBackCompleted) {
  const std::string text = kRpc + "\n<ping xmlns='urn:m'><!-- x --><count>3</count></ping>\n</rpc>";
  std::string out;
  EXPECT_EQ(uint32_t{QM_AGENT_VALID},
            QM_AGENT_ValidateRequestText(schema_.ctx(), text.data(), text.size(), nullptr, Take,
                                         &out, nullptr));
  EXPECT_EQ(R"(<?xml version="1.0" encoding="UTF-8"?>
<rpc xmlns="urn:ietf:params:xml:ns:netconf:base:1.0" message-id="101">
  <ping xmlns="urn:m">
    <count>3</count>
    <size>64</size>
  </ping>
</rpc>
)",
            out);
  out.clear();
  const std::string event = "<done xmlns='urn:m'><a>x</a><c>1</c></done>";
  EXPECT_EQ(0u, QM_AGENT_ValidateNotificationText(schema_.ctx(), event.data(), event.size(),
                                                  nullptr, Take, &out, nullptr));
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<done xmlns=\"urn:m\">\n  <c>1</c>\n</done>\n",
      out);
}

TEST_F(Validation, ATextThatIsNoMessageIsInvalidWithItsReason) {
  const auto answer = [this](const std::string& text) {
    std::string out;
    QmErrNode* err = nullptr;
    const uint32_t verdict = QM_AGENT_ValidateRequestText(schema_.ctx(), text.data(), text.size(),
                                                          nullptr, Take, &out, &err);
    EXPECT_EQ("", out);
    return Answer(verdict, err, "valid");
  };
  EXPECT_EQ("malformed-message rpc - - - The message is not well-formed XML.", answer("<a>"));
  EXPECT_EQ("malformed-message rpc - - - The message is not encoded in UTF-8.",
            answer("<a>\xE4</a>"));
  EXPECT_EQ("malformed-message rpc - - - The message has a document type declaration.",
            answer("<!DOCTYPE a><a/>"));
  EXPECT_EQ("too-big rpc - - - The message is too long.",
            answer(std::string(QM_AGENT_DEFAULT_BYTES + 1, ' ')));
}

// What hides behind the first piece of a value is checked too: the pieces are joined.
TEST_F(Validation, AValueIsAllOfItsPieces) {
  const std::string text = "<ping xmlns='urn:m'><count>1<!-- -->x</count></ping>";
  QmErrNode* err = nullptr;
  EXPECT_EQ(1u, QM_AGENT_ValidateRequestText(schema_.ctx(), text.data(), text.size(), nullptr,
                                             nullptr, nullptr, &err));
  EXPECT_EQ("bad-element application /m:ping/count count - count has invalid value 1x.",
            Fields(err));
}

TEST_F(Validation, ManyThreadsValidateOnOneContext) {
  const std::string good = kRpc + "<ping xmlns='urn:m'><count>3</count></ping></rpc>";
  const std::string bad = kRpc + "<ping xmlns='urn:m'><count>x</count></ping></rpc>";
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, &good, &bad] {
      for (int round = 0; round < 50; ++round) {
        std::string out;
        QmErrNode* err = nullptr;
        EXPECT_EQ(uint32_t{QM_AGENT_VALID},
                  QM_AGENT_ValidateRequestText(schema_.ctx(), good.data(), good.size(), nullptr,
                                               Take, &out, nullptr));
        EXPECT_NE(std::string::npos, out.find("<size>64</size>"));
        EXPECT_EQ(1u, QM_AGENT_ValidateRequestText(schema_.ctx(), bad.data(), bad.size(), nullptr,
                                                   nullptr, nullptr, &err));
        EXPECT_LT(100u, QM_AGENT_PrintRecord(err, schema_.ctx(), 0, nullptr, 0));
        QM_FreeErrNode(err);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// What a run keeps of a wide schema takes blocks; a run that keeps nothing takes none, and
// its time grows with the square of the width.
TEST_F(Validation, KeepsWhatItAsksTheSchemaAsTheLibrarysOwnEntryDoes) {
  std::string leaves;
  std::string elements;
  for (int i = 0; i < 300; ++i) {
    const std::string name = "l" + std::to_string(i);
    leaves += "<leaf name='" + name + "'><type name='string'/></leaf>";
    elements += "<" + name + ">x</" + name + ">";
  }
  schema_.Load("wide", "<rpc name='w'><input>" + leaves + "</input></rpc>");
  const Document doc("<w xmlns='urn:wide'>" + elements + "</w>");
  const uint64_t start = counting_memory::AllocationCount();
  EXPECT_EQ(nullptr, QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT, doc.root(),
                                                nullptr, nullptr));
  const uint64_t own = counting_memory::AllocationCount() - start;
  EXPECT_LT(uint64_t{0}, own);
  EXPECT_EQ(uint32_t{QM_AGENT_VALID},
            QM_AGENT_ValidateRequest(schema_.ctx(), doc.root(), nullptr, nullptr, nullptr));
  EXPECT_EQ(own, counting_memory::AllocationCount() - start - own);
}

}  // namespace
