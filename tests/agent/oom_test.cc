// SPDX-License-Identifier: BSD-3-Clause
// Every allocation of the kit is refused once, alone and with all later ones. A refused
// allocation is a verdict of its own: never "valid", and never "invalid" either.
#include <gtest/gtest.h>
#include <libxml/xmlmemory.h>

#include <string>

#include <qmodel/qmodel.h>

#include "context/xml_parse.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"
#include "tests/support/xml_memory.h"

namespace {

using counting_memory::Refuse;
using message_fixture::Document;
using message_fixture::Schema;

// Not refused libxml2's memory: its compiler of patterns does not survive that.
constexpr char kPattern[] = R"yin(
  <leaf name="w"><type name="string"><pattern value="[a-z]*"/>
    <pattern value="x.*"><modifier value="invert-match"/></pattern></type></leaf>)yin";

constexpr char kModel[] = R"yin(
  <identity name="base"/><identity name="id1"><base name="base"/></identity>
  <rpc name="r"><input>
    %
    <leaf name="un"><type name="union"><type name="int8"/><type name="boolean"/></type></leaf>
    <leaf name="i"><type name="identityref"><base name="base"/></type><default value="id1"/>
      <must condition="derived-from-or-self(., 'm:id1')"/></leaf>
    <container name="c"><leaf name="x"><when condition="../../un = '1'"/><type name="int8"/>
      <default value="5"/></leaf></container>
    <choice name="ch"><mandatory value="true"/><leaf name="a"><type name="string"/></leaf></choice>
    <leaf name="last"><must condition="(../un = '1') or . = ''"/><type name="string"/></leaf>
  </input></rpc>
  <notification name="n"><leaf name="a"><when condition="../b = '1'"/><type name="string"/></leaf>
    <leaf name="b"><type name="string"/><mandatory value="true"/></leaf></notification>)yin";

std::string Model(const std::string& firstLeaf) {
  std::string model = kModel;
  return model.replace(model.find('%'), 1, firstLeaf);
}

std::string InRpc(const std::string& content) {
  return "<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0' message-id='1'>" + content +
         "</rpc>";
}

constexpr size_t kValidRequests = 2;
const char* const kRequests[] = {
    "<r xmlns='urn:m'><un>1</un><a>x</a><last>z</last></r>",
    "<r xmlns='urn:m'><w>abc</w><un>1</un><a>x</a><last>z</last></r>",
    "<r xmlns='urn:m'><w>ABC</w><a>x</a></r>",
    "<r xmlns='urn:m'><w>xyz</w><a>x</a></r>",
    "<r xmlns='urn:m'><un>none</un><a>x</a></r>",
    "<r xmlns='urn:m'><i>other</i><a>x</a></r>",
    "<r xmlns='urn:m'><w>abc</w></r>",
    "<r xmlns='urn:m'><a>x</a><last>z</last></r>",
    "<r xmlns='urn:m'><a>x</a><unknown/></r>",
    "<unknown xmlns='urn:other'/>",
};

uint32_t Swallow(const char*, size_t, void* arg) {
  ++*static_cast<int*>(arg);
  return 0;
}

class KitWithoutMemory : public testing::Test {
 protected:
  void SetUp() override { schema_.Load("m", Model(kPattern)); }

  // Runs `once` with each allocation refused. It gives the verdict.
  template <typename Once>
  static void Sweep(const Once& once) {
    const uint32_t expected = once();
    uint64_t refusals = 0;
    for (const Refuse mode : {Refuse::kOnce, Refuse::kFromThenOn}) {
      for (uint64_t n = 1; !HasFailure(); ++n) {
        SCOPED_TRACE(n);
        const size_t before = counting_memory::LiveBlocks();
        counting_memory::RefuseNth(n, mode);
        const uint32_t verdict = once();
        const uint64_t refused = counting_memory::StopRefusing();
        EXPECT_EQ(before, counting_memory::LiveBlocks());
        EXPECT_EQ(refused == 0 ? expected : uint32_t{QM_AGENT_NO_MEMORY}, verdict);
        refusals += refused;
        if (refused == 0) break;
      }
    }
    EXPECT_LT(0u, refusals);
  }

  uint32_t RunTree(const std::string& text) {
    const Document doc(text);
    const std::string given = doc.Dump();
    QmErrNode* err = nullptr;
    const uint32_t verdict =
        QM_AGENT_ValidateRequest(schema_.ctx(), doc.root(), nullptr, nullptr, &err);
    EXPECT_EQ(verdict == QM_AGENT_INVALID, err != nullptr);
    EXPECT_EQ(0u, doc.BoundElements());
    EXPECT_TRUE(verdict == QM_AGENT_VALID || given == doc.Dump()) << "the tree is as it was";
    QM_FreeErrNode(err);
    return verdict;
  }

  uint32_t RunText(const std::string& text) {
    int calls = 0;
    QmErrNode* err = nullptr;
    const uint32_t verdict = QM_AGENT_ValidateRequestText(schema_.ctx(), text.data(), text.size(),
                                                          nullptr, Swallow, &calls, &err);
    EXPECT_EQ(verdict == QM_AGENT_INVALID, err != nullptr);
    EXPECT_EQ(verdict == QM_AGENT_VALID ? 1 : 0, calls);
    QM_FreeErrNode(err);
    return verdict;
  }

  Schema schema_;
};

TEST_F(KitWithoutMemory, ARequestIsNeitherValidNorInvalid) {
  for (const char* request : kRequests) {
    SCOPED_TRACE(request);
    const bool isValid = request == kRequests[0] || request == kRequests[kValidRequests - 1];
    EXPECT_EQ(isValid ? uint32_t{QM_AGENT_VALID} : uint32_t{QM_AGENT_INVALID},
              RunTree(InRpc(request)));
    Sweep([&] { return RunTree(InRpc(request)); });
    Sweep([&] { return RunText(request); });
  }
}

TEST_F(KitWithoutMemory, AnEnvelopeIsNeitherValidNorInvalid) {
  for (const std::string& request :
       {std::string("<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'/>"), InRpc(""),
        InRpc("<a/><b/>"), std::string("<!DOCTYPE a><a/>")}) {
    SCOPED_TRACE(request);
    Sweep([&] { return RunTree(request); });
    Sweep([&] { return RunText(request); });
  }
}

TEST_F(KitWithoutMemory, ANotificationIsNeitherValidNorInvalid) {
  for (const char* text : {"<n xmlns='urn:m'><a>x</a><b>2</b></n>", "<n xmlns='urn:m'/>"}) {
    Sweep([&] {
      const Document doc(text);
      QmErrNode* err = nullptr;
      const uint32_t verdict = QM_AGENT_ValidateNotification(schema_.ctx(), doc.root(), &err);
      QM_FreeErrNode(err);
      return verdict;
    });
  }
}

TEST_F(KitWithoutMemory, ARecordIsWholeOrNotThere) {
  counting_memory::FailEachAllocation([](bool) {
    QmErrNode* err = QM_AGENT_NewReasonRecord(QM_AGENT_REASON_NOT_XML);
    if (err == nullptr) return;
    EXPECT_NE(nullptr, QM_GetErrorMessage(err));
    const uint32_t ret = QM_AGENT_SetRecordText(err, QM_AGENT_FIELD_MESSAGE, "other");
    EXPECT_STREQ(ret == 0 ? "other" : "The message is not well-formed XML.",
                 QM_GetErrorMessage(err));
    EXPECT_TRUE(ret == 0 || ret == QM_NO_MEMORY);
    QM_FreeErrNode(err);
  });
}

TEST_F(KitWithoutMemory, WritingARecordTakesNone) {
  QmErrNode* err = QM_AGENT_NewReasonRecord(QM_AGENT_REASON_NOT_XML);
  const uint64_t before = counting_memory::AllocationCount();
  EXPECT_LT(0u, QM_AGENT_PrintRecord(err, schema_.ctx(), 0, nullptr, 0));
  EXPECT_EQ(before, counting_memory::AllocationCount());
  QM_FreeErrNode(err);
}

// libxml2's own memory.
class KitWithoutXmlMemory : public KitWithoutMemory {
 protected:
  void SetUp() override {
    ASSERT_EQ(0, xmlMemGet(&free_, &malloc_, &realloc_, &duplicate_));
    schema_.Load("m", Model(""));
    ASSERT_TRUE(xml_memory::Install());
  }
  void TearDown() override {
    xml_memory::RefuseNth(0);
    EXPECT_EQ(0, xmlMemSetup(free_, malloc_, realloc_, duplicate_));
  }

 private:
  xmlFreeFunc free_ = nullptr;
  xmlMallocFunc malloc_ = nullptr;
  xmlReallocFunc realloc_ = nullptr;
  xmlStrdupFunc duplicate_ = nullptr;
};

TEST_F(KitWithoutXmlMemory, NothingIsValidThatIsNot) {
  for (const char* request : kRequests) {
    SCOPED_TRACE(request);
    const uint32_t expected = RunText(request);
    uint64_t n = 1;
    for (bool refused = true; refused && !HasFailure(); ++n) {
      SCOPED_TRACE(n);
      xml_memory::RefuseNth(n);
      const uint32_t verdict = RunText(request);
      refused = xml_memory::Left() == 0;
      xml_memory::RefuseNth(0);
      EXPECT_TRUE(refused || verdict == expected);
      EXPECT_TRUE(verdict == expected || verdict == QM_AGENT_NO_MEMORY ||
                  verdict == QM_AGENT_INVALID)
          << verdict;
    }
    EXPECT_LT(10u, n);
  }
}

}  // namespace
